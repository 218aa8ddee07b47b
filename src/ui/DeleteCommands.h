#pragma once

#include "scan/Deletion.h"
#include "ui/DriveCommands.h"
#include "ui/FilesOfFolder.h"

namespace ombrelian::ui {

/// Deletes selected objects, reads folders again, and removes sources from the tree.
class DeleteCommands {
 public:
  /// All arguments must outlive this object.
  DeleteCommands(WindowState& state, WindowDialogs& dialogs, Panes& panes, FilesOfFolder& files,
                 DriveCommands& drives, ScanControl& scans);

  /// Deletes the selected folders or files; with `recycle` they are moved to the bin, else they are
  /// deleted permanently.
  void DeleteFolders(bool recycle);
  void deleteFiles(ListId list, bool recycle);

  /// Reads the selected folder again.
  void Report_Rescan();

  /// Removes the source of the selected row from the tree.
  void Report_RemoveFolders();

 private:
  bool deleteFrom(ListId list, Deletion& deletion, const Deletion::Ids& ids);

  WindowState& state_;
  WindowDialogs& dialogs_;
  Panes& panes_;
  FilesOfFolder& files_;
  DriveCommands& drives_;
  ScanControl& scans_;
};

}  // namespace ombrelian::ui
