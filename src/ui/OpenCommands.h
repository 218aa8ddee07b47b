#pragma once

#include "ui/ScanControl.h"

namespace ombrelian::ui {

/// Opens the objects of rows in other programs, in the file manager, or in the tree itself.
class OpenCommands {
 public:
  /// All arguments must outlive this object.
  OpenCommands(WindowState& state, WindowDialogs& dialogs, Panes& panes, ScanControl& scans);

  /// Handle Enter and a double click on a row.
  void activateRow(ListId list, std::size_t row);
  void doubleClickRow(ListId list, std::size_t row);

  /// Opens the selected rows, and asks first if there are many.
  void openPaths(ListId list);

  void reveal(ListId list);
  void showProperties(ListId list);

  /// Opens the file of the log.
  void Show_Log();

 private:
  WindowState& state_;
  WindowDialogs& dialogs_;
  Panes& panes_;
  ScanControl& scans_;
};

}  // namespace ombrelian::ui
