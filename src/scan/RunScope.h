#pragma once

#include "scan/ScanState.h"

namespace ombrelian {

/// A run of a scan or a deletion. While this object exists, the user can only stop the run. The run
/// ends with the scope, so that an exception cannot leave the window busy.
class RunScope {
 public:
  explicit RunScope(const ScanState& state);
  ~RunScope();
  RunScope(const RunScope&) = delete;
  RunScope& operator=(const RunScope&) = delete;

 private:
  void end() noexcept;

  const ScanState& state_;
};

/// Writes to the log that a fault of the program ended a run.
void logFault(const ScanState& state, const Error& error);

}  // namespace ombrelian
