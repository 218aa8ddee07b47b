// What the lists of the window show, and what is done with their rows.

#include <QApplication>

#include "fs/Links.h"
#include "fs/PathText.h"
#include "support/Translate.h"
#include "ui/Desktop.h"
#include "ui/FolderRows.h"
#include "ui/MainWindow.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

void MainWindow::selectedFolderChanged() {
  if (isScanning()) return;
  readLateOwners();
  showFiles(false);
}

/// A walk leaves owners out unless it is told to read them; who shows their column gets that of
/// the row that is chosen.
void MainWindow::readLateOwners() {
  ListPane& folders = pane(ListId::Folders);
  const std::size_t row = folders.list().currentRow();
  if (row >= folderRows_->count() || !folders.list().isColumnVisible(FolderColumnId::Owner)) return;
  FolderNode& node = session_.tree[NodeIndex(folderRows_->id(row))];
  if (!node.has(FolderNode::IsFolder) || node.has(FolderNode::HasOwner)) return;
  const Text owner = GetFileOwnerW(folderRows_->path(row));
  node.owner = session_.tree.ownerNumber(owner.empty() ? TL(3822, u"-Unbekannt-") : owner);
  node.set(FolderNode::HasOwner);
}

void MainWindow::showFiles(bool force) {
  ListPane& folders = pane(ListId::Folders);
  const std::size_t row = folders.list().currentRow();
  if (files_.isReading() || row >= folderRows_->count()) return;
  Text folder = folderRows_->path(row);
  if (session_.options.FilelistVisible != 1) return;
  if (!force && files_.folder() == xGetPathWithBackslash(folder)) return;
  ListPane& pane = this->pane(ListId::Files);
  stopsReading_ = false;
  statusRight_->setText(toQString(TL(3526, u"Dateiliste wird geladen... (Abbruch: ESC-Taste)")));
  pane.model().setFrozen(true);
  files_.List_Files_ScanFolder(folder, force, [this] {
    QApplication::processEvents();
    return !stopsReading_;
  });
  pane.setFrozen(false);
  filePath_->setText(toQString(xRemoveBackslash(files_.folder())));
  filePath_->setToolTip(filePath_->text());
  const Failure& failure = files_.failure();
  pane.setEmptyText(
      toQString(failure ? failure->text : TL(9556, u"In diesem Ordner liegen keine Dateien.")));
}

void MainWindow::clearFolders() {
  ListPane& folders = pane(ListId::Folders);
  folders.model().replace([this] {
    session_.tree.clear();
    session_.folderReport.forgetNodes();
    folderRows_->treeChanged();
  });
  folders.rowsReplaced();
  ListPane& files = pane(ListId::Files);
  files.model().replace([this] { files_.clear(); });
  files.rowsReplaced();
  filePath_->clear();
  StatusbarSetTextRightAUTO();
}

void MainWindow::expandAll(bool expand) {
  ListPane& folders = pane(ListId::Folders);
  if (folderRows_->count() < 2 && !expand) return;
  folders.model().rearrange([&] {
    folderRows_->shownFolders().markSubtree(kNoNode, expand);
    folderRows_->shownFolders().rebuild();
  });
  folders.rowsReplaced();
  Report_Resize_Width();
}

void MainWindow::expandSelected(bool expand) {
  ListPane& folders = pane(ListId::Folders);
  const std::size_t row = folders.list().currentRow();
  if (row >= folderRows_->count()) return;
  const NodeIndex node = NodeIndex(folderRows_->id(row));
  folders.model().rearrange([&] {
    folderRows_->shownFolders().markSubtree(node, expand);
    folderRows_->shownFolders().rebuild();
  });
  folders.rowsReplaced();
}

/// The folder pane gets the width of its columns, but leaves the other its least.
void MainWindow::Report_Resize_Width() {
  if (session_.options.ChangeFolderReportWidthAutomatically != 1 || !isRightVisible_ ||
      !isLeftVisible_ || folderRows_->count() == 0)
    return;
  const int all = splMain_->width();
  ListPane& folders = pane(ListId::Folders);
  const int least = std::min(folders.barWidth() + 8, all / 2);
  const int most = std::max(least, all * 2 / 3);
  const int left = std::clamp(folders.list().fullWidth(), least, most);
  splMain_->setSizes({left, std::max(1, all - left - splMain_->handleWidth())});
}

FlatList& MainWindow::flatList(ListId list) {
  switch (list) {
    case ListId::Drives:
      return drives_;
    case ListId::Files:
      return files_;
    case ListId::Log:
      return session_.log;
    default:
      return lists_.list(list);
  }
}

Text MainWindow::statusOf(ListId view) {
  return flatList(view).status(pane(view).list().selectedRowNumbers());
}

void MainWindow::StatusbarSetTextRightAUTO() {
  if (statusRight_ == nullptr || isScanning() || files_.isReading()) return;
  std::int64_t roots = 0;
  for (NodeIndex root = session_.tree.firstRoot(); root != kNoNode;
       root = session_.tree[root].nextSibling)
    ++roots;
  statusLeft_->setText(toQString(TL(9041, u"%1 Quellordner", {ombrelian::toText(roots)})));
  statusRight_->setText(isRightVisible_ ? toQString(statusOf(rightView())) : QString());
}

void MainWindow::activateRow(ListId view, std::size_t row) {
  if (view == ListId::Folders) {
    const RowLook look = folderRows_->look(row);
    if (look.canExpand) Q_EMIT pane(view).list().expandWanted(row, !look.isExpanded);
    return;
  }
  if (view == ListId::Drives) {
    scan({driveRows_->path(row)});
    return;
  }
  openPaths(view);
}

void MainWindow::openPaths(ListId view) {
  constexpr std::size_t kManyFiles = 10;
  const std::vector<Text> paths = pane(view).selectedPaths();
  if (paths.size() > kManyFiles && !ask(TL(9557, u"Sollen wirklich %1 Dateien geöffnet werden?",
                                           {ombrelian::toText(std::int64_t(paths.size()))})))
    return;
  for (const Text& path : paths) {
    if (!openFile(path))
      message(
          TL(9558, u"'%1' konnte nicht geöffnet werden: Kein Programm nahm die Datei an.", {path}),
          Severity::Warning);
  }
}

}  // namespace ombrelian::ui
