#include "tree/TreeOrder.h"

#include "fs/PathText.h"

namespace ombrelian {
namespace {

NodeIndex nextBeside(const FolderTree& tree, NodeIndex node, NodeIndex top) {
  while (node != top) {
    if (tree[node].nextSibling != kNoNode) return tree[node].nextSibling;
    node = tree[node].parent;
  }
  return kNoNode;
}

}  // namespace

void Report_SetNodeSizeAndFilecount(FolderNode& node, std::int64_t size, std::int32_t files) {
  node.size = size;
  node.files = files;
}

void cutOff(FolderNode& node) {
  node.set(FolderNode::IsCutOff);
  node.set(FolderNode::IsIncomplete);
}

void Report_Folder_Sort_All(FolderTree& tree, const std::function<void()>& serve) {
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(tree, node, root)) {
      tree.sortChildren(node,
                        [](const FolderNode& a, const FolderNode& b) { return a.size > b.size; });
      if (serve) serve();
    }
  }
}

Text Report_GetFullpathOfNode(const FolderTree& tree, NodeIndex node, bool skipRootName,
                              bool addBackslash, char16_t separator) {
  std::vector<NodeIndex> way;
  for (; node != kNoNode; node = tree[node].parent)
    way.push_back(node);
  Text path;
  if (skipRootName) way.pop_back();
  for (; !way.empty(); way.pop_back()) {
    const TextView name = tree[way.back()].name();
    if (path.empty()) {
      path = name;
    } else {
      appendName(path, name, separator);
    }
  }
  return addBackslash && !path.empty() ? xAddBackslash(path, separator) : path;
}

NodeIndex sourceOf(const FolderTree& tree, NodeIndex node) {
  while (tree[node].parent != kNoNode)
    node = tree[node].parent;
  return node;
}

Text pathsOfSources(const FolderTree& tree) {
  Text paths;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    if (!paths.empty()) paths += u", ";
    paths += tree[root].name();
  }
  return paths;
}

bool isIncomplete(const FolderTree& tree) {
  NodeIndex root = tree.firstRoot();
  while (root != kNoNode && !tree[root].has(FolderNode::IsIncomplete))
    root = tree[root].nextSibling;
  return root != kNoNode;
}

NodeIndex nextInSubtree(const FolderTree& tree, NodeIndex node, NodeIndex top) {
  if (tree[node].firstChild != kNoNode) return tree[node].firstChild;
  return nextBeside(tree, node, top);
}

}  // namespace ombrelian
