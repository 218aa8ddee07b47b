#include "scan/Rename.h"

#include "fs/Links.h"
#include "fs/PathText.h"
#include "fs/Renaming.h"
#include "fs/z_Filesystem.h"
#include "platform/Locale.h"
#include "scan/Deletion.h"
#include "scan/GoneFiles.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"frmMain";

/// Subtracts a direct file of `folder` that was replaced, unless the scan left it out.
void takeOutFile(FolderTree& tree, TextView folder, TextView name, const platform::FindData& file) {
  Text path(folder);
  appendName(path, name);
  mCompare filters(platform::localeTextRules());
  takeOffFiles(tree, filters, folder,
               {{path, {xGetFileSizeByWFD_W(file), hardlinkCount(file) > 0, file.identity}}});
}

void renameNodes(FolderTree& tree, TextView path, TextView newPath, TextView name) {
  const Text real = realPath(tree, path);
  Text newReal(xGetPath(real));
  appendName(newReal, name);
  bool isLink = false;  // only the link is renamed, not its target
  const std::vector<NodeIndex> below = sourcesBelow(tree, path);
  for (const NodeIndex node : foldersAt(tree, path)) {
    const bool isSource = tree[node].parent == kNoNode;
    isLink = isLink || (isSource && tree[node].name() == path && tree.facts(node).isLink);
    if (!isSource || tree[node].name() == path) tree.rename(node, isSource ? newPath : name);
  }
  for (const NodeIndex source : below) {
    if (!tree[source].name().starts_with(path)) continue;
    Text sourcePath(newPath);
    sourcePath.append(tree[source].name().substr(path.size()));
    tree.rename(source, sourcePath);
  }
  if (!isLink) renameRealPaths(tree, real, newReal);
}

}  // namespace

Text renameFolder(FolderTree& tree, TextView path, TextView name) {
  return GuardedOr(
      kModule, u"lvwFolder_GridCellAfterEditing",
      [&]() -> Text {
        if (name == xGetFileName(path)) return {};
        const TextView folder = xGetPath(path);
        Text newPath(folder);
        appendName(newPath, name);
        platform::FindData replaced;
        const bool replacesFile =
            findObject(newPath, replaced) == platform::kSuccess && !replaced.isFolder();
        const auto nodes = foldersAt(tree, path);
        const platform::ShownObject object =
            nodes.empty() ? platform::ShownObject{Text(path)} : shownObject(tree, nodes.front());
        if (Text error = renameInFolder(object, name); !error.empty()) return error;
        if (replacesFile) {
          takeOutFile(tree, folder, name, replaced);
        } else if (const auto gone = foldersAt(tree, newPath); !gone.empty()) {
          takeOutFolders(tree, gone);
        }
        renameNodes(tree, path, newPath, name);
        return {};
      },
      errorTextOf);
}

Text renameFile(FolderTree& tree, FileList& files, Grid::RowIndex row, TextView name) {
  const Text folder = xRemoveBackslash(files.folder());
  const FileList::Renaming renaming = files.rename(row, name);
  if (renaming.replaced) takeOutFile(tree, folder, name, *renaming.replaced);
  return renaming.error;
}

}  // namespace ombrelian
