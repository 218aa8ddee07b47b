#pragma once

#include <set>

#include "lists/ShownFolders.h"
#include "ui/RowSource.h"

namespace ombrelian::ui {

/// The folder report as a tree whose rows are the expanded nodes. The ids of the rows are the
/// nodes.
class FolderRows : public RowSource {
 public:
  /// References to `tree` and `report` are kept.
  FolderRows(FolderTree& tree, FolderReport& report, const Options& options);

  Columns columns() const override;
  const CellSource& cells() const override { return report_; }
  const CellFormat& format() const override { return report_.format(); }
  void applySettings() override { report_.applySettings(); }
  std::size_t count() const override { return shown_.count(); }
  CellSource::RowIndex cellRow(std::size_t row) const override { return shown_.node(row); }
  Id id(std::size_t row) const override { return shown_.node(row); }
  std::size_t rowOf(Id id) const override;
  void sort(const Column& column, bool descending) override;
  const Column* sortColumn() const override { return sortColumn_; }
  bool sortedDescending() const override { return sortedDescending_; }
  RowLook look(std::size_t row) const override;
  Text shown(std::size_t row, const Column& column) const override;
  Text toolTip(std::size_t row, const Column& column) const override;
  Text path(std::size_t row) const override;
  bool canRename(std::size_t row, const Column& column) const override;
  Text rename(std::size_t row, const Text& name) override;
  std::optional<Id> find(const QString& text, std::size_t from, bool backward) override;
  MatchCount countMatches(const QString& text, int milliseconds) override;
  bool holds(std::size_t row, const QString& text) const override;

  const char* iconOf(NodeIndex node, const RowLook& look) const;

  /// Name of a source, with the label of its drive and the date of the scan if the options request
  /// them.
  Text rootCaption(NodeIndex root) const;

  /// Updates the rows after nodes were added or removed and the tree was sorted by size.
  void treeChanged();

  /// Updates the rows after nodes were removed or replaced. It does not sort the tree.
  void nodesWent();

  void rebuild() override { shown_.rebuild(); }

  ShownFolders& shownFolders() { return shown_; }

 private:
  bool nameHas(NodeIndex node, const QString& text) const;

  FolderTree& tree_;
  FolderReport& report_;
  const Options& options_;
  ShownFolders shown_;
  const Column* sortColumn_ = nullptr;
  bool sortedDescending_ = true;
  std::set<NodeIndex> drives_;  // sources that are drives
};

}  // namespace ombrelian::ui
