#pragma once

#include <set>

#include "lists/ShownFolders.h"
#include "ui/RowSource.h"

namespace ombrelian::ui {

/// The folder report: a tree whose rows are what is expanded. The ids are the nodes.
class FolderRows : public RowSource {
 public:
  /// Both are kept by reference.
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

  /// Name of a source as the options want it: with the label of a drive and the date of the scan.
  Text rootCaption(NodeIndex root) const;

  /// The tree got or lost nodes, which stand by size again.
  void treeChanged();

  /// The tree lost nodes, or others took their places; the order is as it was.
  void nodesWent();

  void rebuild() override { shown_.rebuild(); }

  ShownFolders& shownFolders() { return shown_; }

 private:
  FolderTree& tree_;
  FolderReport& report_;
  const Options& options_;
  ShownFolders shown_;
  const Column* sortColumn_ = nullptr;
  bool sortedDescending_ = true;
  std::set<NodeIndex> drives_;  // sources that are drives
};

}  // namespace ombrelian::ui
