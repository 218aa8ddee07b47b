#include "lists/ShownFolders.h"

#include <algorithm>

#include "tree/TreeOrder.h"

namespace ombrelian {

void ShownFolders::rebuild() {
  rows_.clear();
  const FolderTree& tree = report_.tree();
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling)
    appendShown(root, rows_);
}

/// Appends the node and the shown nodes below it.
void ShownFolders::appendShown(NodeIndex top, std::vector<NodeIndex>& rows) const {
  const FolderTree& tree = report_.tree();
  NodeIndex node = top;
  for (;;) {
    rows.push_back(node);
    if (report_.isExpanded(node) && tree[node].hasChildren()) {
      node = tree[node].firstChild;
      continue;
    }
    while (node != top && tree[node].nextSibling == kNoNode)
      node = tree[node].parent;
    if (node == top) return;
    node = tree[node].nextSibling;
  }
}

std::size_t ShownFolders::rowOf(NodeIndex node) const {
  const auto found = std::find(rows_.begin(), rows_.end(), node);
  return found == rows_.end() ? kNoRow : std::size_t(found - rows_.begin());
}

/// The rows that are shown below `row` when it is expanded, even if it is not expanded now.
std::vector<NodeIndex> ShownFolders::rowsBrought(std::size_t row) const {
  std::vector<NodeIndex> below;
  const FolderTree& tree = report_.tree();
  for (NodeIndex child = tree[rows_[row]].firstChild; child != kNoNode;
       child = tree[child].nextSibling)
    appendShown(child, below);
  return below;
}

std::size_t ShownFolders::rowsToShow(std::size_t row) const { return rowsBrought(row).size(); }

std::size_t ShownFolders::rowsBelow(std::size_t row) const {
  const FolderTree& tree = report_.tree();
  const std::uint32_t level = tree[rows_[row]].level;
  std::size_t end = row + 1;
  while (end < rows_.size() && tree[rows_[end]].level > level)
    ++end;
  return end - row - 1;
}

void ShownFolders::expand(std::size_t row) {
  if (isExpanded(row) || !canExpand(row)) return;
  const std::vector<NodeIndex> below = rowsBrought(row);
  report_.setExpanded(rows_[row], true);
  rows_.insert(rows_.begin() + std::ptrdiff_t(row) + 1, below.begin(), below.end());
}

void ShownFolders::collapse(std::size_t row) {
  const auto begin = rows_.begin() + std::ptrdiff_t(row) + 1;
  rows_.erase(begin, begin + std::ptrdiff_t(rowsBelow(row)));
  report_.setExpanded(rows_[row], false);
}

void ShownFolders::markSubtree(NodeIndex top, bool expanded) {
  const FolderTree& tree = report_.tree();
  const auto mark = [&](NodeIndex root) {
    for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(tree, node, root))
      report_.setExpanded(node, expanded && tree[node].hasChildren());
  };
  if (top != kNoNode) {
    mark(top);
    return;
  }
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling)
    mark(root);
}

void ShownFolders::markLevels(std::uint32_t levels) {
  const FolderTree& tree = report_.tree();
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(tree, node, root))
      report_.setExpanded(node, tree[node].level < levels && tree[node].hasChildren());
  }
}

void ShownFolders::markAbove(NodeIndex node) {
  const FolderTree& tree = report_.tree();
  for (node = tree[node].parent; node != kNoNode; node = tree[node].parent)
    report_.setExpanded(node, true);
}

}  // namespace ombrelian
