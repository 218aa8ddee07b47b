#pragma once

#include "lists/FolderReport.h"

namespace ombrelian {

/// Orders all siblings of the tree, the sources too, by a column of the folder report: texts as the
/// locale does, everything else by what stands behind the cell. Equals keep their order.
void sortFolders(FolderTree& tree, const FolderReport& report, const Column& column,
                 bool descending);

}  // namespace ombrelian
