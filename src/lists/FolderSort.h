#pragma once

#include "lists/FolderReport.h"

namespace ombrelian {

/// Sorts all siblings of the tree, including the sources, by a column of the folder report: texts
/// by the rules of the locale, all other values by their number. Equal siblings keep their order.
void sortFolders(FolderTree& tree, const FolderReport& report, const Column& column,
                 bool descending);

}  // namespace ombrelian
