// What takes rows out of the lists: deleting, rescanning, removing sources.

#include "scan/Rescan.h"
#include "tree/TreeOrder.h"
#include "ui/FolderRows.h"
#include "ui/MainWindow.h"

namespace ombrelian::ui {

void MainWindow::change(const std::function<void()>& change) {
  // What was selected is going; to follow a hundred thousand selected rows would take its time.
  pane(changing_).list().clearSelection();
  const auto changeTree = [&] {
    pane(ListId::Folders).model().rearrange([&] {
      change();
      folderRows_->nodesWent();
    });
  };
  if (changing_ == ListId::Folders) {
    changeTree();
  } else {
    pane(changing_).model().rearrange(changeTree);
  }
}

void MainWindow::willReplace(NodeIndex node, NodeIndex twin) {
  session_.folderReport.carryExpanded(node, twin);
}

std::vector<RowSource::Id> MainWindow::selectedIds(ListId view) {
  std::vector<RowSource::Id> ids;
  for (const std::size_t row : pane(view).list().selectedRowNumbers())
    ids.push_back(pane(view).rows().id(row));
  return ids;
}

/// Selects what stands where `row` was, so that the keyboard goes on from there.
void MainWindow::goNear(ListId view, std::size_t row) {
  ListPane& pane = this->pane(view);
  const std::size_t rows = pane.rows().count();
  pane.rowsReplaced();
  if (rows > 0) pane.list().goTo(std::min(row, rows - 1));
}

/// The pointed-at folder may be gone, so its files are not on show any more.
void MainWindow::hideFiles() {
  ListPane& files = pane(ListId::Files);
  files.model().replace([this] { files_.clear(); });
  files.rowsReplaced();
  filePath_->clear();
}

void MainWindow::refreshDrive(const Text& path) {
  if (drives_.readAt() == 0) return;
  ListPane& drives = pane(ListId::Drives);
  drives.model().rearrange([&] { drives_.Drives_RefreshDrive(path); });
  drives.model().showAnew();
}

void MainWindow::DeleteFolders(bool recycle) {
  const std::vector<RowSource::Id> nodes = selectedIds(ListId::Folders);
  if (nodes.empty() || isScanning() || files_.isReading()) return;
  const std::size_t first = pane(ListId::Folders).list().selectedRowNumbers().front();
  const Text path = Report_GetFullpathOfNode(session_.tree, nodes.front(), false, false);
  changing_ = ListId::Folders;
  Deletion deletion(session_.scanState(*this, nullptr), this, recycle);
  const bool isAnyGone = deletion.DeleteFolders(nodes);
  pane(ListId::Folders).list().setFocus();  // which it lost while nothing could be done
  if (!isAnyGone) return;
  hideFiles();
  goNear(ListId::Folders, first);
  showFiles(true);
  refreshDrive(path);
}

void MainWindow::deleteFiles(ListId view, bool recycle) {
  const std::vector<RowSource::Id> ids = selectedIds(view);
  if (ids.empty() || isScanning() || files_.isReading()) return;
  const std::size_t first = pane(view).list().selectedRowNumbers().front();
  const Text path = pane(view).rows().path(first);
  changing_ = view;
  Deletion deletion(session_.scanState(*this, nullptr), this, recycle);
  bool isAnyGone = false;
  if (view == ListId::Files) {
    isAnyGone = deletion.List_Files_DeleteFiles(files_, ids);
  } else {
    Grid& list = lists_.grid(view);
    isAnyGone = view == ListId::Hardlinks ? deletion.List_Hardlinks_DeleteFiles(list, ids)
                                          : deletion.List_TOP_DeleteFiles(list, ids);
  }
  changing_ = ListId::Folders;
  pane(view).list().setFocus();
  if (!isAnyGone) return;
  goNear(view, first);
  refreshDrive(path);
}

void MainWindow::Report_Rescan() {
  ListPane& folders = pane(ListId::Folders);
  const std::size_t row = folders.list().currentRow();
  if (row >= folderRows_->count() || isScanning() || files_.isReading()) return;
  const NodeIndex selected = folderRows_->id(row);
  const Text name(session_.tree[selected].name());
  changing_ = ListId::Folders;
  const NodeIndex folder = Rescan(session_.scanState(*this, nullptr), this).Report_Rescan(selected);
  if (folder == kNoNode) return;
  folders.model().rearrange(
      [this] { folderRows_->sort(*folderRows_->sortColumn(), folderRows_->sortedDescending()); });
  hideFiles();
  folders.rowsReplaced();
  const bool isStillThere =
      row < folderRows_->count() && session_.tree[folderRows_->id(row)].name() == name;
  folders.selectRow(isStillThere ? folderRows_->id(row) : folder);
  folders.list().setFocus();
  refreshDrive(Report_GetFullpathOfNode(session_.tree, folder, false, false));
  if (session_.SourceQueue.empty()) {
    showFiles(true);
  } else {
    Ordnerliste_Abarbeiten();
  }
}

void MainWindow::Report_RemoveFolders() {
  const std::size_t row = pane(ListId::Folders).list().currentRow();
  if (row >= folderRows_->count() || isScanning() || files_.isReading()) return;
  changing_ = ListId::Folders;
  ombrelian::Report_RemoveFolders(session_.tree, folderRows_->id(row), this);
  hideFiles();
  pane(ListId::Folders).rowsReplaced();
  StatusbarSetTextRightAUTO();
}

}  // namespace ombrelian::ui
