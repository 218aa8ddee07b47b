#include "platform/SystemError.h"

namespace ombrelian {

using platform::ErrorCode;

Text xGetErrorText(bool addNumber, ErrorCode code) {
  if (code == platform::kSuccess) return u"#0 - No information available";
  Text text = platform::FormatMessageW(code);
  if (text.empty()) text = u"Error " + toText(code);
  return addNumber ? u"#" + toText(code) + u" - " + text : text;
}

Error systemError(ErrorCode code, TextView source) {
  return {std::int32_t(code), Text(source), xGetErrorText(false, code)};
}

}  // namespace ombrelian
