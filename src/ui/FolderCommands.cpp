#include "ui/FolderCommands.h"

namespace ombrelian::ui {

FolderCommands::FolderCommands(WindowState& state, Panes& panes, PaneArea& area,
                               FilesOfFolder& files)
    : state_(state), panes_(panes), area_(area), files_(files) {}

void FolderCommands::expandAll(bool expand) {
  FolderRows& folders = panes_.folders();
  if (folders.count() < 2 && !expand) return;
  panes_.changeFolders([&] { folders.shownFolders().markSubtree(kNoNode, expand); });
  area_.Report_Resize_Width();
}

void FolderCommands::expandSelected(bool expand) {
  const std::size_t row = panes_.currentFolder();
  if (row == RowSource::kNoRow) return;
  FolderRows& folders = panes_.folders();
  const NodeIndex node = NodeIndex(folders.id(row));
  panes_.changeFolders([&] { folders.shownFolders().markSubtree(node, expand); });
}

void FolderCommands::expandLevels(std::uint32_t levels) {
  panes_.changeFolders([&] { panes_.folders().shownFolders().markLevels(levels); });
}

void FolderCommands::clearFolders() {
  ListPane& pane = panes_.pane(ListId::Folders);
  pane.model().replace([this] {
    state_.session.tree.clear();
    state_.session.folderReport.forgetNodes();
    panes_.folders().treeChanged();
  });
  files_.hideFiles();
  panes_.clearListsWithoutSource();
  pane.rowsReplaced();
}

}  // namespace ombrelian::ui
