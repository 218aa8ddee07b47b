#pragma once

#include "lists/FileList.h"
#include "tree/FolderTree.h"

namespace ombrelian {

// Renaming on the disk and in the tree. Whatever had the new name is replaced without a question,
// as far as the system allows it, and the sums follow. Empty: it was done; else the error text, and
// all is as it was.

/// The folder at `path` (without final separator) in every source that shows it.
Text renameFolder(FolderTree& tree, TextView path, TextView name);

/// A file of the file list.
Text renameFile(FolderTree& tree, FileList& files, Grid::RowIndex row, TextView name);

}  // namespace ombrelian
