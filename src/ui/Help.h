#pragma once

#include "ui/WindowDialogs.h"

namespace ombrelian::ui {

/// What the program tells about itself.
class Help {
 public:
  /// Both must outlive this object; dialogs belong to `window`.
  Help(WindowDialogs& dialogs, QWidget& window) : dialogs_(dialogs), window_(window) {}

  void showAbout();
  void showFilterHelp();

 private:
  WindowDialogs& dialogs_;
  QWidget& window_;
};

}  // namespace ombrelian::ui
