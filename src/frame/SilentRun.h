#pragma once

#include "frame/CommandLine.h"
#include "frame/Console.h"
#include "frame/Session.h"
#include "support/Guard.h"

namespace ombrelian {

/// Exit status of a run without a window.
inline constexpr int kExitDone = 0;      // everything was read and saved
inline constexpr int kExitPartial = 1;   // the report was saved, but something could not be read
inline constexpr int kExitNothing = 2;   // nothing was saved, or the line was invalid
inline constexpr int kExitUntold = 4;    // like 0, but the standard output could not be written
inline constexpr int kExitSignal = 128;  // plus its number: a signal ended the run early

/// Message about a report that cannot be written.
Text unwritableText(const Text& target, const Error& error);

/// Runs `run`, which returns the exit status of a run without a window. An exception is reported on
/// the console, and so is a fault that a guard within `run` has caught. The status is then the
/// value of `statusNow`, which `run` keeps up to date.
template <class Run>
int runWithReport(Console& console, const int& statusNow, Run run) noexcept {
  const std::uint64_t faults = caughtFaults();
  return GuardedOr(
      u"Main", u"runWithReport",
      [&] {
        const int status = run();
        throwIfFaultsSince(faults);
        return status;
      },
      [&](const Error& error) {
        console.fault(error);
        return statusNow;
      });
}

/// Reports that a signal ended the run early, and returns the exit status for it.
int tellSignal(Console& console);

/// Exit status of a run that saved its result; `isTold`: its output could be written.
int statusOf(const RunResult& result, const Console& console, bool isTold);

/// Scans the sources of the line, saves the folder report at its target and prints the sums.
/// Returns the exit status.
int runSilently(const CommandLine& line, Session& session, Console& console);

}  // namespace ombrelian
