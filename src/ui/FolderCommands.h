#pragma once

#include "ui/FilesOfFolder.h"
#include "ui/PaneArea.h"

namespace ombrelian::ui {

/// Opens and closes folders of the tree, and empties it.
class FolderCommands {
 public:
  /// All arguments must outlive this object.
  FolderCommands(WindowState& state, Panes& panes, PaneArea& area, FilesOfFolder& files);

  void expandAll(bool expand);
  void expandSelected(bool expand);

  /// Opens all folders down to `levels` levels below the sources.
  void expandLevels(std::uint32_t levels);

  /// Selects in the tree the folder of the current row of a list, and gives it the focus.
  void showInTree(ListId list);

  /// Searches the list of the largest files for the extension in a row of the extension list.
  void showFilesOfExtension(std::size_t row);

  /// The same for the files of an owner, which are selected.
  void showFilesOfOwner(std::size_t row);

  /// Removes all sources from the tree; nothing on the disk is changed.
  void clearFolders();

 private:
  WindowState& state_;
  Panes& panes_;
  PaneArea& area_;
  FilesOfFolder& files_;
};

}  // namespace ombrelian::ui
