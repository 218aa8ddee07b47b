#pragma once

#include <QObject>

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

  /// Reads the files again after a filter changed, unless it is a filter of scans (no `list`).
  void filterChanged(std::optional<ListId> list);

  /// Ends the current reading; the files that it has found stay in the list.
  void stop() { isStopped_ = true; }

 Q_SIGNALS:
  /// A text for the status line while the files are read.
  void progress(const QString& text);

 private:
  void readLateOwner();

  WindowState& state_;
  Panes& panes_;
  bool isStopped_ = false;
};

}  // namespace ombrelian::ui
