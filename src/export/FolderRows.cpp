#include "export/FolderRows.h"

#include "core/tree/Report.h"
#include "fs/PathText.h"

namespace ombrelian {

Text FolderRows::startName(NodeIndex node) const {
  const FolderTree& tree = report_.tree();
  if (tree[node].level == 0) return Text(tree[node].name());
  return Report_GetFullpathOfNode(tree, node, false, false);
}

bool FolderRows::isWritten(const FolderNode& node) const {
  if (limit_.kind != LevelLimit::Kind::Number) return true;
  if (limit_.levels == 0) return !node.has(FolderNode::IsFolder);
  return std::int64_t(node.level) <= limit_.levels;
}

/// Whether the rows below `start` come at all; with a limit of 0 those of its own files do.
bool FolderRows::isStartFollowed(NodeIndex start) const {
  const FolderNode& row = report_.tree()[start];
  if (limit_.kind == LevelLimit::Kind::Number && limit_.levels == 0) return row.hasChildren();
  return isFollowed(start);
}

bool FolderRows::isFollowed(NodeIndex node) const {
  const FolderNode& row = report_.tree()[node];
  if (!row.hasChildren()) return false;
  switch (limit_.kind) {
    case LevelLimit::Kind::All:
      return true;
    case LevelLimit::Kind::Number:
      return std::int64_t(row.level) < limit_.levels;
    case LevelLimit::Kind::Expanded:
      return report_.isExpanded(node);
  }
  return false;
}

bool FolderRows::visitChildren(NodeIndex start, const Visitor& visit) const {
  const FolderTree& tree = report_.tree();
  if (!isStartFollowed(start)) return true;
  Text path = startName(start);
  std::vector<std::size_t> lengths;  // of path above each level that is being visited
  Text name;
  NodeIndex node = tree[start].firstChild;
  while (node != kNoNode) {
    const FolderNode& row = tree[node];
    name = path;
    if (row.has(FolderNode::IsFolder)) {
      appendName(name, row.name());
    } else {
      appendName(name, u"[").append(row.name()).append(u"]");
    }
    if (isWritten(row) && !visit(node, name)) return false;
    if (row.has(FolderNode::IsFolder) && isFollowed(node)) {
      lengths.push_back(path.size());
      path = name;
      node = row.firstChild;
      continue;
    }
    while (tree[node].nextSibling == kNoNode && !lengths.empty()) {
      path.resize(lengths.back());
      lengths.pop_back();
      node = tree[node].parent;
    }
    node = tree[node].nextSibling;
  }
  return true;
}

}  // namespace ombrelian
