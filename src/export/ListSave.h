#pragma once

#include "export/ReportSave.h"
#include "lists/FlatList.h"
#include "lists/ListTable.h"

namespace ombrelian {

/// A flat list with what its head tells.
struct ListToSave {
  Text title;
  const Grid& grid;  // its rows are saved in their present order
  ColumnLayout layout;
  SizeSettings sizes;
  ReportSource source;
};

/// A list as the options have it; `source` is what its head tells where the list has no origin of
/// its own.
ListToSave listToSave(const Options& options, ListId id, FlatList& list, ReportSource source);

/// Saves a list as `target` (absolute) in `format`, with the delimiter text `delimiter` and what
/// the options say of dates and dividing lines. A list without rows becomes a report of its head
/// alone. Failures as saveReport.
Failure saveList(const ListToSave& list, const Options& options, ReportFormat format,
                 TextView target, TextView delimiter, UserInterface& ui);

}  // namespace ombrelian
