#pragma once

#include "lists/Grid.h"

namespace ombrelian {

// What the status lines of the lists are made of.

Text fileCountText(std::int64_t count);
Text folderCountText(std::int64_t count);
Text selectedFilesText(std::int64_t count, TextView size);
Text selectedFoldersText(std::int64_t count, TextView size);

/// A count as status lines show it.
Text statusCount(std::int64_t count);

/// Bytes of the rows by their column "size".
std::int64_t sumOfSizes(const Grid& grid, const std::vector<Grid::RowIndex>& rows);

}  // namespace ombrelian
