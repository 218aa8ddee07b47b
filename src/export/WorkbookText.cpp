#include "export/WorkbookText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "support/Date.h"
#include "support/Surrogates.h"

namespace ombrelian {
namespace {

constexpr std::size_t kMostNameUnits = 31;
constexpr double kMostExactWhole = 9'007'199'254'740'992;  // 2 to the power of 53

bool isHexDigit(char16_t unit) {
  return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') ||
         (unit >= u'a' && unit <= u'f');
}

/// Whether `text` begins with "_xHHHH_", which readers replace by the character with that number.
bool beginsWithEscape(TextView text) {
  return text.size() >= 7 && text[1] == u'x' && text[6] == u'_' &&
         std::all_of(text.begin() + 2, text.begin() + 6, isHexDigit);
}

/// Appends a character below U+0080 of a text; `rest` begins with it.
void appendAscii(TextView rest, std::string& out) {
  const char16_t unit = rest.front();
  switch (unit) {
    case u'<':
      out += "&lt;";
      return;
    case u'>':
      out += "&gt;";
      return;
    case u'&':
      out += "&amp;";
      return;
    case u'"':
      out += "&quot;";
      return;
    case u'_':
      out += beginsWithEscape(rest) ? "_x005F_" : "_";
      return;
    default:
      break;
  }
  if (unit >= u' ' || unit == u'\t' || unit == u'\n') {
    out += char(unit);
  } else {
    constexpr char kDigits[] = "0123456789ABCDEF";
    out.append("_x00").append({kDigits[unit >> 4], kDigits[unit & 15], '_'});
  }
}

/// Appends a character from U+0080 on, or a mark for a unit that is no text. Returns the number of
/// units.
std::size_t appendWide(TextView rest, std::string& out) {
  const char16_t unit = rest.front();
  if (isHighSurrogate(unit) && rest.size() > 1 && isLowSurrogate(rest[1])) {
    appendBytes(rest.substr(0, 2), out);
    return 2;
  }
  const bool isText = !isHighSurrogate(unit) && !isLowSurrogate(unit) && unit < 0xFFFE;
  appendBytes(isText ? rest.substr(0, 1) : u"\uFFFD", out);
  return 1;
}

}  // namespace

Text FixExcelWorkSheetName(TextView name) {
  Text fixed(trimBlanks(name));
  if (fixed.empty()) fixed = u"Name";
  fixed.resize(std::min(fixed.size(), kMostNameUnits));
  for (char16_t& unit : fixed) {
    if (TextView(u":\\/?*[]").find(unit) != TextView::npos) unit = u' ';
  }
  return fixed;
}

Text sheetName(TextView name, std::size_t number) {
  Text fixed = FixExcelWorkSheetName(name);
  if (number == 1) return fixed;
  const Text suffix = u" (" + toText(std::int64_t(number)) + u")";
  fixed.resize(std::min(fixed.size(), kMostNameUnits - suffix.size()));
  return fixed + suffix;
}

void appendWorkbookText(TextView text, std::string& out) {
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] < 0x80) {
      appendAscii(text.substr(at++), out);
    } else {
      at += appendWide(text.substr(at), out);
    }
  }
}

void appendWorkbookNumber(double number, std::string& out) {
  char digits[32];
  const bool isWhole = std::abs(number) < kMostExactWhole && number == std::trunc(number);
  const std::to_chars_result end =
      isWhole ? std::to_chars(digits, std::end(digits), std::int64_t(number))
              : std::to_chars(digits, std::end(digits), number);
  out.append(digits, end.ptr);
}

void appendWorkbookTime(double date, std::string& out) {
  const DateParts parts = toParts(date);
  char text[64];
  const int length = std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ",
                                   int(parts.year), int(parts.month), int(parts.day),
                                   int(parts.hour), int(parts.minute), int(parts.second));
  out.append(text, std::size_t(length));
}

}  // namespace ombrelian
