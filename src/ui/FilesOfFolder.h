#pragma once

#include <QTimer>

#include "ui/Panes.h"

namespace ombrelian::ui {

/// Shows the files of the selected folder of the tree in the list of files.
class FilesOfFolder : public QObject {
  Q_OBJECT

 public:
  /// Both arguments must outlive this object.
  FilesOfFolder(WindowState& state, Panes& panes);

  /// Follows the selection in the tree.
  void selectedFolderChanged();

  /// Reads the files of the selected folder if their list is visible. A folder that is already
  /// shown is read again only with `force`.
  void showFiles(bool force);

  /// Shows no folder, because the one that was shown may be gone.
  void hideFiles();

  /// Reads the files again shortly after the last change of their filter, unless it is a filter of
  /// scans (no `list`).
  void filterChanged(std::optional<ListId> list);

  /// Ends the current reading; the files that it has found stay in the list.
  void stop() { state_.stopsFiles = true; }

 Q_SIGNALS:
  /// A text for the status line while the files are read.
  void progress(const QString& text);

  /// A reading takes so long that commands have to be off meanwhile, or such a reading has ended.
  void readingLong(bool isReading);

 private:
  void readLateOwner();
  void columnsChanged();
  Text filterInForce() const;

  WindowState& state_;
  Panes& panes_;
  QTimer filterPause_;  // runs while the user types a filter
  Text filter_;         // filter of the last reading; empty: it had none
};

}  // namespace ombrelian::ui
