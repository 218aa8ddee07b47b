#pragma once

#include <QLabel>
#include <QPushButton>

#include "ui/SearchBox.h"

namespace ombrelian::ui {

/// One list with its bar, its search box, and a text for when it is empty.
class ListPane : public QWidget {
  Q_OBJECT

 public:
  /// `rows` and `options` must outlive the pane.
  ListPane(ListId list, RowSource& rows, Options& options, QWidget* parent = nullptr);

  ListId listId() const { return id_; }
  ListView& list() { return *list_; }
  ListModel& model() { return *model_; }
  RowSource& rows() { return rows_; }
  CommandSet& commands() { return *commands_; }

  /// Builds the tool bar; `place` works as in CommandSet::makeToolBar.
  void addToolBar(const CommandSet::PlaceWidget& place = {});

  /// Sets the text in the middle of the list while the list has no rows, and the caption of a
  /// button below it; no caption: there is no button.
  void setEmptyText(const QString& text, const QString& button = {});

  /// Shows the text for an empty list, or hides it if the list has rows.
  void showEmptyText();

  /// Disables everything that changes the disk, permanently.
  void setReadOnly();

  /// Updates units, columns, fonts and names from the options.
  void applySettings();

  /// Shows the list after its rows were replaced.
  void rowsReplaced();

  /// With true, empties the view but not the rows, so that other code can fill or clear them. With
  /// false, shows the current rows.
  void setFrozen(bool frozen);

  /// Paths of the selected rows, from top to bottom.
  std::vector<Text> selectedPaths() const;

  void copySelection();
  void copyPaths();
  void selectRow(RowSource::Id id);

  void toggleSearch() { search_->toggled(); }
  void searchFor(const QString& text) { search_->searchFor(text); }
  void search(bool backward) { search_->search(backward); }

  /// Width that the bar needs to show all its buttons.
  int barWidth() const { return toolBar_ == nullptr ? 0 : toolBar_->sizeHint().width(); }

 Q_SIGNALS:
  void triggered(ListId list, CommandId id);

  /// Rows were selected, added or removed.
  void statusChanged(ListId list);

  void emptyButtonPressed();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  bool isGiven(CommandNeed need) const;
  void addRowCommands();
  void connectModel();
  void fillColumnMenu(QMenu& menu);
  void showContextMenu(const QPoint& at);

  const ListId id_;
  RowSource& rows_;
  ListModel* model_;
  ListView* list_;
  CommandSet* commands_;
  SearchBox* search_;
  QToolBar* toolBar_ = nullptr;
  QLabel* emptyText_;
  QPushButton* emptyButton_;
};

}  // namespace ombrelian::ui
