#pragma once

#include <cstddef>
#include <vector>

#include "lists/FolderReport.h"

namespace ombrelian {

/// The rows of the folder report from top to bottom: every source, and the children of every
/// expanded folder. A row takes four bytes; the report stores the flags of expanded folders.
class ShownFolders {
 public:
  static constexpr std::size_t kNoRow = SIZE_MAX;

  /// A reference to `report` is kept. There are no rows before the first rebuild().
  explicit ShownFolders(FolderReport& report) : report_(report) {}

  /// Makes the rows from the current tree; call it after nodes were added, removed or sorted.
  void rebuild();

  std::size_t count() const { return rows_.size(); }
  NodeIndex node(std::size_t row) const { return rows_[row]; }

  /// Row of a node; kNoRow: the node is not shown.
  std::size_t rowOf(NodeIndex node) const;

  bool canExpand(std::size_t row) const { return report_.tree()[rows_[row]].hasChildren(); }
  bool isExpanded(std::size_t row) const { return report_.isExpanded(rows_[row]); }

  /// Number of rows that expand() would add, or collapse() would remove, below `row`.
  std::size_t rowsToShow(std::size_t row) const;
  std::size_t rowsBelow(std::size_t row) const;

  void expand(std::size_t row);
  void collapse(std::size_t row);

  /// Marks the whole subtree, or every folder if `top` is kNoNode, as expanded or not. The rows
  /// change at rebuild().
  void markSubtree(NodeIndex top, bool expanded);

  /// Marks folders above `levels` as expanded and all others as not; a source has level 0.
  void markLevels(std::uint32_t levels);

  /// Expands all folders above the node, so that it is shown after rebuild().
  void markAbove(NodeIndex node);

 private:
  void appendShown(NodeIndex top, std::vector<NodeIndex>& rows) const;
  std::vector<NodeIndex> rowsBrought(std::size_t row) const;

  FolderReport& report_;
  std::vector<NodeIndex> rows_;
};

}  // namespace ombrelian
