#pragma once

#include "core/frame/CommandLine.h"
#include "core/frame/Console.h"
#include "core/frame/Session.h"

namespace ombrelian {

/// Scans the one source of the line with all lists on and writes them to standard output. Returns
/// the exit status of a silent run.
int runLists(const CommandLine& line, Session& session, Console& console);

}  // namespace ombrelian
