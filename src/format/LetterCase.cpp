#include "format/LetterCase.h"

#include <algorithm>

#include "platform/Locale.h"

namespace ombrelian {
namespace {

bool isAscii(TextView text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 128; });
}

}  // namespace

Text lowerCase(TextView text) {
  return isAscii(text) ? asciiLower(text) : platform::localeTextRules().lower(text);
}

Text upperCase(TextView text) {
  return isAscii(text) ? asciiUpper(text) : platform::localeTextRules().upper(text);
}

}  // namespace ombrelian
