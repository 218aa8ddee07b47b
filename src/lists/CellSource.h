#pragma once

#include <cstdint>

#include "lists/Column.h"

namespace ombrelian {

/// The raw values behind the rows of a list, whatever keeps them. Which of the three a cell has
/// follows from the kind of its column.
class CellSource {
 public:
  using RowIndex = std::size_t;

  virtual ~CellSource() = default;

  /// Of texts; valid until the list changes.
  virtual TextView text(RowIndex row, const Column& column) const = 0;

  /// Of Percent and Timestamp.
  virtual double real(RowIndex row, const Column& column) const = 0;

  /// Of all others.
  virtual std::int64_t number(RowIndex row, const Column& column) const = 0;
};

}  // namespace ombrelian
