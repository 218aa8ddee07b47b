#pragma once

#include <QLabel>
#include <QStatusBar>

#include "ui/PaneArea.h"

namespace ombrelian::ui {

/// The status line: the number of sources on the left, and the description of the shown list on the
/// right.
class StatusLine : public QObject {
  Q_OBJECT

 public:
  /// All arguments must outlive this object.
  StatusLine(WindowState& state, Panes& panes, PaneArea& area, QStatusBar& bar);

  /// Describes the list on the right side, unless something runs.
  void StatusbarSetTextRightAUTO();

  /// Shows a text on the right until the description of the list follows.
  void showProgress(const QString& text) { right_->setText(text); }

  /// Shows a text for some seconds.
  void showNote(const QString& text);

  /// Adds a label with the note that nothing on the disk can be changed.
  void showReadOnly();

 private:
  Text statusOf(ListId list) const;
  Text selectedFolders() const;

  WindowState& state_;
  Panes& panes_;
  PaneArea& area_;
  QStatusBar& bar_;
  QLabel* left_;
  QLabel* right_;
};

}  // namespace ombrelian::ui
