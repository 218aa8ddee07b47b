#include "ui/Panes.h"

#include <QToolBar>

#include "support/Translate.h"
#include "ui/EmptyNote.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

Panes::Panes(WindowState& state, QWidget* parent) : state_(state) {
  makeRows();
  for (const ListId list : kAllLists) {
    panes_[std::size_t(list)] =
        new ListPane(list, *rows_[std::size_t(list)], state_.session.options, parent);
    makePane(list);
  }
  ListView& folders = pane(ListId::Folders).list();
  connect(&folders, &ListView::expandWanted, this, &Panes::expand);
  connect(&folders, &ListView::expandSubtreeWanted, this, [this](std::size_t, bool expanded) {
    Q_EMIT triggered(ListId::Folders,
                     expanded ? CommandId::ExpandSubtree : CommandId::CollapseSubtree);
  });
  state_.session.log.setListener(this);
  showEmptyNotes();
}

Panes::~Panes() { state_.session.log.setListener(nullptr); }

void Panes::makeRows() {
  Session& session = state_.session;
  Options& options = session.options;
  auto folders = std::make_unique<FolderRows>(session.tree, session.folderReport, options);
  auto log = std::make_unique<LogRows>(session.log, options);
  folderRows_ = folders.get();
  logRows_ = log.get();
  const auto at = [this](ListId list) -> auto& { return rows_[std::size_t(list)]; };
  for (const ListId list : kDerivedLists) {
    Grid& grid = state_.found.grid(list);
    if (listRow(list).rows == RowKind::File) {
      at(list) = std::make_unique<FoundFileRows>(grid, options, list);
    } else {
      at(list) = std::make_unique<GridRows>(grid, options, list);
    }
  }
  at(ListId::Folders) = std::move(folders);
  at(ListId::Log) = std::move(log);
  at(ListId::Drives) = std::make_unique<DriveRows>(state_.drives, options);
  at(ListId::Files) = std::make_unique<FileRows>(state_.files, session.tree, options);
}

void Panes::makePane(ListId list) {
  ListPane* const made = &pane(list);
  made->addToolBar([this](CommandId id, QToolBar* bar) -> QWidget* {
    if (id != CommandId::FolderOfFiles) return nullptr;
    filesFolder_ = new ElidedLabel(bar);
    filesFolder_->setContentsMargins(6, 0, 6, 0);
    return filesFolder_;
  });
  made->list().setAccessibleName(toQString(listTitle(state_.session.options, list)));
  const Word& empty = listRow(list).empty;
  made->setEmptyText(toQString(TL(empty.id, empty.german)));
  connect(made, &ListPane::triggered, this, &Panes::triggered);
  connect(made, &ListPane::statusChanged, this, &Panes::statusChanged);
  connect(made, &ListPane::emptyButtonPressed, this, [this, list] { Q_EMIT fillWanted(list); });
  connect(&made->list(), &ListView::rowActivated, this,
          [this, list](std::size_t row) { Q_EMIT rowActivated(list, row); });
  connect(&made->list(), &ListView::rowDoubleClicked, this,
          [this, list](std::size_t row) { Q_EMIT rowDoubleClicked(list, row); });
}

void Panes::expand(std::size_t row, bool expanded) {
  ListPane& tree = pane(ListId::Folders);
  ShownFolders& shown = folders().shownFolders();
  if (expanded) {
    tree.model().insertRowsAt(row + 1, shown.rowsToShow(row), [&] { shown.expand(row); });
    tree.list().columnFit().fitName();
  } else {
    const std::size_t current = tree.list().currentRow();
    if (current > row && current <= row + shown.rowsBelow(row)) tree.list().goTo(row);
    tree.model().removeRowsAt(row + 1, shown.rowsBelow(row), [&] { shown.collapse(row); });
  }
  tree.list().viewport()->update();
}

std::size_t Panes::currentFolder() {
  const std::size_t row = pane(ListId::Folders).list().currentRow();
  return row < folders().count() ? row : RowSource::kNoRow;
}

std::vector<RowSource::Id> Panes::selectedIds(ListId list) {
  std::vector<RowSource::Id> ids;
  for (const std::size_t row : pane(list).list().selectedRowNumbers())
    ids.push_back(pane(list).rows().id(row));
  return ids;
}

void Panes::goNear(ListId list, std::size_t row) {
  ListPane& shown = pane(list);
  const std::size_t rows = shown.rows().count();
  shown.rowsReplaced();
  if (rows > 0) shown.list().goTo(std::min(row, rows - 1));
}

void Panes::changeFolders(const std::function<void()>& change) {
  ListPane& tree = pane(ListId::Folders);
  tree.model().rearrange([&] {
    change();
    folders().rebuild();
  });
  tree.rowsReplaced();
}

void Panes::setDerivedFrozen(bool frozen) {
  for (const ListId list : kDerivedLists)
    pane(list).setFrozen(frozen);
  if (!frozen) showEmptyNotes();
}

void Panes::showEmptyNotes() {
  for (const ListId list : kDerivedLists) {
    const EmptyNote note = emptyNoteOf(state_, list);
    pane(list).setEmptyText(toQString(note.text), toQString(note.button));
  }
}

void Panes::clearListsWithoutSource() {
  const FolderTree& tree = state_.session.tree;
  NodeIndex root = tree.firstRoot();
  while (root != kNoNode && tree[root].name() != state_.filled.source)
    root = tree[root].nextSibling;
  if (root != kNoNode || state_.filled.source.empty()) return;
  setDerivedFrozen(true);
  state_.found.reset();
  state_.found.finish({});
  state_.filled = {};
  setDerivedFrozen(false);
}

void Panes::setBusy(bool busy) {
  for (ListPane* const pane : panes_)
    pane->list().setEnabled(!busy);
  setCommandsBusy(busy);
}

void Panes::setCommandsBusy(bool busy) {
  for (ListPane* const pane : panes_)
    pane->commands().setBusy(busy);
}

void Panes::setReadOnly() {
  for (ListPane* const pane : panes_)
    pane->setReadOnly();
}

void Panes::showFilesFolder(const Text& folder) { filesFolder_->setFullText(toQString(folder)); }

Text Panes::status(ListId list) {
  return state_.flatList(list).status(pane(list).list().selectedRowNumbers());
}

void Panes::groupHardlinks() {
  ListPane& hardlinks = pane(ListId::Hardlinks);
  hardlinks.model().rearrange([this] { state_.found.hardlinks().List_Hardlinks_ShowDups(); });
  hardlinks.rowsReplaced();
}

void Panes::clearLog() {
  ListPane& log = pane(ListId::Log);
  log.model().replace([this] {
    state_.session.log.clearRows();
    logRows_->takeUpNewRows();
  });
  log.rowsReplaced();
}

void Panes::logged(const LogRow&) {
  ListPane& log = pane(ListId::Log);
  log.model().insertRowsAt(logRows_->count(), 1, [this] { logRows_->takeUpNewRows(); });
  if (log.isVisible()) log.list().scrollToBottom();
  log.showEmptyText();
}

}  // namespace ombrelian::ui
