#pragma once

#include <cstdint>
#include <limits>

#include "lists/Column.h"

namespace ombrelian {

/// What stands where a Size or a Count, and what stands where a Percent has no value: the cell is
/// empty in every form, and comes before all others in order.
inline constexpr std::int64_t kNoNumber = INT64_MIN;
inline constexpr double kNoReal = -std::numeric_limits<double>::infinity();

/// The raw values behind the rows of a list, whatever keeps them. Which of the three a cell has
/// follows from the kind of its column.
class CellSource {
 public:
  using RowIndex = std::size_t;

  virtual ~CellSource() = default;

  /// The value of a text cell; valid until the list changes.
  virtual TextView text(RowIndex row, const Column& column) const = 0;

  /// The value of a Percent or Timestamp cell.
  virtual double real(RowIndex row, const Column& column) const = 0;

  /// The value of any other cell.
  virtual std::int64_t number(RowIndex row, const Column& column) const = 0;

  /// Whether a cell of those three kinds has a value; others always have.
  bool hasValue(RowIndex row, const Column& column) const {
    switch (column.kind) {
      case CellKind::Size:
      case CellKind::Count:
        return number(row, column) != kNoNumber;
      case CellKind::Percent:
        return real(row, column) != kNoReal;
      default:
        return true;
    }
  }
};

}  // namespace ombrelian
