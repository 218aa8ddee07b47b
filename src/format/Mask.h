#pragma once

#include <cstdint>

#include "format/DatePattern.h"
#include "support/Text.h"

namespace ombrelian {

/// The parts of a number pattern such as "###,###,##0.00". In the pattern "," means the locale's
/// separator of groups and "." its decimal separator.
struct NumberMask {
  int minimumDigits = 0;  // digits of the whole part
  int decimals = 0;       // 0 to kMaximumDecimals
  bool grouped = false;

  static constexpr int kMaximumDecimals = 9;
};

/// Only the characters "#0,." count; a pattern without decimal separator shows whole numbers.
NumberMask parseNumberMask(TextView pattern);

/// How a value that is exactly between two results is rounded.
enum class Ties { AwayFromZero, ToEven };

/// An exact decimal number: the sign, the whole part and the first decimal places.
struct Decimal {
  bool negative = false;
  std::uint64_t whole = 0;
  std::uint64_t fraction = 0;  // 0 to 10^decimals - 1
  int decimals = 0;            // at most NumberMask::kMaximumDecimals
};

/// The absolute value, also of the smallest number.
constexpr std::uint64_t magnitude(std::int64_t value) {
  return value < 0 ? ~std::uint64_t(value) + 1 : std::uint64_t(value);
}

/// `value` divided by 2^`shift` (0 to 40), with at most two decimals; computed without floating
/// point.
Decimal divideByPowerOfTwo(std::int64_t value, int shift, int decimals, Ties ties);

/// Rounds the decimal notation of `value`, with ties away from zero. NaN gives 0. A value that does
/// not fit gives the largest number that fits.
Decimal roundDecimal(double value, int decimals);

/// Appends `number`, which has the decimals of `mask`, to `out` in the locale's notation.
void appendNumber(const NumberMask& mask, const Decimal& number, Text& out);

Text formatNumber(TextView pattern, std::int64_t value);
Text formatNumber(TextView pattern, double value);

/// `value` divided by 2^`shift`, with ties away from zero.
Text formatQuotient(TextView pattern, std::int64_t value, int shift);

/// The mask of a grid column, "*pattern*suffix" or "*pattern*suffix;;;", compiled once. The pattern
/// is for a number or a date; with ";;;" only positive values are shown.
class CellMask {
 public:
  CellMask() = default;

  /// A text that is not a mask gives the empty mask, which shows nothing.
  explicit CellMask(TextView mask);

  bool isDate() const { return kind_ == Kind::OfDate; }

  /// Appends the cell of a number, or of a date if the mask is for dates. Do not call it for an
  /// empty cell, which shows nothing under any mask.
  void append(std::int64_t value, Text& out) const;
  void append(double value, Text& out) const;

 private:
  enum class Kind { Nothing, OfNumber, OfDate };

  Kind kind_ = Kind::Nothing;
  bool positiveOnly_ = false;
  NumberMask number_;
  DatePattern date_;
  Text suffix_;
};

}  // namespace ombrelian
