#include "scan/RunScope.h"

#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {

RunScope::RunScope(const ScanState& state) : state_(state) {
  state_.context.ScanBusy = true;
  try {
    state_.ui.scanBegins();
  } catch (...) {
    end();
    throw;
  }
}

RunScope::~RunScope() { end(); }

void RunScope::end() noexcept {
  state_.context.ScanCancelState = kScanIdle;
  state_.context.IgnoresCancel = false;
  state_.context.ScanBusy = false;
  Guarded(u"frmMain", u"scanEnds", [this] { state_.ui.scanEnds(); });
}

void logFault(const ScanState& state, const Error& error) {
  state.log.LogProtokoll(TL(9701, u"Der Vorgang wurde durch einen Fehler des Programms beendet: %1",
                            {errorTextOf(error)}),
                         true);
}

}  // namespace ombrelian
