#pragma once

#include <QLabel>
#include <QProgressBar>

#include "support/UserInterface.h"

namespace ombrelian::ui {

/// Shows how far a save is and lets the user end it: a bar with a line of text above it, which keep
/// their place while nothing is saved. The save runs on this thread and comes by for the user's
/// input.
class SaveProgress : public QWidget, public UserInterface {
  Q_OBJECT

 public:
  explicit SaveProgress(QWidget* parent = nullptr);

  void begin();
  void end();

  /// The user wants no more.
  void cancel();

  /// Whether the save that was begun last was ended before all was written.
  bool wasCancelled() const { return isHeeded_; }

  // UserInterface. Nothing is scanned here.
  void scanBegins() override {}
  void scanEnds() override {}
  void scanProgress(TextView, std::int64_t, std::int64_t, std::int64_t) override {}
  void saveProgress(std::uint64_t row, std::uint64_t rows) override;
  bool saveCancelled() override;
  void yield() override;
  bool GetInputState() override;
  void message(TextView text, Severity severity) override;
  bool ask(TextView question) override;

 private:
  QLabel* const text_;
  QProgressBar* const bar_;
  bool isCancelled_ = false;
  bool isHeeded_ = false;
  std::uint64_t lastYield_ = 0;  // platform::GetTickCount
};

}  // namespace ombrelian::ui
