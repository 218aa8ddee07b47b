#pragma once

#include <QLabel>
#include <QProgressBar>
#include <atomic>
#include <optional>

#include "platform/Patience.h"
#include "platform/Worker.h"
#include "support/UserInterface.h"

namespace ombrelian::ui {

/// Shows the progress of a save and lets the user cancel it: a bar below a line of text, whose
/// space stays reserved while nothing is saved. The save runs in this thread and calls `yield` now
/// and then to handle the user's input.
class SaveProgress : public QWidget, public UserInterface {
  Q_OBJECT

 public:
  explicit SaveProgress(QWidget* parent = nullptr);

  void begin();
  void end();

  /// Lets the save end as soon as it asks. If its file system does not answer, the save fails.
  void cancel();

  /// Whether the last save was cancelled before everything was written.
  bool wasCancelled() const { return isHeeded_; }

  /// Whether the user did not want the last save to replace a protected report.
  bool wasDeclined() const { return isDeclined_; }

  /// Number of cells of the last save that were cut.
  std::uint64_t cutCells() const { return cutCells_; }

  // The functions of UserInterface; those for scans do nothing.
  void scanBegins() override {}
  void scanEnds() override {}
  void scanProgress(TextView, std::int64_t, std::int64_t, std::int64_t) override {}
  void saveProgress(std::uint64_t row, std::uint64_t rows) override;
  void cellsWereCut(std::uint64_t cells) override { cutCells_ = cells; }
  bool mayReplaceProtected(TextView target) override;
  bool saveCancelled() override;
  void yield() override;
  void runAside(const std::function<void()>& job) override;
  bool GetInputState() override;
  void message(TextView text, Severity severity) override;
  bool ask(TextView question) override;

 private:
  bool keepsWaiting(std::chrono::milliseconds waited) const;

  QLabel* const text_;
  QProgressBar* const bar_;
  std::atomic<bool> isCancelled_ = false;  // the worker reads it too
  bool isHeeded_ = false;
  bool isDeclined_ = false;
  std::uint64_t cutCells_ = 0;
  std::uint64_t lastYield_ = 0;                 // platform::GetTickCount
  std::optional<platform::Patience> patience_;  // during a save
  platform::Worker worker_;
};

}  // namespace ombrelian::ui
