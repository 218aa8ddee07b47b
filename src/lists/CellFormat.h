#pragma once

#include <vector>

#include "format/DatePattern.h"
#include "format/Mask.h"
#include "format/Sizes.h"
#include "lists/CellSource.h"

namespace ombrelian {

/// Converts raw values to the cells of one list, with its columns, the user's units and the form of
/// dates.
class CellFormat {
 public:
  CellFormat() = default;

  /// `columns` must outlive the format; an empty `dateFormat` means the format of the locale.
  CellFormat(Columns columns, const SizeSettings& sizes, const Text& dateFormat);

  /// Title of a column, with the unit if the settings show it in titles.
  Text caption(const Column& column) const;

  /// Name of the column's field in formats with named fields; for a size, the name that belongs to
  /// its unit.
  TextView fieldKey(const Column& column) const;

  // The two forms of a cell. Both functions append the cell of a row to `out`.

  /// Appends the cell in the form of the lists.
  void appendShown(const CellSource& cells, CellSource::RowIndex row, const Column& column,
                   Text& out) const;

  /// Appends the plain form for data formats: without mask, and with a size in the unit of the
  /// list.
  void appendPlain(const CellSource& cells, CellSource::RowIndex row, const Column& column,
                   Text& out) const;

  /// The value of a numeric cell that is not empty; a size is in the unit of the list. Only for
  /// columns that count something, and for Percent and Timestamp.
  double value(const CellSource& cells, CellSource::RowIndex row, const Column& column) const;

 private:
  void appendShownNumber(const Column& column, std::int64_t value, Text& out) const;
  bool hasUnit(const Column& column) const {
    return column.kind == CellKind::Size && sizes_.unit != kUnitBytes &&
           sizes_.unit != kUnitFitting;
  }

  SizeSettings sizes_;
  DatePattern datePattern_;
  GeneralDate plainDate_;
  std::vector<SizeColumn>
      sizeColumns_;  // size column of each column id; empty: the column shows no size
  std::vector<CellMask> masks_;
};

}  // namespace ombrelian
