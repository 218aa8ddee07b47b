#include "format/TerminalText.h"

namespace ombrelian {
namespace {

bool isDirection(char16_t unit) {
  return unit == 0x061C || unit == 0x200E || unit == 0x200F || (unit >= 0x202A && unit <= 0x202E) ||
         (unit >= 0x2066 && unit <= 0x2069);
}

bool isControl(char16_t unit) {
  if (unit == u'\n' || unit == u'\t') return false;
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

}  // namespace

Text forTerminal(TextView text) {
  Text clean(text);
  for (char16_t& unit : clean) {
    if (isControl(unit) || isDirection(unit)) unit = u'\uFFFD';
  }
  return clean;
}

}  // namespace ombrelian
