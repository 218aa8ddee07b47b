#pragma once

#include <QWidget>

#include "support/UserInterface.h"
#include "ui/ProgressStrip.h"

namespace ombrelian::ui {

/// The window as lower rooms see it: its progress line, its message boxes and questions, and its
/// event loop.
class WindowDialogs : public QObject, public UserInterface {
  Q_OBJECT

 public:
  /// `window` is the parent of dialogs; both arguments must outlive this object.
  WindowDialogs(QWidget& window, ProgressStrip& progress);

  void scanBegins() override;
  void scanEnds() override;
  void scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                    std::int64_t bytes) override;
  void saveProgress(std::uint64_t, std::uint64_t) override {}
  bool saveCancelled() override { return false; }
  void yield() override;
  void scanPhase(TextView text) override;
  bool GetInputState() override;
  void message(TextView text, Severity severity) override;
  bool ask(TextView question) override;
  bool confirm(TextView question, const std::vector<Text>& details, TextView verb) override;
  void deletionProgress(TextView path, std::uint64_t done, std::uint64_t all) override;

 Q_SIGNALS:
  /// A run begins or ends; between these two signals the user may only stop it.
  void busyChanged(bool busy);

 private:
  QWidget& window_;
  ProgressStrip& progress_;
  std::uint64_t lastYield_ = 0;  // platform::GetTickCount() of the last yield()
};

}  // namespace ombrelian::ui
