#pragma once

#include "ui/ScanControl.h"

namespace ombrelian::ui {

/// Reads the drives, scans them, and keeps the network paths of the user.
class DriveCommands : public QObject {
  Q_OBJECT

 public:
  /// All arguments must outlive this object; `window` is the parent of dialogs.
  DriveCommands(WindowState& state, Panes& panes, ScanControl& scans, WindowDialogs& dialogs,
                QWidget& window);

  void readDrives();

  /// Reads the drives if they are shown and were not read yet. While a scan runs it does nothing.
  void readDrivesOnce();

  /// Asks the drive that holds `path` for its space again.
  void refreshDrive(const Text& path);

  void Drives_ScanDrives(bool all);
  void addNetworkPath();
  void removeNetworkPath();

 Q_SIGNALS:
  /// A text for the status line while drives are read.
  void progress(const QString& text);

 private:
  WindowState& state_;
  Panes& panes_;
  ScanControl& scans_;
  WindowDialogs& dialogs_;
  QWidget& window_;
};

}  // namespace ombrelian::ui
