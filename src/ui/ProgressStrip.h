#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QWidget>

#include "support/Text.h"

namespace ombrelian::ui {

/// The line that shows the progress of a scan or a deletion: a bar, the counts, and the current
/// folder. It covers the status bar, so that no row moves when a run begins or asks a question.
class ProgressStrip : public QWidget {
  Q_OBJECT

 public:
  /// `place` is the status bar.
  explicit ProgressStrip(QWidget& place);

  /// Shows the strip with everything at zero.
  void begin();
  void end() { hide(); }

  /// Shows a text in place of the folder.
  void showText(TextView text);

  void show(TextView folder, std::int64_t files, std::int64_t folders, std::int64_t bytes);

  /// Shows that `done` objects of `all` were deleted. If `all` is 0, they are still being counted,
  /// and `done` were counted.
  void showDeletion(TextView path, std::uint64_t done, std::uint64_t all);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void placePath();

  QElapsedTimer timer_;
  QProgressBar* bar_;
  QLabel* counts_;
  QLabel* path_;
  QString folder_;
};

}  // namespace ombrelian::ui
