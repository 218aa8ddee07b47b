#pragma once

#include "ui/WindowDialogs.h"

namespace ombrelian::ui {

/// Information about the program.
class Help {
 public:
  /// Both arguments must outlive this object; `window` is the parent of dialogs.
  Help(WindowDialogs& dialogs, QWidget& window) : dialogs_(dialogs), window_(window) {}

  void showAbout();
  void showFilterHelp();

 private:
  WindowDialogs& dialogs_;
  QWidget& window_;
};

}  // namespace ombrelian::ui
