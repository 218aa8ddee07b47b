#pragma once

#include "lists/Grid.h"

namespace ombrelian {

// Parts of the status lines of the lists.

Text fileCountText(std::int64_t count);
Text folderCountText(std::int64_t count);
Text selectedFilesText(std::int64_t count, TextView size);
Text selectedFoldersText(std::int64_t count, TextView size);

/// A count in the form of the status lines.
Text statusCount(std::int64_t count);

/// Sum of the column "size" of the rows, in bytes.
std::int64_t sumOfSizes(const Grid& grid, const std::vector<Grid::RowIndex>& rows);

}  // namespace ombrelian
