#pragma once

#include <vector>

#include "core/tree/FolderTree.h"
#include "lists/CellFormat.h"
#include "settings/Options.h"

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
class FolderReport {
 public:
  /// Both are kept by reference.
  FolderReport(const FolderTree& tree, const Options& options);

  /// Takes up what the options say of units and of the form of dates; call it when they changed.
  void applySettings();

  const FolderTree& tree() const { return tree_; }

  /// The columns to show, in display order. Name is always there.
  std::vector<const FolderColumn*> visibleColumns() const;

  /// Title of a column, with the unit where it stands there.
  Text caption(const FolderColumn& column) const { return format_.caption(column); }

  /// The cell as it is shown; of the name column the row's own name.
  Text cellText(const FolderColumn& column, NodeIndex node) const;

  /// The value behind the cell in the plain form that data formats take: unmasked, a size in the
  /// report's unit.
  Text rawText(const FolderColumn& column, NodeIndex node) const;

  /// Share of the direct parent's size in percent; 100 on a source.
  double percent(NodeIndex node) const;

  bool isExpanded(NodeIndex node) const { return node < expanded_.size() && expanded_[node]; }
  void setExpanded(NodeIndex node, bool expanded);

  /// kNoNode: none.
  NodeIndex selected() const { return selected_; }
  void select(NodeIndex node) { selected_ = node; }

 private:
  std::int64_t numberValue(const FolderColumn& column, NodeIndex node) const;
  double realValue(const FolderColumn& column, NodeIndex node) const;
  Text textValue(const FolderColumn& column, NodeIndex node) const;

  const FolderTree& tree_;
  const Options& options_;
  CellFormat format_;
  std::vector<bool> expanded_;  // by node; shorter than the tree where nothing is expanded
  NodeIndex selected_ = kNoNode;
};

}  // namespace ombrelian
