#pragma once

#include <vector>

#include "format/DatePattern.h"
#include "format/Mask.h"
#include "format/Sizes.h"
#include "lists/Column.h"

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

  /// The cell as it is shown.
  Text shown(const Column& column, std::int64_t value) const;
  Text shown(const Column& column, double value) const;

  /// The plain form that data formats take: unmasked, a size in the list's unit.
  Text plain(const Column& column, std::int64_t value) const;
  Text plain(const Column& column, double value) const;

 private:
  SizeSettings sizes_;
  SizeColumn sizeColumn_;
  DatePattern datePattern_;
  std::vector<CellMask> masks_;  // by column id; empty where the kind needs none
};

}  // namespace ombrelian
