#include "ui/FilesOfFolder.h"

#include <QApplication>
#include <QElapsedTimer>

#include "fs/Owners.h"
#include "fs/PathText.h"
#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kFilterPauseMs = 300;
constexpr int kLongReadingMs = 100;

}  // namespace

FilesOfFolder::FilesOfFolder(WindowState& state, Panes& panes) : state_(state), panes_(panes) {
  filterPause_.setSingleShot(true);
  filterPause_.setInterval(kFilterPauseMs);
  connect(&filterPause_, &QTimer::timeout, this, [this] {
    if (filterInForce() != filter_) showFiles(true);
  });
  connect(&panes.pane(ListId::Files).list(), &ListView::columnsChanged, this,
          &FilesOfFolder::columnsChanged);
  // The files of a renamed folder have new paths.
  connect(&panes.pane(ListId::Folders).model(), &ListModel::renamed, this,
          [this] { showFiles(true); });
}

void FilesOfFolder::selectedFolderChanged() {
  if (state_.session.context.ScanBusy) return;
  readLateOwner();
  showFiles(false);
}

/// Reads the owner of the selected folder if the owner column is visible, because a walk reads
/// owners only if the options request it.
void FilesOfFolder::readLateOwner() {
  const std::size_t row = panes_.currentFolder();
  const ListView& list = panes_.pane(ListId::Folders).list();
  if (row == RowSource::kNoRow || !list.isColumnVisible(FolderColumnId::Owner)) return;
  FolderTree& tree = state_.session.tree;
  FolderNode& node = tree[NodeIndex(panes_.folders().id(row))];
  if (!node.has(FolderNode::IsFolder) || node.has(FolderNode::HasOwner)) return;
  const Text path = panes_.folders().path(row);
  node.owner = tree.ownerNumber(OwnerTexts().at(path, keepsOwners(path)));
  node.set(FolderNode::HasOwner);
}

void FilesOfFolder::showFiles(bool force) {
  FileList& files = state_.files;
  const std::size_t row = panes_.currentFolder();
  if (files.isReading() || row == RowSource::kNoRow) return;
  if (state_.session.options.FilelistVisible != 1) return;
  Text folder = panes_.folders().path(row);
  if (!force && files.folder() == xGetPathWithBackslash(folder)) return;
  ListPane& pane = panes_.pane(ListId::Files);
  state_.stopsFiles = false;
  filter_ = filterInForce();
  Q_EMIT progress(toQString(TL(3526, u"Dateiliste wird geladen... (Abbruch: ESC-Taste)")));
  pane.model().setFrozen(true);
  QElapsedTimer time;
  time.start();
  bool isLong = false;
  files.List_Files_ScanFolder(folder, force, [&] {
    if (!isLong && time.elapsed() > kLongReadingMs) Q_EMIT readingLong(isLong = true);
    QApplication::processEvents();
    return !state_.stopsFiles;
  });
  pane.setFrozen(false);
  if (isLong) Q_EMIT readingLong(false);
  panes_.showFilesFolder(Text(xRemoveBackslash(files.folder())));
  const Failure& failure = files.failure();
  pane.setEmptyText(
      toQString(failure ? failure->text : TL(9556, u"In diesem Ordner liegen keine Dateien.")));
}

void FilesOfFolder::hideFiles() {
  ListPane& pane = panes_.pane(ListId::Files);
  pane.model().replace([this] { state_.files.clear(); });
  pane.rowsReplaced();
  panes_.showFilesFolder({});
}

/// Reads the files again if their owners are shown now but were not read.
void FilesOfFolder::columnsChanged() {
  constexpr int kOwner = 9;
  const bool shows = panes_.pane(ListId::Files).list().isColumnVisible(kOwner);
  const Grid& grid = state_.files.grid();
  if (shows && grid.rowCount() > 0 && grid.text(0, grid.column(u"owner")).empty()) showFiles(true);
}

Text FilesOfFolder::filterInForce() const {
  const Options& options = state_.session.options;
  return options.FileList_Filter_Active == 1 ? options.FileList_Filter_Text : Text();
}

void FilesOfFolder::filterChanged(std::optional<ListId> list) {
  if (list) filterPause_.start();
}

}  // namespace ombrelian::ui
