#pragma once

#include "lists/FileList.h"
#include "tree/FolderTree.h"

namespace ombrelian {

// Renaming on the disk and in the tree. An object with the new name is replaced without a question
// if the system allows it, and the sums are corrected. The result is empty on success, else it is
// the error text, and nothing was changed.

/// Renames the folder at `path` (without final separator) in every source that contains it.
Text renameFolder(FolderTree& tree, TextView path, TextView name);

/// Renames a file of the file list.
Text renameFile(FolderTree& tree, FileList& files, Grid::RowIndex row, TextView name);

}  // namespace ombrelian
