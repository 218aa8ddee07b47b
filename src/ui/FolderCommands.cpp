#include "ui/FolderCommands.h"

#include "fs/Owners.h"
#include "fs/PathText.h"
#include "tree/TreeEdit.h"
#include "ui/QtText.h"

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

void FolderCommands::showInTree(ListId list) {
  const std::vector<Text> paths = panes_.pane(list).selectedPaths();
  if (paths.empty()) return;
  const FolderTree& tree = state_.session.tree;
  // A file is in its folder; a folder that the tree does not have is shown by the folder above it.
  Text path = paths.front();
  std::vector<NodeIndex> found = foldersAt(tree, path);
  while (found.empty() && path.size() > 1) {
    path = xGetPath(path);
    path = xRemoveBackslash(path);
    found = foldersAt(tree, path);
  }
  if (found.empty()) return;
  panes_.changeFolders([&] { panes_.folders().shownFolders().markAbove(found.front()); });
  if (!area_.isLeftVisible()) area_.showSides(true, true);
  ListPane& folders = panes_.pane(ListId::Folders);
  folders.selectRow(found.front());
  folders.list().setFocus();
}

void FolderCommands::showFilesOfExtension(std::size_t row) {
  const RowSource& extensions = panes_.pane(ListId::Extensions).rows();
  const Text extension = extensions.shown(row, extensions.columns().front());
  area_.Change_ButtonHeaderActive(ListId::LargestFiles);
  // The row of the files without an extension has a text that no name contains.
  if (extension.starts_with(u'.'))
    panes_.pane(ListId::LargestFiles).searchFor(toQString(extension));
}

/// The lists of files keep no owners, so the owners of their files are read now.
void FolderCommands::showFilesOfOwner(std::size_t row) {
  const RowSource& owners = panes_.pane(ListId::Owners).rows();
  const Text owner = owners.shown(row, owners.columns().front());
  area_.Change_ButtonHeaderActive(ListId::LargestFiles);
  const RowSource& files = panes_.pane(ListId::LargestFiles).rows();
  const OwnerTexts texts;
  std::vector<std::size_t> found;
  for (std::size_t file = 0; file < files.count(); ++file) {
    const Text path = files.path(file);
    if (texts.at(path, keepsOwners(path)) == owner) found.push_back(file);
  }
  panes_.pane(ListId::LargestFiles).list().selectRows(found);
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
