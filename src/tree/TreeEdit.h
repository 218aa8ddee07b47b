#pragma once

#include <vector>

#include "platform/Files.h"
#include "tree/FolderTree.h"

namespace ombrelian {

// Corrections of a scanned tree after something on the disk changed. They keep the numbers of all
// folders above as a new scan would find them; no number gets below 0.

/// Folders left the disk. None of `folders` lies below another one of them; sources may be among
/// them. A row for direct files goes where no subfolder is left beside it.
void takeOutFolders(FolderTree& tree, const std::vector<NodeIndex>& folders);

/// Direct files of a folder left the disk: `gone` has Size, Files and Hardlinks.
void takeOutFiles(FolderTree& tree, NodeIndex folder, const ScanTotals& gone);

/// A folder was read anew into its twin, which takes its place. Size, files and folders of those
/// above follow; with `followsAll` hardlinks, junctions and errors too.
void putInPlace(FolderTree& tree, NodeIndex folder, NodeIndex twin, bool followsAll);

/// The folders that stand for `path` (without final separator), one a source at most.
std::vector<NodeIndex> foldersAt(const FolderTree& tree, TextView path,
                                 char16_t separator = platform::kNativeSeparator);

/// The sources that lie below `path`, itself not included.
std::vector<NodeIndex> sourcesBelow(const FolderTree& tree, TextView path,
                                    char16_t separator = platform::kNativeSeparator);

/// `nodes` without those that lie below another one of them, each once, in the same order.
std::vector<NodeIndex> outermostOf(const FolderTree& tree, const std::vector<NodeIndex>& nodes);

}  // namespace ombrelian
