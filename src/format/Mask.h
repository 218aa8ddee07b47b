#pragma once

#include <cstdint>

#include "format/DatePattern.h"
#include "support/Text.h"

namespace ombrelian {

/// A number pattern such as "###,###,##0.00", taken apart. In the pattern "," stands for the
/// locale's separator of groups and "." for its decimal separator.
struct NumberMask {
  int minimumDigits = 0;  // digits of the whole part
  int decimals = 0;       // 0 to kMaximumDecimals
  bool grouped = false;

  static constexpr int kMaximumDecimals = 9;
};

/// Only the characters "#0,." count; a pattern without decimal separator shows whole numbers.
NumberMask parseNumberMask(TextView pattern);

/// How a value that lies exactly between two results is rounded.
enum class Ties { AwayFromZero, ToEven };

/// A decimal number without error: the sign, the whole part and the first places behind it.
struct Decimal {
  bool negative = false;
  std::uint64_t whole = 0;
  std::uint64_t fraction = 0;  // 0 to 10^decimals - 1
  int decimals = 0;            // at most NumberMask::kMaximumDecimals
};

/// The absolute value, of the smallest number too.
constexpr std::uint64_t magnitude(std::int64_t value) {
  return value < 0 ? ~std::uint64_t(value) + 1 : std::uint64_t(value);
}

/// `value` divided by 2^`shift` (0 to 40), with at most two decimals; never goes through a float.
Decimal divideByPowerOfTwo(std::int64_t value, int shift, int decimals, Ties ties);

/// Rounds what `value` prints as in decimal notation, ties away from zero. A value that is no
/// number gives 0, one that does not fit the largest that does.
Decimal roundDecimal(double value, int decimals);

/// `number`, which has the decimals of `mask`, in the locale's notation; appended to `out`.
void appendNumber(const NumberMask& mask, const Decimal& number, Text& out);

Text formatNumber(TextView pattern, std::int64_t value);
Text formatNumber(TextView pattern, double value);

/// `value` divided by 2^`shift`, ties away from zero.
Text formatQuotient(TextView pattern, std::int64_t value, int shift);

/// The mask of a grid column, "*pattern*suffix" or "*pattern*suffix;;;", compiled once. The pattern
/// is of a number or of a date; with ";;;" only positive values show.
class CellMask {
 public:
  CellMask() = default;

  /// A text that is no such mask gives the empty mask, which shows nothing.
  explicit CellMask(TextView mask);

  bool isDate() const { return kind_ == Kind::OfDate; }

  /// Appends the cell of a number, or of a date where the mask is one of dates. An empty cell is
  /// the caller's business: it shows nothing under any mask.
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
