#pragma once

#include "frame/CommandLine.h"
#include "frame/Console.h"
#include "frame/Session.h"

namespace ombrelian {

/// Scans the only source of the line with all lists on, and prints or saves them. Returns the exit
/// status of a silent run.
int runLists(const CommandLine& line, Session& session, Console& console);

}  // namespace ombrelian
