#pragma once

#include "frame/CommandLine.h"
#include "frame/Console.h"
#include "frame/Session.h"

namespace ombrelian {

/// Exit status of a run without a window.
inline constexpr int kExitDone = 0;     // everything was read and saved
inline constexpr int kExitPartial = 1;  // the report was saved, but something could not be read
inline constexpr int kExitNothing = 2;  // nothing was saved, or the line was invalid

/// Message about a report that cannot be written.
Text unwritableText(const Text& target, const Error& error);

/// Scans the sources of the line, saves the folder report at its target and prints the sums.
/// Returns the exit status.
int runSilently(const CommandLine& line, Session& session, Console& console);

}  // namespace ombrelian
