#pragma once

#include <optional>

#include "platform/Patience.h"
#include "scan/ScanState.h"

namespace ombrelian {

/// A run of a scan or a deletion. While this object exists, the user can only stop the run. The run
/// ends with the scope, so that an exception cannot leave the window busy. In a window, the run
/// waits for a file system that does not answer only until the user stops it.
class RunScope {
 public:
  explicit RunScope(const ScanState& state);
  ~RunScope();
  RunScope(const RunScope&) = delete;
  RunScope& operator=(const RunScope&) = delete;

 private:
  bool keepsWaiting(std::chrono::milliseconds waited) const;
  void end() noexcept;

  const ScanState& state_;
  std::optional<platform::Patience> patience_;
};

/// Writes to the log that a fault of the program ended a run.
void logFault(const ScanState& state, const Error& error) noexcept;

}  // namespace ombrelian
