#pragma once

#include <vector>

#include "lists/CellFormat.h"
#include "settings/Options.h"
#include "tree/FolderTree.h"

namespace ombrelian {

/// Columns of the folder report. The numbers are those of the settings file and never change.
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

/// The folder report as data: its columns, and what stands in each row's cells. The rows are the
/// nodes of the tree; what a view adds to them (what is expanded, what is selected) is kept here.
class FolderReport : public CellSource {
 public:
  /// `tree` and `options` are kept by reference.
  FolderReport(const FolderTree& tree, const Options& options);

  /// Takes up what the options say of units and of the form of dates; call it when they changed.
  void applySettings();

  const FolderTree& tree() const { return tree_; }

  /// All columns in the order of their ids.
  static Columns columns();

  /// The columns to show, in display order. Name is always there.
  std::vector<const FolderColumn*> visibleColumns() const;

  /// The columns of reports: the same, and the row number where the user has it shown.
  std::vector<const FolderColumn*> reportColumns() const;

  const CellFormat& format() const { return format_; }

  // The rows are the nodes; of the name column the row's own name.
  TextView text(RowIndex node, const Column& column) const override;
  double real(RowIndex node, const Column& column) const override;
  std::int64_t number(RowIndex node, const Column& column) const override;

  /// Share of the direct parent's size in percent; 100 on a source.
  double percent(NodeIndex node) const;

  bool isExpanded(NodeIndex node) const { return node < expanded_.size() && expanded_[node]; }
  void setExpanded(NodeIndex node, bool expanded);

  /// The tree was emptied: nothing is expanded or selected any more.
  void forgetNodes();

  /// Nodes were taken out of the tree: nothing is known of them any more, as others may get their
  /// places.
  void forgetFreeNodes();

  /// `twin` is to take the place of `node`: what is expanded below the one becomes so below the
  /// other, by names.
  void carryExpanded(NodeIndex node, NodeIndex twin);

  /// kNoNode: none.
  NodeIndex selected() const { return selected_; }
  void select(NodeIndex node) { selected_ = node; }

 private:
  const FolderTree& tree_;
  const Options& options_;
  CellFormat format_;
  std::vector<bool> expanded_;  // flag of each node; missing flags are false
  NodeIndex selected_ = kNoNode;
};

}  // namespace ombrelian
