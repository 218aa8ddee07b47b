#include "frame/ListRun.h"

#include <algorithm>
#include <limits>

#include "export/FolderSave.h"
#include "export/ListSave.h"
#include "export/ListText.h"
#include "frame/SilentRun.h"
#include "fs/PathText.h"
#include "platform/Process.h"
#include "platform/ReplacingFile.h"
#include "platform/Time.h"
#include "scan/ListFeeder.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using Severity = UserInterface::Severity;

constexpr std::int32_t kDefaultRows = 20;  // rows of each list in the text output

bool writeText(ListFeeder& lists, ListId list, const Options& options, std::size_t rows,
               const ByteSink& sink) {
  Grid& grid = lists.grid(list);
  const CellFormat format(grid.columns(), listSizes(options, list), options.DateFormat);
  return writeListText(listTitle(options, list), lists.list(list).status({}), grid,
                       visibleColumns(grid.columns(), listLayout(options, list)), format, rows,
                       sink);
}

bool writeJson(ListFeeder& lists, ListId list, const Options& options, std::size_t rows,
               const ByteSink& sink) {
  return writeListJson(listRow(list).key, listTitle(options, list), lists.grid(list), rows, sink);
}

bool writeAll(const CommandLine& line, ListFeeder& lists, const Options& options,
              const ByteSink& sink) {
  const std::int32_t all = std::numeric_limits<std::int32_t>::max();
  const std::int32_t rows = line.rows >= 0 ? line.rows : line.json ? all : kDefaultRows;
  for (const ListId list : kDerivedLists) {
    const auto write = line.json ? writeJson : writeText;
    if (!write(lists, list, options, std::size_t(rows), sink)) return false;
  }
  return true;
}

bool printAll(const CommandLine& line, Session& session, ListFeeder& lists, Console& console) {
  const ByteSink sink = [&](std::string_view bytes) { return console.write(bytes); };
  if (writeAll(line, lists, session.options, sink)) return true;
  console.message(TL(9009, u"Die Listen konnten nicht ganz ausgegeben werden."), Severity::Error);
  return false;
}

/// The stored choice of a format; HTML for an invalid number.
ReportFormat storedFormat(const Options& options) {
  const std::int32_t number = options.SaveFiles.FileFormat;
  const bool isFormat = number >= 0 && number <= std::int32_t(ReportFormat::XLSX);
  return isFormat ? ReportFormat(number) : ReportFormat::HTML;
}

/// Saves every list of a run in one folder, each under its own name.
class ListSaver {
 public:
  ListSaver(const CommandLine& line, Session& session, Console& console)
      : options_(session.options),
        console_(console),
        folder_(line.saveFolder),
        format_(line.format.value_or(storedFormat(options_))) {
    delimiter_ = line.customDelimiter;
    const std::int32_t entry = line.delimiter >= 0 ? line.delimiter : options_.SaveFiles.Delimiter;
    if (delimiter_.empty()) delimiter_ = delimiterText(entry, options_.SaveFiles.DelimiterChars);
  }

  /// Whether the folder is writable. If only the folder itself is missing, it is made.
  bool prepare() const {
    platform::CreateDirectoryW(folder_);
    const Failure failure = platform::ReplacingFile::check(pathOf(u"log"));
    return !failure || tell(folder_, *failure);
  }

  /// Saves all lists, even if some fail. Returns whether all were saved.
  bool saveAll(Session& session, ListFeeder& lists, NodeIndex root) {
    bool isSaved = saveFolders(session);
    const ReportSource source = {Text(session.tree[root].name()), session.tree.facts(root).created,
                                 notesOn(session.tree, root)};
    for (const ListId list : kDerivedLists)
      isSaved &= save(list, lists.list(list), source);
    return save(ListId::Log, session.log, {}) && isSaved;
  }

  /// Whether anything was saved.
  bool hasSaved() const { return hasSaved_; }

  /// Whether the name of every saved file could be printed.
  bool isTold() const { return isTold_; }

 private:
  Text pathOf(TextView name) const {
    Text path = folder_;
    appendName(path, name).append(u".").append(fileExtension(format_));
    return path;
  }

  bool saveFolders(Session& session) {
    const Text path = pathOf(u"folders");
    FolderSave folders(session.folderReport, options_, console_);
    const Failure failure = folders.SAVE(path, kAllLevels, kCustomDelimiter, delimiter_);
    return failure ? tell(path, *failure) : told(path);
  }

  bool save(ListId id, FlatList& list, const ReportSource& source) {
    const Text path = pathOf(listRow(id).key);
    const Failure failure =
        GuardedOr(u"frmSaveFiles", u"SAVE",
                  [&] {
                    return saveList(listToSave(options_, id, list, source), options_, format_, path,
                                    delimiter_, console_);
                  },
                  failureOf, {path});
    return failure ? tell(path, *failure) : told(path);
  }

  bool told(const Text& path) {
    hasSaved_ = true;
    isTold_ = console_.print(path) && isTold_;
    return true;
  }

  bool tell(const Text& path, const Error& error) const {
    console_.message(unwritableText(path, error), Severity::Error);
    return false;
  }

  const Options& options_;
  Console& console_;
  const Text folder_;
  const ReportFormat format_;
  Text delimiter_;
  bool hasSaved_ = false;
  bool isTold_ = true;
};

/// See runLists; `statusNow` is the exit status if a fault ends the run.
int scanAndList(const CommandLine& line, Session& session, Console& console, int& statusNow) {
  const bool saves = !line.saveFolder.empty();
  // These options are only for this run and are not stored.
  turnAllListsOn(session.options);
  for (std::int64_t& maximum : session.options.TopMaxCount)
    maximum = std::max(maximum, std::min<std::int64_t>(line.rows, kMostTopRows));
  console.setForce(line.force);
  ListSaver saver(line, session, console);
  if (saves && !saver.prepare()) return kExitNothing;
  session.log.setListener(&console);
  session.context.helpers = line.helpers;
  session.SourceQueue = line.sources;
  SystemFileTypes types;
  ListFeeder lists(session.options, session.filters, types);
  ScanRun run(session.scanState(console, &lists));
  const RunResult result = run.Ordnerliste_Abarbeiten(session.SourceQueue);
  if (result.cancelled) return tellSignal(console);
  if (result.sourcesScanned == 0) return kExitNothing;
  const bool isDone = saves ? saver.saveAll(session, lists, result.lastRoot)
                            : printAll(line, session, lists, console);
  if (!isDone && platform::StopSignal() != 0) return tellSignal(console);
  if (!isDone) return saver.hasSaved() ? kExitPartial : kExitNothing;
  statusNow = kExitPartial;
  return statusOf(result, console, saver.isTold());
}

}  // namespace

int runLists(const CommandLine& line, Session& session, Console& console) {
  int statusNow = kExitNothing;
  return runWithReport(console, statusNow,
                       [&] { return scanAndList(line, session, console, statusNow); });
}

}  // namespace ombrelian
