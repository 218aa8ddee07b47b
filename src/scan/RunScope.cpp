#include "scan/RunScope.h"

#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {

RunScope::RunScope(const ScanState& state) : state_(state) {
  // Nobody could stop a run without a window, so it waits as long as the system does.
  if (!state.context.SilentMode) {
    patience_.emplace([this](std::chrono::milliseconds waited) { return keepsWaiting(waited); });
  }
  state_.context.ScanBusy = true;
  try {
    state_.ui.scanBegins();
  } catch (...) {
    end();
    throw;
  }
}

RunScope::~RunScope() { end(); }

/// Handles user input while a call of the run is waiting for a file system.
bool RunScope::keepsWaiting(std::chrono::milliseconds waited) const {
  state_.ui.yield();
  if (state_.context.IgnoresCancel) return waited < platform::Patience::kForOneQuestion;
  return state_.context.ScanCancelState != kScanCancelRequested;
}

void RunScope::end() noexcept {
  state_.context.ScanCancelState = kScanIdle;
  state_.context.IgnoresCancel = false;
  state_.context.ScanBusy = false;
  Guarded(u"frmMain", u"scanEnds", [this] { state_.ui.scanEnds(); });
}

void logFault(const ScanState& state, const Error& error) noexcept {
  Guarded(u"frmMain", u"logFault", [&] {
    state.log.LogProtokoll(
        TL(9701, u"Der Vorgang wurde durch einen Fehler des Programms beendet: %1",
           {errorTextOf(error)}),
        true);
  });
}

}  // namespace ombrelian
