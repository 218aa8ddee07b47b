#include "tree/TreeEdit.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "tree/TreeOrder.h"

namespace ombrelian {
namespace {

template <class Count>
void lower(Count& count, Count by) {
  count = std::max<Count>(0, count - by);
}

void subtract(FolderNode& node, const ScanTotals& gone) {
  lower(node.size, gone.Size);
  lower(node.files, gone.Files);
  lower(node.folders, gone.Folders);
  lower(node.hardlinks, gone.Hardlinks);
  lower(node.junctions, gone.Junctions);
  lower(node.errors, gone.Errors);
}

void subtractAbove(FolderTree& tree, NodeIndex node, const ScanTotals& gone) {
  for (node = tree[node].parent; node != kNoNode; node = tree[node].parent)
    subtract(tree[node], gone);
}

NodeIndex pseudoFolderOf(const FolderTree& tree, NodeIndex folder) {
  NodeIndex child = tree[folder].firstChild;
  while (child != kNoNode && tree[child].has(FolderNode::IsFolder))
    child = tree[child].nextSibling;
  return child;
}

bool hasOnlyPseudoFolder(const FolderTree& tree, NodeIndex folder) {
  const FolderNode& node = tree[folder];
  return node.hasChildren() && node.firstChild == node.lastChild &&
         !tree[node.firstChild].has(FolderNode::IsFolder);
}

bool liesBelow(TextView path, TextView folder, char16_t separator) {
  if (folder.ends_with(separator)) return path.size() > folder.size() && path.starts_with(folder);
  return path.size() > folder.size() && path[folder.size()] == separator &&
         path.starts_with(folder);
}

/// The path of a source without links on the way.
TextView realPath(const FolderTree& tree, NodeIndex root) {
  const Text& real = tree.facts(root).realPath;
  return real.empty() ? tree[root].name() : TextView(real);
}

NodeIndex childOf(const FolderTree& tree, NodeIndex folder, TextView name) {
  NodeIndex child = tree[folder].firstChild;
  while (child != kNoNode && !(tree[child].has(FolderNode::IsFolder) && tree[child].name() == name))
    child = tree[child].nextSibling;
  return child;
}

/// Finds the folder at `rest` below `folder`.
NodeIndex descend(const FolderTree& tree, NodeIndex folder, TextView rest, char16_t separator) {
  while (folder != kNoNode && !rest.empty()) {
    const TextView name = rest.substr(0, rest.find(separator));
    if (!name.empty()) folder = childOf(tree, folder, name);
    rest.remove_prefix(std::min(rest.size(), name.size() + 1));
  }
  return folder;
}

/// The totals that a folder adds to the folder above it, including the folder itself.
ScanTotals totalsWithItself(const FolderNode& folder) {
  ScanTotals totals = {folder.size,   folder.files,     folder.folders + 1,
                       folder.errors, folder.hardlinks, folder.junctions};
  // A junction that was not entered is already in its own counts; one that was entered is counted
  // for the folder above.
  const bool wasEntered = folder.attributes != 0;
  if (folder.has(FolderNode::IsJunction) && wasEntered) ++totals.Junctions;
  return totals;
}

/// Corrects the mark of every folder above a folder that was read again or removed.
void markIncompleteAbove(FolderTree& tree, NodeIndex above) {
  for (; above != kNoNode; above = tree[above].parent) {
    bool isIncomplete = tree[above].has(FolderNode::IsCutOff);
    for (NodeIndex child = tree[above].firstChild; child != kNoNode && !isIncomplete;
         child = tree[child].nextSibling)
      isIncomplete = tree[child].has(FolderNode::IsIncomplete);
    if (tree[above].has(FolderNode::IsIncomplete) == isIncomplete) return;
    tree[above].set(FolderNode::IsIncomplete, isIncomplete);
  }
}

/// Forgets the names of hardlinks in folders and below them.
void forgetNames(FolderTree& tree, const std::vector<NodeIndex>& folders) {
  if (tree.HardlinkSeen().empty()) return;
  std::vector<bool> isGone(tree.nodeCount());
  for (const NodeIndex folder : folders)
    for (NodeIndex node = folder; node != kNoNode; node = nextInSubtree(tree, node, folder))
      isGone[node] = true;
  tree.HardlinkSeen().removeFolders([&](NodeIndex folder) { return isGone[folder]; });
}

/// Adds the sizes of hardlinks that lost their counted name to the folders of other names.
void settleNames(FolderTree& tree) {
  std::unordered_map<NodeIndex, std::int64_t> sizes;
  for (const auto& [folder, size] : tree.HardlinkSeen().settle())
    sizes[folder] = addSizes(sizes[folder], size);
  for (const auto& [folder, size] : sizes) {
    if (const NodeIndex pseudo = pseudoFolderOf(tree, folder); pseudo != kNoNode) {
      tree[pseudo].size = addSizes(tree[pseudo].size, size);
    }
    for (NodeIndex node = folder; node != kNoNode; node = tree[node].parent)
      tree[node].size = addSizes(tree[node].size, size);
  }
}

}  // namespace

void takeOutFolders(FolderTree& tree, const std::vector<NodeIndex>& folders) {
  std::vector<NodeIndex> parents;
  for (const NodeIndex folder : folders) {
    subtractAbove(tree, folder, totalsWithItself(tree[folder]));
    if (tree[folder].parent == kNoNode) continue;
    parents.push_back(tree[folder].parent);
    lower(tree[parents.back()].subfolders, 1);
  }
  forgetNames(tree, folders);
  tree.remove(folders);
  std::sort(parents.begin(), parents.end());
  parents.erase(std::unique(parents.begin(), parents.end()), parents.end());
  std::vector<NodeIndex> pseudoFolders;
  for (const NodeIndex parent : parents) {
    if (hasOnlyPseudoFolder(tree, parent)) pseudoFolders.push_back(tree[parent].firstChild);
  }
  if (!pseudoFolders.empty()) tree.remove(pseudoFolders);
  for (const NodeIndex parent : parents)
    markIncompleteAbove(tree, parent);
  settleNames(tree);
}

void forgetHardlinks(FolderTree& tree, NodeIndex folder) { forgetNames(tree, {folder}); }

void takeOutFiles(FolderTree& tree, NodeIndex folder, const std::vector<GoneFile>& gone) {
  const HardlinkNames::Run run = tree.facts(sourceOf(tree, folder)).run;
  ScanTotals totals;
  for (const GoneFile& file : gone) {
    ++totals.Files;
    const auto counted = tree.HardlinkSeen().remove(run, file.identity, folder);
    totals.Size = addSizes(totals.Size, counted.value_or(file.size));
    totals.Hardlinks += file.isHardlink ? 1 : 0;
  }
  subtract(tree[folder], totals);
  subtractAbove(tree, folder, totals);
  if (const NodeIndex pseudo = pseudoFolderOf(tree, folder); pseudo != kNoNode) {
    subtract(tree[pseudo], totals);
    if (tree[pseudo].files == 0) tree.remove({pseudo});
  }
  settleNames(tree);
}

void putInPlace(FolderTree& tree, NodeIndex folder, NodeIndex twin, bool followsAll) {
  const FolderNode old = tree[folder];
  const FolderNode fresh = tree[twin];
  tree.adopt(folder, twin);
  for (NodeIndex above = old.parent; above != kNoNode; above = tree[above].parent) {
    FolderNode& node = tree[above];
    lower(node.size, old.size - fresh.size);
    lower(node.files, old.files - fresh.files);
    lower(node.folders, old.folders - fresh.folders);
    if (!followsAll) continue;
    lower(node.hardlinks, old.hardlinks - fresh.hardlinks);
    lower(node.junctions, old.junctions - fresh.junctions);
    lower(node.errors, old.errors - fresh.errors);
  }
  markIncompleteAbove(tree, old.parent);
  settleNames(tree);
}

Text realPath(const FolderTree& tree, TextView path, char16_t separator) {
  TextView source;
  TextView real;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    const TextView name = tree[root].name();
    const bool isHere = path == name || liesBelow(path, name, separator);
    if (!isHere || name.size() < source.size()) continue;
    source = name;
    real = realPath(tree, root);
  }
  Text resolved(real);
  const TextView rest = path.substr(source.size());
  if (resolved.ends_with(separator) && rest.starts_with(separator)) resolved.pop_back();
  return resolved.append(rest);
}

void renameRealPaths(FolderTree& tree, TextView from, TextView to, char16_t separator) {
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    Text& real = tree.facts(root).realPath;
    if (real == from || liesBelow(real, from, separator)) real.replace(0, from.size(), to);
  }
}

std::vector<NodeIndex> foldersAt(const FolderTree& tree, TextView shown, char16_t separator) {
  const Text path = realPath(tree, shown, separator);
  std::vector<NodeIndex> found;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    const TextView source = realPath(tree, root);
    NodeIndex folder = kNoNode;
    if (path == source) folder = root;
    if (liesBelow(path, source, separator)) {
      folder = descend(tree, root, path.substr(source.size()), separator);
    }
    if (folder != kNoNode) found.push_back(folder);
  }
  return found;
}

std::vector<NodeIndex> sourcesBelow(const FolderTree& tree, TextView shown, char16_t separator) {
  const Text path = realPath(tree, shown, separator);
  std::vector<NodeIndex> found;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    if (liesBelow(realPath(tree, root), path, separator)) found.push_back(root);
  }
  return found;
}

std::vector<NodeIndex> outermostOf(const FolderTree& tree, const std::vector<NodeIndex>& nodes) {
  const std::unordered_set<NodeIndex> chosen(nodes.begin(), nodes.end());
  std::unordered_set<NodeIndex> taken;
  std::vector<NodeIndex> outermost;
  for (const NodeIndex node : nodes) {
    NodeIndex above = tree[node].parent;
    while (above != kNoNode && !chosen.contains(above))
      above = tree[above].parent;
    if (above == kNoNode && taken.insert(node).second) outermost.push_back(node);
  }
  return outermost;
}

}  // namespace ombrelian
