// Compiles the first line as a pattern and matches the rest against it.

#include <cstdint>
#include <string_view>

#include "filters/LikePattern.h"
#include "platform/Locale.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ombrelian;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto end = bytes.find('\n');
  const LikePattern pattern(fromBytes(bytes.substr(0, end)), platform::localeTextRules());
  if (pattern.isMalformed() || end == std::string_view::npos) return 0;
  pattern.matches(fromBytes(bytes.substr(end + 1)));
  return 0;
}
