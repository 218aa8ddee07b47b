#pragma once

#include <functional>

#include "support/Date.h"
#include "support/Guard.h"

namespace ombrelian {

/// Facts about the program for fault reports, which lower rooms cannot know.
struct ProgramFacts {
  Text title;    // "Ombrelian"
  Text version;  // major.minor.revision
  Text commandLine;
  Text dataPath;  // folder of both logs; without trailing separator
  Text iniFile;
  Date started = 0;
  int languageId = 0;
};

/// Writes unhandled faults to "error.log", with a report on the machine, and the program's own
/// trace to "debug.log". A failure in this class never stops the program: it continues without a
/// log that cannot be written.
class ErrorLog : public FaultSink {
 public:
  explicit ErrorLog(ProgramFacts facts) : facts_(std::move(facts)) {}
  ~ErrorLog() override;

  /// Appends a full report; `params` are values that the procedure wanted recorded.
  void Debug(TextView proc, TextView module, const Error& error,
             const std::vector<Text>& params) noexcept override;

  void errorLine(TextView line) noexcept override;

  /// Appends one line to the trace, with ", " before each of `params`.
  void LogDebug(TextView text, const std::vector<Text>& params = {}) noexcept override;

  /// Sets the value that reports contain about a cancelled scan. Not owned; null: no scan can be
  /// cancelled.
  void watchStop(const int* StopReason) { stopReason_ = StopReason; }

  /// Sets what shows a report to the user at once; empty: nothing does. It may be called by any
  /// thread.
  void setPresenter(std::function<void(const Text& report)> present) {
    present_ = std::move(present);
  }

  /// Starts to write entries about faults that end the process; ~ErrorLog ends that.
  void watchFatalFaults();

  /// The entry about the fault that ended the last run; empty: none did. The next call gets
  /// nothing.
  Text takeFatalReport();

  /// Sets the size of the screen in pixels for reports.
  void setScreen(int width, int height);

  /// The language of the run, as a Windows primary language number.
  int languageId() const { return facts_.languageId; }

  /// Number of reports in this run.
  int Errcount() const { return errcount_; }

 private:
  Text SystemReport(TextView proc, TextView module, const Error& error) const;
  void appendTo(TextView file, TextView text) const noexcept;

  const ProgramFacts facts_;
  Text screen_;  // width, "x", height; empty: there is none
  int errcount_ = 0;
  const int* stopReason_ = nullptr;
  std::function<void(const Text& report)> present_;
  bool watchesFaults_ = false;
};

}  // namespace ombrelian
