#pragma once

#include <functional>

#include "platform/Files.h"
#include "tree/FolderTree.h"

namespace ombrelian {

/// Gives a folder the totals of its finished subtree.
void Report_SetNodeSizeAndFilecount(FolderNode& node, std::int64_t size, std::int32_t files);

/// Marks a folder whose listing was stopped.
void cutOff(FolderNode& node);

/// Sorts the children of every folder by size, with the largest first. Sources keep their order.
/// Equal folders keep the order in which they were read. `serve` is called between folders.
void Report_Folder_Sort_All(FolderTree& tree, const std::function<void()>& serve = {});

/// Path of a folder; for a pseudo folder, the path of its parent with its own name. With
/// `skipRootName` the part of the source is left out.
Text Report_GetFullpathOfNode(const FolderTree& tree, NodeIndex node, bool skipRootName,
                              bool addBackslash, char16_t separator = platform::kNativeSeparator);

/// The source that contains `node`, which may be the source itself.
NodeIndex sourceOf(const FolderTree& tree, NodeIndex node);

/// The paths of all sources, with commas between them.
Text pathsOfSources(const FolderTree& tree);

/// Whether a folder of any source was cut off.
bool isIncomplete(const FolderTree& tree);

/// The next node in the order of the rows when everything is expanded; kNoNode at the end of the
/// subtree of `top`. It works for any depth.
NodeIndex nextInSubtree(const FolderTree& tree, NodeIndex node, NodeIndex top);

}  // namespace ombrelian
