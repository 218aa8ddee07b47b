#pragma once

#include "export/ReportShape.h"
#include "lists/CellFormat.h"

namespace ombrelian {

/// A list as a report takes it: what it is called, which columns are written, in which form, and
/// where the values come from.
struct ReportList {
  Text title;
  const ReportShape& shape;
  const CellSource& cells;
  const CellFormat& format;
  std::vector<const Column*> columns;  // columns in the order of the report

  // The column by which the rows were sorted; null: a column that is not written, or none.
  const Column* sortColumn = nullptr;
  bool sortedDescending = false;
};

/// What the head of a report, or of one source in it, tells.
struct ReportSource {
  Text path;         // empty: the list has none
  Date created = 0;  // when the values were read
};

/// One row on its way into a report.
struct ReportRow {
  CellSource::RowIndex index = 0;
  std::uint64_t number = 0;  // counted from 1
  TextView name = {};        // goes before the cell of the first column; empty: the cell counts
  std::uint32_t level = 0;   // depth in the tree; a source has 0
  bool isStart = false;      // the row that a source begins with
};

/// The rows of `list`, cell by cell.
class ReportCells {
 public:
  /// The arguments are kept by reference.
  explicit ReportCells(const ReportList& list) : list_(list) {}

  /// Appends the cell of the list itself.
  void append(CellForm form, const ReportRow& row, const Column& column, Text& out) const;

  /// The same with the row's name in its place.
  void appendNamed(CellForm form, const ReportRow& row, const Column& column, Text& out) const {
    if (hasName(row, column)) {
      out += row.name;
    } else {
      append(form, row, column, out);
    }
  }

  static bool hasName(const ReportRow& row, const Column& column) {
    return column.id == 1 && !row.name.empty();
  }

 private:
  const ReportList& list_;
};

/// The path of a source for the line that tells it; a drive's with its label where `labelsDrives`.
Text describeSource(const Text& path, bool labelsDrives);

/// Label of the drive whose root is `path`; empty where that has none, and for every other path.
Text driveLabelOf(const Text& path);

}  // namespace ombrelian
