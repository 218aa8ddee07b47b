#include "core/frame/ListRun.h"

#include <algorithm>
#include <limits>

#include "core/frame/SilentRun.h"
#include "core/scan/ListFeeder.h"
#include "export/ListText.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr std::int32_t kDefaultRows = 20;  // of each list as text

/// For this run alone: nothing of it is stored.
void turnAllListsOn(Options& options, std::int32_t rows) {
  for (std::uint8_t* const list :
       {&options.CreateList100LargestFiles, &options.CreateList100SmallestFiles,
        &options.CreateList100NewestFiles, &options.CreateList100OldestFiles,
        &options.CreateList100LargestFolders, &options.CreateList100SmallestFolders,
        &options.CreateListHardlink, &options.CreateListJunction, &options.CreateListOwner,
        &options.CreateListExt}) {
    *list = 1;
  }
  for (std::int32_t& maximum : options.TopMaxCount)
    maximum = std::max(maximum, std::min(rows, kMostTopRows));
}

bool writeText(ListFeeder& lists, ListId list, const Options& options, std::size_t rows,
               const ByteSink& sink) {
  Grid& grid = lists.grid(list);
  const CellFormat format(grid.columns(), listSizes(options, list), options.DateFormat);
  return writeListText(listTitle(options, list), lists.status(list), grid,
                       visibleColumns(grid.columns(), listLayout(options, list)), format, rows,
                       sink);
}

bool writeJson(ListFeeder& lists, ListId list, const Options& options, std::size_t rows,
               const ByteSink& sink) {
  return writeListJson(listFacts(list).key, listTitle(options, list), lists.grid(list), rows, sink);
}

bool writeAll(const CommandLine& line, ListFeeder& lists, const Options& options,
              const ByteSink& sink) {
  const std::int32_t all = std::numeric_limits<std::int32_t>::max();
  const std::int32_t rows = line.rows >= 0 ? line.rows : line.json ? all : kDefaultRows;
  for (int number = 0; number < kLists; ++number) {
    const auto write = line.json ? writeJson : writeText;
    if (!write(lists, ListId(number), options, std::size_t(rows), sink)) return false;
  }
  return true;
}

}  // namespace

int runLists(const CommandLine& line, Session& session, Console& console) {
  turnAllListsOn(session.options, line.rows);
  session.log.setListener(&console);
  session.SourceQueue = line.sources;
  SystemFileTypes types;
  ListFeeder lists(session.options, session.filters, types);
  ScanRun run(session.scanState(console, &lists));
  const RunResult result = run.Ordnerliste_Abarbeiten(session.SourceQueue);
  if (result.sourcesScanned == 0) return kExitNothing;
  const ByteSink sink = [&](std::string_view bytes) { return console.write(bytes); };
  if (!writeAll(line, lists, session.options, sink)) {
    console.message(TL(9009, u"Die Listen konnten nicht ganz ausgegeben werden."),
                    UserInterface::Severity::Error);
    return kExitNothing;
  }
  return result.sum.Errors == 0 && !result.cancelled ? kExitDone : kExitPartial;
}

}  // namespace ombrelian
