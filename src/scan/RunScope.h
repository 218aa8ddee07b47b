#pragma once

#include "scan/ScanState.h"

namespace ombrelian {

/// A run of a scan or a deletion: from its making to its end the user can do nothing but stop it.
/// The run ends with the scope, so that an exception cannot leave the window busy.
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

/// Tells the user that a fault of the program ended a run, in the log.
void logFault(const ScanState& state, const Error& error);

}  // namespace ombrelian
