#pragma once

#include "ui/Looks.h"

namespace ombrelian::ui {

/// The command that shows the options dialog and makes the options take effect.
class OptionsCommand : public QObject {
  Q_OBJECT

 public:
  /// All arguments must outlive this object; `window` is the parent of the dialog.
  OptionsCommand(WindowState& state, WindowDialogs& dialogs, Looks& looks, QWidget& window)
      : state_(state), dialogs_(dialogs), looks_(looks), window_(window) {}

  void Show_Optionen();

 Q_SIGNALS:
  /// The user wants the program to end and to start again.
  void restartWanted();

 private:
  void applyStored();
  bool wantsRestart(const Options& stored);
  void openHelp(const QString& page);

  WindowState& state_;
  WindowDialogs& dialogs_;
  Looks& looks_;
  QWidget& window_;
};

}  // namespace ombrelian::ui
