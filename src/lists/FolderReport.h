#pragma once

#include <vector>

#include "lists/CellFormat.h"
#include "settings/Options.h"
#include "tree/FolderTree.h"

namespace ombrelian {

/// Columns of the folder report, with the numbers of the settings file, which never change.
struct FolderColumnId {
  enum : int {
    Name = 1,
    Size = 2,
    Percent = 3,
    Files = 4,
    Folders = 5,
    Subfolders = 6,
    Attributes = 7,
    Modified = 8,
    Created = 9,
    Accessed = 10,
    Hardlinks = 11,
    Junctions = 12,
    Owner = 13,
    Errors = 14,
    Depth = 15,
    Target = 16,
  };
};

using FolderColumn = Column;

/// The data of the folder report: its columns and the values of the cells. The rows are the nodes
/// of the tree. The state of the view (expanded nodes, selected node) is stored here.
class FolderReport : public CellSource {
 public:
  /// References to `tree` and `options` are kept.
  FolderReport(const FolderTree& tree, const Options& options);

  /// Reads the units and the form of dates from the options; call it after they changed.
  void applySettings();

  const FolderTree& tree() const { return tree_; }

  /// All columns in the order of their ids.
  static Columns columns();

  /// The columns to show, in display order. The column Name is always shown.
  std::vector<const FolderColumn*> visibleColumns() const;

  /// The columns of reports: the same, and the row number if the user shows it.
  std::vector<const FolderColumn*> reportColumns() const;

  const CellFormat& format() const { return format_; }

  // The row indices are nodes. The text of the name column is the name without a path.
  TextView text(RowIndex node, const Column& column) const override;
  double real(RowIndex node, const Column& column) const override;
  std::int64_t number(RowIndex node, const Column& column) const override;

  /// Share of the size of the direct parent in percent; 100 for a source.
  double percent(NodeIndex node) const;

  bool isExpanded(NodeIndex node) const { return node < expanded_.size() && expanded_[node]; }
  void setExpanded(NodeIndex node, bool expanded);

  /// Clears the state of all nodes after the tree was emptied.
  void forgetNodes();

  /// Clears the state of nodes that were removed from the tree, because new nodes may get their
  /// places.
  void forgetFreeNodes();

  /// Before `twin` replaces `node`: expands the folders below `twin` whose names are expanded below
  /// `node`.
  void carryExpanded(NodeIndex node, NodeIndex twin);

  /// The selected node; kNoNode: none.
  NodeIndex selected() const { return selected_; }
  void select(NodeIndex node) { selected_ = node; }

 private:
  const FolderTree& tree_;
  const Options& options_;
  CellFormat format_;
  std::vector<bool> expanded_;  // one flag for each node; missing flags are false
  NodeIndex selected_ = kNoNode;
};

}  // namespace ombrelian
