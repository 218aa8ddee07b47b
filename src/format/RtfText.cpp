#include "format/RtfText.h"

namespace ombrelian {
namespace {

void appendHexadecimal(unsigned value, Text& out) {
  constexpr TextView kDigits = u"0123456789ABCDEF";
  out += kDigits[value / 16];
  out += kDigits[value % 16];
}

}  // namespace

Text GetRtfUnicodeEscapedString2(TextView text, bool wrap) {
  Text escaped;
  for (const char16_t unit : text) {
    if (unit == u'\t') {
      escaped += u"\\tab ";
    } else if (unit <= 255) {
      escaped += u"\\'";
      appendHexadecimal(unit, escaped);
    } else {
      escaped.append(u"\\uc1\\u").append(toText(std::int16_t(unit))) += u'?';
    }
  }
  return wrap ? Text(u"{\\rtf1").append(escaped) += u'}' : escaped;
}

}  // namespace ombrelian
