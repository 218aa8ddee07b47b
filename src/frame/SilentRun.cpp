#include "frame/SilentRun.h"

#include <cstdio>

#include "export/FolderSave.h"
#include "export/ReportFile.h"
#include "format/Sizes.h"
#include "platform/Process.h"
#include "platform/ReplacingFile.h"
#include "platform/Time.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using Severity = UserInterface::Severity;

/// Error text if it is known before the scan that the report cannot be saved; empty: no error is
/// known.
Text findObstacle(const Text& target, Console& console) {
  if (target == kStandardOutput) return {};
  Failure failure = platform::ReplacingFile::check(target);
  if (!failure) failure = protectionOf(target, console);
  return failure ? unwritableText(target, *failure) : Text();
}

Text seconds(std::uint64_t milliseconds) {
  char buffer[32];
  const int length = std::snprintf(buffer, sizeof buffer, "%.2f", double(milliseconds) / 1000.0);
  return fromAscii({buffer, std::size_t(length)});
}

/// The sums with plain digits, so that a script can read them.
Text summary(const ScanTotals& sum, std::uint64_t milliseconds, const Text& target) {
  return TL(9006, u"Dateien %1, Ordner %2, Bytes %3 (%4), Fehler %5, Sekunden %6, Ziel %7",
            {toText(sum.Files), toText(sum.Folders), toText(sum.Size),
             xFormatFileSize(4, sum.Size, true, false), toText(sum.Errors), seconds(milliseconds),
             target});
}

}  // namespace

Text unwritableText(const Text& target, const Error& error) {
  return TL(9005, u"Der Bericht '%1' kann nicht geschrieben werden: %2", {target, error.text});
}

int tellSignal(Console& console) {
  const int signal = platform::StopSignal();
  console.message(TL(9845, u"Das Signal %1 hat den Lauf beendet.", {toText(std::int64_t(signal))}),
                  Severity::Error);
  return kExitSignal + signal;
}

int statusOf(const RunResult& result, const Console& console, bool isTold) {
  if (!result.isComplete() || console.hasCutCells()) return kExitPartial;
  return isTold ? kExitDone : kExitUntold;
}

namespace {

/// See runSilently; `statusNow` is the exit status if a fault ends the run.
int scanAndSave(const CommandLine& line, Session& session, Console& console, int& statusNow) {
  console.setForce(line.force);
  if (const Text obstacle = findObstacle(line.target, console); !obstacle.empty()) {
    console.message(obstacle, Severity::Error);
    return kExitNothing;
  }
  const std::uint64_t start = platform::GetTickCount();
  session.context.SilentMode = true;
  session.context.helpers = line.helpers;
  session.log.setListener(&console);
  session.SourceQueue = line.sources;
  ScanRun run(session.scanState(console, nullptr));
  const RunResult result = run.Ordnerliste_Abarbeiten(session.SourceQueue);
  if (result.cancelled) return tellSignal(console);
  if (result.sourcesScanned == 0) return kExitNothing;
  FolderSave save(session.folderReport, session.options, console);
  const Failure failure =
      save.SAVE(line.target, line.levels, line.delimiter, line.customDelimiter, line.format);
  if (failure && platform::StopSignal() != 0) return tellSignal(console);
  if (failure) {
    console.message(unwritableText(line.target, *failure), Severity::Error);
    return kExitNothing;
  }
  statusNow = kExitPartial;
  const Text sums = summary(result.sum, platform::GetTickCount() - start, line.target);
  bool isTold = true;
  if (line.target == kStandardOutput) {
    console.message(sums, Severity::Information);
  } else {
    isTold = console.print(sums);
  }
  return statusOf(result, console, isTold);
}

}  // namespace

int runSilently(const CommandLine& line, Session& session, Console& console) {
  int statusNow = kExitNothing;
  return runWithReport(console, statusNow,
                       [&] { return scanAndSave(line, session, console, statusNow); });
}

}  // namespace ombrelian
