#pragma once

#include <cstdint>
#include <limits>

#include "lists/Column.h"

namespace ombrelian {

/// Values for an empty Size or Count, and for an empty Percent. Such a cell is empty in every form,
/// and it is sorted before all others.
inline constexpr std::int64_t kNoNumber = INT64_MIN;
inline constexpr double kNoReal = -std::numeric_limits<double>::infinity();

/// The raw values of the rows of a list, wherever they are stored. The kind of the column decides
/// which of the three functions gives the value of a cell.
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

  /// Whether a cell has a value. Only cells of the three kinds below can be without one.
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
