#pragma once

#include <vector>

#include "platform/Files.h"
#include "tree/FolderTree.h"

namespace ombrelian {

// Corrections of a scanned tree after something on the disk changed. They change the numbers of all
// folders above to those that a new scan would find; no number becomes negative.

/// Removes folders that are gone from the disk. None of `folders` is below another one of them;
/// sources may be among them. A row for direct files is removed if no subfolder remains beside it.
void takeOutFolders(FolderTree& tree, const std::vector<NodeIndex>& folders);

/// A file that is gone from the disk.
struct GoneFile {
  std::int64_t size = 0;    // bytes
  bool isHardlink = false;  // it had further names
  platform::FileIdentity identity;
};

/// Subtracts direct files of a folder that are gone from the disk.
void takeOutFiles(FolderTree& tree, NodeIndex folder, const std::vector<GoneFile>& gone);

/// Must be called before a folder is read again into its twin: names of hardlinks in the folder and
/// below count no longer, so that the names that are found count instead.
void forgetHardlinks(FolderTree& tree, NodeIndex folder);

/// Replaces a folder with its twin, into which it was read again. Size, files and folders of the
/// folders above are corrected; with `followsAll` also hardlinks, junctions and errors.
void putInPlace(FolderTree& tree, NodeIndex folder, NodeIndex twin, bool followsAll);

/// The path of an object without the links on the way to its source.
Text realPath(const FolderTree& tree, TextView path,
              char16_t separator = platform::kNativeSeparator);

/// Notes that the folder with the real path `from` has the real path `to` now.
void renameRealPaths(FolderTree& tree, TextView from, TextView to,
                     char16_t separator = platform::kNativeSeparator);

/// The folders with the path `path` (without final separator), at most one for each source. Sources
/// that are or contain the same folder by another path, such as a link, have it too.
std::vector<NodeIndex> foldersAt(const FolderTree& tree, TextView path,
                                 char16_t separator = platform::kNativeSeparator);

/// The sources below `path`, without a source at `path` itself.
std::vector<NodeIndex> sourcesBelow(const FolderTree& tree, TextView path,
                                    char16_t separator = platform::kNativeSeparator);

/// `nodes` in the same order, without duplicates and without nodes below another one of them.
std::vector<NodeIndex> outermostOf(const FolderTree& tree, const std::vector<NodeIndex>& nodes);

}  // namespace ombrelian
