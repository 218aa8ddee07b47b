#pragma once

#include <cstddef>
#include <vector>

#include "lists/FolderReport.h"

namespace ombrelian {

/// The rows of the folder report from top to bottom: every source, and below what is expanded its
/// children. Four bytes a row; what is expanded stands in the report.
class ShownFolders {
 public:
  static constexpr std::size_t kNoRow = SIZE_MAX;

  /// `report` is kept by reference. There are no rows before the first rebuild().
  explicit ShownFolders(FolderReport& report) : report_(report) {}

  /// Takes up the tree as it is; call it when nodes came, went or were put in another order.
  void rebuild();

  std::size_t count() const { return rows_.size(); }
  NodeIndex node(std::size_t row) const { return rows_[row]; }

  /// kNoRow where the node is not on show.
  std::size_t rowOf(NodeIndex node) const;

  bool canExpand(std::size_t row) const { return report_.tree()[rows_[row]].hasChildren(); }
  bool isExpanded(std::size_t row) const { return report_.isExpanded(rows_[row]); }

  /// How many rows expand() would add, or collapse() take away, below `row`.
  std::size_t rowsToShow(std::size_t row) const;
  std::size_t rowsBelow(std::size_t row) const;

  void expand(std::size_t row);
  void collapse(std::size_t row);

  /// Marks the whole subtree, or with kNoNode every folder, as expanded or not; rebuild() shows it.
  void markSubtree(NodeIndex top, bool expanded);

  /// Marks folders above `levels` as expanded and all others as not; a source has level 0.
  void markLevels(std::uint32_t levels);

  /// Expands what lies above the node, so that it is on show after rebuild().
  void markAbove(NodeIndex node);

 private:
  void appendShown(NodeIndex top, std::vector<NodeIndex>& rows) const;
  std::vector<NodeIndex> rowsBrought(std::size_t row) const;

  FolderReport& report_;
  std::vector<NodeIndex> rows_;
};

}  // namespace ombrelian
