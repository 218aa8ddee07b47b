#pragma once

#include "export/ReportSave.h"
#include "lists/FlatList.h"
#include "lists/ListTable.h"

namespace ombrelian {

/// A flat list and the data for the head of its report.
struct ListToSave {
  Text title;
  const Grid& grid;  // the rows are saved in their current order
  ColumnLayout layout;
  SizeSettings sizes;
  ReportSource source;
  bool writesFullPaths = false;  // the column "path" has the path with the name, as the file list
};

/// A list with the columns and units of the options; `source` is used for the head if the list has
/// no origin.
ListToSave listToSave(const Options& options, ListId id, FlatList& list, ReportSource source);

/// Saves a list to `target` (absolute) in `format`, with the delimiter text `delimiter`, and with
/// the date format and dividing lines of the options. For a list without rows, the report has only
/// a head. Failures are those of saveReport.
Failure saveList(const ListToSave& list, const Options& options, ReportFormat format,
                 TextView target, TextView delimiter, UserInterface& ui);

}  // namespace ombrelian
