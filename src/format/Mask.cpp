#include "format/Mask.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "platform/Locale.h"

namespace ombrelian {
namespace {

constexpr std::uint64_t powerOfTen(int exponent) {
  std::uint64_t power = 1;
  while (exponent-- > 0) {
    power *= 10;
  }
  return power;
}

void addOneUnit(Decimal& number) {
  if (++number.fraction < powerOfTen(number.decimals)) return;
  number.fraction = 0;
  ++number.whole;
}

/// Writes the digits of `value`, at least `least` of them, so that they end at `end`; returns the
/// first digit.
char* writeDigits(std::uint64_t value, int least, char* end) {
  char* at = end;
  for (; value != 0 || end - at < least; value /= 10) {
    *--at = char('0' + value % 10);
  }
  return at;
}

/// Whether a separator is in front of the last `left` digits of a whole part.
bool isGroupBorder(const platform::NumberSymbols& symbols, std::ptrdiff_t left) {
  const int primary = symbols.primaryGroup;
  if (primary <= 0 || left < primary) return false;
  return left == primary ||
         (symbols.secondaryGroup > 0 && (left - primary) % symbols.secondaryGroup == 0);
}

bool isNumberPattern(TextView pattern) {
  return !pattern.empty() && pattern.find_first_not_of(u"#0,.") == TextView::npos;
}

constexpr TextView kPositiveOnly = u";;;";

}  // namespace

NumberMask parseNumberMask(TextView pattern) {
  NumberMask mask;
  bool behindPoint = false;
  for (const char16_t unit : pattern) {
    if (unit == u'.') behindPoint = true;
    if (unit == u',') mask.grouped = true;
    if (unit == u'0') ++(behindPoint ? mask.decimals : mask.minimumDigits);
  }
  mask.decimals = std::min(mask.decimals, NumberMask::kMaximumDecimals);
  return mask;
}

Decimal divideByPowerOfTwo(std::int64_t value, int shift, int decimals, Ties ties) {
  const std::uint64_t size = magnitude(value);
  const std::uint64_t remainder = size & ((std::uint64_t(1) << shift) - 1);
  // At most 40 bits times 100, so the product cannot overflow.
  const std::uint64_t scaled = remainder * powerOfTen(decimals);
  Decimal result{value < 0, size >> shift, scaled >> shift, decimals};
  const std::uint64_t twiceLeft = (scaled - (result.fraction << shift)) * 2;
  const std::uint64_t one = std::uint64_t(1) << shift;
  const bool isOdd = (decimals > 0 ? result.fraction : result.whole) % 2 != 0;
  if (twiceLeft > one || (twiceLeft == one && (ties == Ties::AwayFromZero || isOdd))) {
    addOneUnit(result);
  }
  return result;
}

Decimal roundDecimal(double value, int decimals) {
  Decimal result{std::signbit(value), 0, 0, decimals};
  constexpr double kTooLarge = 18446744073709551616.0;
  if (std::isnan(value)) return result;
  if (std::fabs(value) >= kTooLarge) {
    result.whole = std::numeric_limits<std::uint64_t>::max();
    return result;
  }
  // The shortest notation never needs more units: 20 digits, the point, and 340 places for the
  // smallest number.
  char digits[400];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, std::fabs(value), std::chars_format::fixed).ptr;
  const std::string_view text(digits, std::size_t(end - digits));
  const std::size_t point = std::min(text.find('.'), text.size());
  std::from_chars(digits, digits + point, result.whole);
  const auto digitAt = [&](int place) {  // 1: first digit after the point
    const std::size_t at = point + std::size_t(place);
    return at < text.size() ? std::uint64_t(text[at] - '0') : 0;
  };
  for (int place = 1; place <= decimals; ++place) {
    result.fraction = result.fraction * 10 + digitAt(place);
  }
  if (digitAt(decimals + 1) >= 5) addOneUnit(result);
  return result;
}

void appendNumber(const NumberMask& mask, const Decimal& number, Text& out) {
  const platform::NumberSymbols& symbols = platform::numberSymbols();
  char buffer[40];
  char* const end = buffer + sizeof buffer;
  const char* at = writeDigits(number.whole, std::min(mask.minimumDigits, 20), end);
  const bool grouped =
      mask.grouped && end - at >= symbols.primaryGroup + std::max(symbols.minimumGrouping, 1);
  const bool isZero = number.whole == 0 && number.fraction == 0;
  if (number.negative && !isZero) out += u'-';
  for (const char* digit = at; digit != end; ++digit) {
    if (grouped && digit != at && isGroupBorder(symbols, end - digit)) out += symbols.group;
    out += char16_t(*digit);
  }
  if (mask.decimals == 0) return;
  out += symbols.decimal;
  at = writeDigits(number.fraction, mask.decimals, end);
  out.append(at, static_cast<const char*>(end));
}

Text formatNumber(TextView pattern, std::int64_t value) {
  const NumberMask mask = parseNumberMask(pattern);
  Text out;
  appendNumber(mask, {value < 0, magnitude(value), 0, mask.decimals}, out);
  return out;
}

Text formatNumber(TextView pattern, double value) {
  const NumberMask mask = parseNumberMask(pattern);
  Text out;
  appendNumber(mask, roundDecimal(value, mask.decimals), out);
  return out;
}

Text formatQuotient(TextView pattern, std::int64_t value, int shift) {
  const NumberMask mask = parseNumberMask(pattern);
  Text out;
  appendNumber(mask, divideByPowerOfTwo(value, shift, mask.decimals, Ties::AwayFromZero), out);
  return out;
}

CellMask::CellMask(TextView mask) {
  const std::size_t close = mask.empty() ? TextView::npos : mask.find(u'*', 1);
  if (close == TextView::npos || mask.front() != u'*') return;
  const TextView pattern = mask.substr(1, close - 1);
  TextView rest = mask.substr(close + 1);
  positiveOnly_ = rest.ends_with(kPositiveOnly);
  if (positiveOnly_) rest.remove_suffix(kPositiveOnly.size());
  suffix_ = rest;
  kind_ = isNumberPattern(pattern) ? Kind::OfNumber : Kind::OfDate;
  if (kind_ == Kind::OfNumber) {
    number_ = parseNumberMask(pattern);
  } else {
    date_ = DatePattern(pattern);
  }
}

void CellMask::append(std::int64_t value, Text& out) const {
  if (kind_ == Kind::OfDate) return append(double(value), out);
  if (kind_ == Kind::Nothing || (positiveOnly_ && value <= 0)) return;
  appendNumber(number_, {value < 0, magnitude(value), 0, number_.decimals}, out);
  out += suffix_;
}

void CellMask::append(double value, Text& out) const {
  if (kind_ == Kind::Nothing || (positiveOnly_ && !(value > 0))) return;
  if (kind_ == Kind::OfDate) {
    date_.append(value, out);
  } else {
    appendNumber(number_, roundDecimal(value, number_.decimals), out);
  }
  out += suffix_;
}

}  // namespace ombrelian
