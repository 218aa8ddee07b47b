#pragma once

#include "support/Date.h"
#include "support/Guard.h"

namespace ombrelian {

/// What a fault report says of the program that nobody below can know.
struct ProgramFacts {
  Text title;  // "Ombrelian"
  Text version;
  Text commandLine;
  Text dataPath;  // folder of both logs; without trailing separator
  Text iniFile;
  Date started = 0;
  int languageId = 0;
};

/// Writes what nobody handled to "error.log", with a report on the machine, and the program's own
/// trace to "debug.log". Nothing in here stops the program: a log that cannot be written is done
/// without.
class ErrorLog : public FaultSink {
 public:
  explicit ErrorLog(ProgramFacts facts) : facts_(std::move(facts)) {}

  /// Appends a full report; `params` are values that the procedure wanted recorded.
  void Debug(TextView proc, TextView module, const Error& error,
             const std::vector<Text>& params) noexcept override;

  void errorLine(TextView line) noexcept override;

  /// Appends one line to the trace, each of `params` behind ", ".
  void LogDebug(TextView text, const std::vector<Text>& params = {}) noexcept override;

  /// What reports tell of a cancelled scan; not owned, null: no scan can be.
  void watchStop(const int* StopReason) { stopReason_ = StopReason; }

  /// Reports in this run.
  int Errcount() const { return errcount_; }

 private:
  Text SystemReport(TextView proc, TextView module, const Error& error) const;
  void appendTo(TextView file, TextView text) const noexcept;

  const ProgramFacts facts_;
  int errcount_ = 0;
  const int* stopReason_ = nullptr;
};

}  // namespace ombrelian
