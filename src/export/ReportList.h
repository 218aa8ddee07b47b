#pragma once

#include "export/ReportShape.h"
#include "lists/CellFormat.h"
#include "tree/FolderTree.h"

namespace ombrelian {

/// A list for a report: its title, its columns and their form, and the source of the values.
struct ReportList {
  Text title;
  const ReportShape& shape;
  const CellSource& cells;
  const CellFormat& format;
  std::vector<const Column*> columns;  // columns in the order of the report

  // The column of the last sort; null: there was none, or the column is not written.
  const Column* sortColumn = nullptr;
  bool sortedDescending = false;
};

/// Data for the head of a report, or of one source in it.
struct ReportSource {
  Text path;                     // path of the source; empty: the list has none
  Date created = 0;              // time when the values were read
  std::vector<Text> notes = {};  // remarks on what is missing, such as the filters of the scan
};

/// Remarks on what is missing in a source: what its scan left out, and whether it was stopped.
std::vector<Text> notesOn(const FolderTree& tree, NodeIndex source);

/// One row of a report.
struct ReportRow {
  CellSource::RowIndex index = 0;
  std::uint64_t number = 0;  // counted from 1
  TextView name = {};        // replaces the cell of the first column; empty: the cell is used
  std::uint32_t level = 0;   // depth in the tree; a source has 0
  bool isStart = false;      // the first row of a source
};

/// Gives the cells of the rows of `list`.
class ReportCells {
 public:
  /// A reference to `list` is kept.
  explicit ReportCells(const ReportList& list) : list_(list) {}

  /// Appends the cell with its own value.
  void append(CellForm form, const ReportRow& row, const Column& column, Text& out) const;

  /// The same, but the name of the row replaces its cell.
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

/// The path of a source for its line in the head; with `labelsDrives`, the path of a drive has its
/// label.
Text describeSource(const Text& path, bool labelsDrives);

/// Label of the drive whose root is `path`; empty if it has none, and for every other path.
Text driveLabelOf(const Text& path);

}  // namespace ombrelian
