#include "ui/DeleteCommands.h"

#include "scan/Rescan.h"
#include "tree/TreeOrder.h"
#include "ui/RowsInPanes.h"

namespace ombrelian::ui {

DeleteCommands::DeleteCommands(WindowState& state, WindowDialogs& dialogs, Panes& panes,
                               FilesOfFolder& files, DriveCommands& drives, ScanControl& scans)
    : state_(state),
      dialogs_(dialogs),
      panes_(panes),
      files_(files),
      drives_(drives),
      scans_(scans) {}

void DeleteCommands::DeleteFolders(bool recycle) {
  const std::vector<RowSource::Id> nodes = panes_.selectedIds(ListId::Folders);
  if (nodes.empty() || state_.isBusy()) return;
  ListPane& folders = panes_.pane(ListId::Folders);
  const std::size_t first = folders.list().selectedRowNumbers().front();
  const Text path = Report_GetFullpathOfNode(state_.session.tree, nodes.front(), false, false);
  RowsInPanes rows(panes_, state_.session.folderReport);
  Deletion deletion(state_.session.scanState(dialogs_, nullptr), &rows, recycle);
  const bool isAnyGone = deletion.DeleteFolders(nodes);
  folders.list().setFocus();  // the list lost the focus while it was disabled
  if (!isAnyGone) return;
  files_.hideFiles();
  panes_.goNear(ListId::Folders, first);
  files_.showFiles(true);
  drives_.refreshDrive(path);
}

bool DeleteCommands::deleteFrom(ListId list, Deletion& deletion, const Deletion::Ids& ids) {
  if (list == ListId::Files) return deletion.List_Files_DeleteFiles(state_.files, ids);
  Grid& grid = state_.found.grid(list);
  return list == ListId::Hardlinks ? deletion.List_Hardlinks_DeleteFiles(grid, ids)
                                   : deletion.List_TOP_DeleteFiles(grid, ids);
}

void DeleteCommands::deleteFiles(ListId list, bool recycle) {
  const std::vector<RowSource::Id> ids = panes_.selectedIds(list);
  if (ids.empty() || state_.isBusy()) return;
  ListPane& pane = panes_.pane(list);
  const std::size_t first = pane.list().selectedRowNumbers().front();
  const Text path = pane.rows().path(first);
  RowsInPanes rows(panes_, state_.session.folderReport, list);
  Deletion deletion(state_.session.scanState(dialogs_, nullptr), &rows, recycle);
  const bool isAnyGone = deleteFrom(list, deletion, ids);
  pane.list().setFocus();
  if (!isAnyGone) return;
  panes_.goNear(list, first);
  drives_.refreshDrive(path);
}

void DeleteCommands::Report_Rescan() {
  Session& session = state_.session;
  FolderRows& rows = panes_.folders();
  ListPane& folders = panes_.pane(ListId::Folders);
  const std::size_t row = panes_.currentFolder();
  if (row == RowSource::kNoRow || state_.isBusy()) return;
  const NodeIndex selected = NodeIndex(rows.id(row));
  const Text name(session.tree[selected].name());
  RowsInPanes shown(panes_, session.folderReport);
  const NodeIndex folder =
      Rescan(session.scanState(dialogs_, nullptr), &shown).Report_Rescan(selected);
  if (folder == kNoNode) return;
  folders.model().rearrange([&] { rows.sort(*rows.sortColumn(), rows.sortedDescending()); });
  files_.hideFiles();
  folders.rowsReplaced();
  const bool isStillThere =
      row < rows.count() && session.tree[NodeIndex(rows.id(row))].name() == name;
  folders.selectRow(isStillThere ? rows.id(row) : folder);
  folders.list().setFocus();
  drives_.refreshDrive(Report_GetFullpathOfNode(session.tree, folder, false, false));
  if (session.SourceQueue.empty()) {
    files_.showFiles(true);
  } else {
    scans_.Ordnerliste_Abarbeiten();
  }
}

void DeleteCommands::Report_RemoveFolders() {
  const std::size_t row = panes_.currentFolder();
  if (row == RowSource::kNoRow || state_.isBusy()) return;
  RowsInPanes rows(panes_, state_.session.folderReport);
  ombrelian::Report_RemoveFolders(state_.session.tree, NodeIndex(panes_.folders().id(row)), &rows);
  files_.hideFiles();
  panes_.clearListsWithoutSource();
  panes_.pane(ListId::Folders).rowsReplaced();
}

}  // namespace ombrelian::ui
