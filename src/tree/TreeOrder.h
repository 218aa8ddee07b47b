#pragma once

#include <functional>

#include "platform/Files.h"
#include "tree/FolderTree.h"

namespace ombrelian {

/// Gives a folder the totals of its finished subtree.
void Report_SetNodeSizeAndFilecount(FolderNode& node, std::int64_t size, std::int32_t files);

/// Orders the children of every folder, largest first; sources stay where they are. Equals keep
/// the order in which the disk gave them. `serve` runs between folders.
void Report_Folder_Sort_All(FolderTree& tree, const std::function<void()>& serve = {});

/// Path of a folder; a pseudo folder gives its parent's path with its own name. With
/// `skipRootName` the source's part is left out.
Text Report_GetFullpathOfNode(const FolderTree& tree, NodeIndex node, bool skipRootName,
                              bool addBackslash, char16_t separator = platform::kNativeSeparator);

/// The node that follows in the order of the rows when everything is expanded; kNoNode at the end
/// of the subtree of `top`. Depth does not matter.
NodeIndex nextInSubtree(const FolderTree& tree, NodeIndex node, NodeIndex top);

}  // namespace ombrelian
