#pragma once

#include <array>
#include <memory>

#include "ui/ElidedLabel.h"
#include "ui/FolderRows.h"
#include "ui/ListPane.h"
#include "ui/PaneRows.h"
#include "ui/WindowState.h"

namespace ombrelian::ui {

/// The panes of all lists, with the rows that they show.
class Panes : public QObject, private LogListener {
  Q_OBJECT

 public:
  /// The panes belong to `parent`, or to the widget that they are moved to, and must be deleted
  /// before this object. `state` must outlive both.
  Panes(WindowState& state, QWidget* parent);
  ~Panes() override;

  ListPane& pane(ListId list) { return *panes_[std::size_t(list)]; }
  const std::array<ListPane*, kLists>& all() const { return panes_; }
  FolderRows& folders() { return *folderRows_; }

  /// The folder row that commands act on; RowSource::kNoRow: none.
  std::size_t currentFolder();

  /// Ids of the selected rows, from top to bottom.
  std::vector<RowSource::Id> selectedIds(ListId list);

  /// Selects the row that is now at the position of `row`, so that the keyboard continues from
  /// there.
  void goNear(ListId list, std::size_t row);

  /// Runs `change`, which marks folders as expanded or not, and then updates the tree.
  void changeFolders(const std::function<void()>& change);

  /// Hides the rows of the lists that a scan fills, while it fills them, or shows them again.
  void setDerivedFrozen(bool frozen);

  /// Says in each empty list of a scan why it is empty.
  void showEmptyNotes();

  /// Clears the lists of a scan if its source is no longer in the tree.
  void clearListsWithoutSource();

  /// Disables the lists and the commands that may not run beside a scan, or enables them again.
  void setBusy(bool busy);

  /// The same for the commands alone.
  void setCommandsBusy(bool busy);
  void setReadOnly();

  /// Shows the folder name above the list of files; empty: no folder is shown.
  void showFilesFolder(const Text& folder);

  /// The text of the status line for a list.
  Text status(ListId list);

  void groupHardlinks();
  void clearLog();

 Q_SIGNALS:
  void triggered(ListId list, CommandId id);
  void statusChanged(ListId list);
  void fillWanted(ListId list);                     // the button in an empty list was pressed
  void rowActivated(ListId list, std::size_t row);  // Enter was pressed on the row
  void rowDoubleClicked(ListId list, std::size_t row);

 private:
  void logged(const LogRow& row) override;
  void makeRows();
  void makePane(ListId list);
  void expand(std::size_t row, bool expanded);

  WindowState& state_;
  FolderRows* folderRows_ = nullptr;
  LogRows* logRows_ = nullptr;
  std::array<std::unique_ptr<RowSource>, kLists> rows_;
  std::array<ListPane*, kLists> panes_ = {};
  ElidedLabel* filesFolder_ = nullptr;
};

}  // namespace ombrelian::ui
