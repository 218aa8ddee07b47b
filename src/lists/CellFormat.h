#pragma once

#include <vector>

#include "format/DatePattern.h"
#include "format/Mask.h"
#include "format/Sizes.h"
#include "lists/CellSource.h"

namespace ombrelian {

/// How the cells of one list are shown: what its columns, the user's units and the form of dates
/// make of a raw value.
class CellFormat {
 public:
  CellFormat() = default;

  /// `columns` must outlive the format; an empty `dateFormat` is the locale's.
  CellFormat(Columns columns, const SizeSettings& sizes, const Text& dateFormat);

  /// Title of a column, with the unit where it stands there.
  Text caption(const Column& column) const;

  /// Name of the column's field in formats that name fields; of a size the one of its unit.
  TextView fieldKey(const Column& column) const;

  // Two forms of a cell. Both procedures append the cell of a row to `out`.

  /// Appends the cell as lists show it.
  void appendShown(const CellSource& cells, CellSource::RowIndex row, const Column& column,
                   Text& out) const;

  /// The plain form that data formats take: unmasked, a size in the list's unit.
  void appendPlain(const CellSource& cells, CellSource::RowIndex row, const Column& column,
                   Text& out) const;

  /// What stands behind a cell that is counted and has a value, a size in the list's unit; only for
  /// such columns and Percent and Timestamp.
  double value(const CellSource& cells, CellSource::RowIndex row, const Column& column) const;

 private:
  void appendShownNumber(const Column& column, std::int64_t value, Text& out) const;
  bool hasUnit(const Column& column) const {
    return column.kind == CellKind::Size && sizes_.unit != kUnitBytes;
  }

  SizeSettings sizes_;
  DatePattern datePattern_;
  GeneralDate plainDate_;
  std::vector<SizeColumn>
      sizeColumns_;  // size column of each column id; empty: the column shows no size
  std::vector<CellMask> masks_;
};

}  // namespace ombrelian
