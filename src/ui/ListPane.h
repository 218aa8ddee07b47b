#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include "ui/CommandSet.h"
#include "ui/ListView.h"

namespace ombrelian::ui {

/// One list with its bar, its search box, and a word for when it is empty. What concerns this list
/// alone (units, columns, search, copying, selection) it does itself; everything else it passes on.
class ListPane : public QWidget {
  Q_OBJECT

 public:
  /// `rows` and `options` must outlive the pane.
  ListPane(ListId view, RowSource& rows, Options& options, QWidget* parent = nullptr);

  ListId viewId() const { return view_; }
  ListView& list() { return *list_; }
  ListModel& model() { return *model_; }
  RowSource& rows() { return rows_; }
  CommandSet& commands() { return *commands_; }

  /// Builds the bar; `place` as CommandSet::makeToolBar has it.
  void addToolBar(const std::function<QWidget*(int id, QToolBar*)>& place = {});

  /// What stands in the middle of the list while it has no rows.
  void setEmptyText(const QString& text);

  /// Commands for the context menu of a row, in this order; 0 is a line.
  void setRowCommands(std::vector<int> ids);

  /// Nothing on the disk can be changed from here any more.
  void setReadOnly();

  /// Takes up units, columns, fonts and names as the options are now.
  void applySettings();

  /// Rows came or went by ListModel::replace.
  void rowsReplaced();

  /// Empties the view without touching the rows, while something else fills or clears them; then
  /// shows them as they are.
  void setFrozen(bool frozen);

  /// Paths of the selected rows, from top to bottom.
  std::vector<Text> selectedPaths() const;

  void copySelection();
  void copyPaths();
  void selectRow(RowSource::Id id);

  /// Does a command of this pane as a click would; false: it is none of its own.
  bool execute(int id);

  /// Width that the bar needs to show all its buttons.
  int barWidth() const { return toolBar_ == nullptr ? 0 : toolBar_->sizeHint().width(); }

 Q_SIGNALS:
  void triggered(ListId view, int id);
  void statusChanged(ListId view);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QWidget* makeSearchBox();
  void connectTree();
  void fillColumnMenu(QMenu& menu);
  void showContextMenu(const QPoint& at);
  void search(bool backward);
  void showSearchBox();
  void placeEmptyText();
  void expand(std::size_t row, bool expanded);

  const ListId view_;
  RowSource& rows_;
  Options& options_;
  ListModel* model_;
  ListView* list_;
  CommandSet* commands_;
  QToolBar* toolBar_ = nullptr;
  QWidget* searchBox_ = nullptr;
  QLineEdit* searchText_ = nullptr;
  QLabel* searchResult_ = nullptr;
  QLabel* emptyText_;
  std::vector<int> rowCommands_;
};

}  // namespace ombrelian::ui
