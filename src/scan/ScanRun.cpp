#include "scan/ScanRun.h"

#include <algorithm>

#include "format/DatePattern.h"
#include "format/Sizes.h"
#include "fs/z_Filesystem.h"
#include "lists/ListTable.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/Time.h"
#include "scan/RunScope.h"
#include "support/Guard.h"
#include "support/Translate.h"
#include "tree/TreeEdit.h"
#include "tree/TreeOrder.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"frmMain";
constexpr std::size_t kRuleLength = 40;  // length of the line between two sources in the log

/// A counter as the log shows it.
Text plainCount(std::int64_t count) { return xFormatFileSize(0, count, false, false); }

Date now() { return toDate(platform::GetLocalTime()); }

/// The name of the root node for a source with this path.
Text rootName(TextView path) { return xRemoveBackslash(path); }

/// Why nothing can be read at `path`; kSuccess: it is a folder. If its file system does not answer,
/// the row of the source shows this.
platform::ErrorCode obstacleAt(TextView path) {
  if (xExistFolder_W(path)) return platform::kSuccess;
  platform::FindData data;
  const platform::ErrorCode error = platform::GetFileInformation(path, data);
  if (error == platform::kTimeout) return platform::kSuccess;
  return error == platform::kSuccess && !data.isFolder() ? platform::kNotADirectory : error;
}

/// Message about a source that cannot be read because of `error`.
Text obstacleText(const Text& path, platform::ErrorCode error) {
  if (platform::isMissing(error)) {
    return TL(3796, u"Der Ordner '%1' konnte nicht gefunden werden!", {path});
  }
  return TL(9842, u"Der Ordner '%1' kann nicht eingelesen werden: %2",
            {path, xGetErrorText(false, error)});
}

/// The source with this name; kNoNode: none.
NodeIndex sourceNamed(const FolderTree& tree, TextView name) {
  NodeIndex root = tree.firstRoot();
  while (root != kNoNode && tree[root].name() != name)
    root = tree[root].nextSibling;
  return root;
}

}  // namespace

DerivedLists* ScanRun::listsOfRun() const {
  return state_.context.SuppressDerivedLists ? nullptr : state_.lists;
}

RunResult ScanRun::Ordnerliste_Abarbeiten(std::deque<Text>& SourceQueue) {
  RunResult result;
  const std::uint64_t faults = caughtFaults();
  GuardedOr(
      kModule, u"Ordnerliste_Abarbeiten",
      [&] {
        const RunScope scope(state_);
        scanQueue(SourceQueue, result);
      },
      [&](const Error& error) { logFault(state_, error); });
  result.failed = caughtFaults() != faults;
  SourceQueue.clear();
  return result;
}

void ScanRun::scanQueue(std::deque<Text>& SourceQueue, RunResult& result) {
  state_.context.run = state_.tree.addRun();
  state_.filters.startRun();
  bool isOnlySource = !state_.context.SilentMode;
  while (!SourceQueue.empty() && !result.cancelled) {
    const Text path = SourceQueue.front();
    if (SourceQueue.size() > 1) isOnlySource = false;
    if (wasRead(path)) {
      state_.log.LogProtokoll(
          TL(9866, u"'%1' ist ein Ordner, der in diesem Lauf schon eingelesen wurde.", {path}));
    } else if (const auto error = obstacleAt(path); error == platform::kSuccess) {
      scanSource(path, isOnlySource, result);
    } else {
      const Text text = obstacleText(path, error);
      if (++result.sourcesMissing == 1) result.missingText = text;
      state_.log.LogProtokoll(text, true);
    }
    isOnlySource = false;  // sources that were queued meanwhile make it a run of several sources
    SourceQueue.pop_front();
  }
  Report_Folder_Sort_All(state_.tree);
}

/// Whether this run read the folder already, by the same or another path. If not, it counts as read
/// from now on.
bool ScanRun::wasRead(const Text& path) {
  platform::FindData data;
  if (platform::GetFileInformation(path, data) != platform::kSuccess) return false;
  if (std::find(read_.begin(), read_.end(), data.identity) != read_.end()) return true;
  read_.push_back(data.identity);
  return false;
}

void ScanRun::scanSource(const Text& path, bool isOnlySource, RunResult& result) {
  state_.log.flipGroup();
  state_.log.LogProtokoll(Text(kRuleLength, u'-'));
  state_.log.LogProtokoll(TL(3777, u"Einlesen: %1", {path}));
  prepareSource(isOnlySource);
  const Date started = now();
  const std::uint64_t startTick = platform::GetTickCount();
  useFiltersOfOptions();
  for (const Text& filter : describeFilters(walkFilters(state_.options)))
    state_.log.LogProtokoll(filter);
  NodeIndex root = sourceNamed(state_.tree, rootName(path));
  if (root == kNoNode) {
    root = Quelle_Einlesen(path);
  } else {
    readAgain(path, root, true);
  }
  const Text real = platform::GetFinalPathNameW(path);
  platform::FindData named;
  const bool isLink = findObject(path, named) == platform::kSuccess && named.isReparse();
  state_.tree.facts(root) = {started, state_.context.run, walkFilters(state_.options), isLink,
                             real == rootName(path) ? Text() : real};
  result.lastRoot = root;
  ++result.sourcesScanned;
  result.sum += state_.context.Total;
  logCounts(result.sum);
  if (DerivedLists* const lists = listsOfRun()) {
    result.listedRoot = root;
    lists->finish(state_.context.Total, [this](TextView text) { state_.ui.scanPhase(text); });
  }
  result.cancelled =
      state_.context.ScanCancelState == kScanCancelRequested || platform::StopSignal() != 0;
  if (result.cancelled) {
    state_.log.LogProtokoll(TL(3778, u"Der Vorgang wurde vom Anwender abgebrochen!"));
  }
  const auto milliseconds = std::int64_t(platform::GetTickCount() - startTick);
  const Text tenths = milliseconds < 60'000 ? u" (" + formatDuration(milliseconds) + u")" : Text();
  state_.log.LogProtokoll(
      TL(3830, u"Zeitaufwand: %1", {formatTimeSpan(milliseconds / 1000) + tenths}));
  result.milliseconds += milliseconds;
}

/// Prepares a source. A single source starts with empty lists; several sources share the tree and
/// fill no lists.
void ScanRun::prepareSource(bool isOnlySource) {
  state_.context.SuppressDerivedLists = !isOnlySource;
  if (!isOnlySource) return;
  state_.filters.SetExtFilter(state_.options);
  state_.filters.SetTopFilesExtFilter(state_.options);
  if (state_.lists != nullptr) state_.lists->reset();
  logOptions();
}

void ScanRun::readAgain(TextView path, NodeIndex folder, bool followsAll) {
  FolderTree& tree = state_.tree;
  forgetHardlinks(tree, folder);
  const NodeIndex twin = Quelle_Einlesen(path, tree.addTwin(folder));
  rows_.change([&] {
    rows_.willReplace(folder, twin);
    putInPlace(tree, folder, twin, followsAll);
  });
}

void ScanRun::useFiltersOfOptions() {
  state_.filters.SetFileFilterInclude(state_.options);
  state_.filters.SetFileFilter(state_.options);
  state_.filters.SetFolderFilterExclude(state_.options);
  state_.filters.SetFolderFilterInclude(state_.options);
}

void ScanRun::logOptions() {
  for (const ListId list : kDerivedLists) {
    if (!isOn(state_.options, list)) continue;
    const Text caption = optionCaption(state_.options, list);
    if (const auto dateKind = listRow(list).dateKind) {
      const Text kind = dateKindCaption(state_.options.*dateKind);
      state_.log.LogProtokoll(TL(3829, u"Option: %1 (%2)", {caption, kind}));
    } else {
      state_.log.LogProtokoll(TL(3874, u"Option: %1", {caption}));
    }
  }
}

void ScanRun::logCounts(const ScanTotals& counts) {
  const auto line = [&](int id, TextView german, std::int64_t count) {
    if (count > 0) state_.log.LogProtokoll(TL(id, german, {plainCount(count)}));
  };
  line(3773, u"Zugriffsfehler: %1", counts.Errors);
  line(3774, u"Ordneranzahl: %1", counts.Folders);
  line(3775, u"Dateianzahl: %1", counts.Files);
  if (counts.Size > 0) {
    state_.log.LogProtokoll(TL(3776, u"Dateigröße: %1 (%2)",
                               {xFormatFileSize(4, counts.Size, true, false),
                                xFormatFileSize(0, counts.Size, true, false)}));
  }
  line(3885, u"Hardlinks: %1", counts.Hardlinks);
  line(3886, u"Junctions: %1", counts.Junctions);
}

NodeIndex ScanRun::Quelle_Einlesen(TextView path, NodeIndex existing) {
  const NodeIndex root = existing == kNoNode ? state_.tree.addRoot(rootName(path)) : existing;
  const std::uint64_t faults = caughtFaults();
  GuardedOr(
      kModule, u"Quelle_Einlesen",
      [&] {
        readSource(path, root);
        throwIfFaultsSince(faults);
      },
      [&](const Error& error) { markFault(root, error); }, {path});
  return root;
}

/// Marks a source of which data are missing because of a fault. They count as an error, so that the
/// source does not look complete.
void ScanRun::markFault(NodeIndex root, const Error& error) noexcept {
  FolderNode& node = state_.tree[root];
  ++state_.context.Total.Errors;
  node.errors = state_.context.Total.Errors;
  node.set(FolderNode::IsError);
  cutOff(node);
  logFault(state_, error);
  Guarded(kModule, u"markFault", [&] { state_.tree.setErrorText(root, errorTextOf(error)); });
}

void ScanRun::readSource(TextView path, NodeIndex root) {
  ScanContext& context = state_.context;
  const Options& options = state_.options;
  context.ReadHardlinkCounts = options.CreateListHardlink == 1 ||
                               options.AddHardlinksOnlyOnce == 1 || options.ShowHardlinkCount == 1;
  context.KeepsOwners = keepsOwners(path);
  context.Total = ScanTotals();
  const ScanTotals found = walk(path, root);
  FolderNode& node = state_.tree[root];
  Report_SetNodeSizeAndFilecount(node, found.Size, context.Total.Files);
  node.folders = context.Total.Folders;
  node.hardlinks = context.Total.Hardlinks;
  node.junctions = context.Total.Junctions;
  node.errors = context.Total.Errors;
  readRootFacts(path, root);
}

ScanTotals ScanRun::walk(TextView path, NodeIndex root) {
  const platform::NoRedirection whileWalking;
  return Walker(state_, listsOfRun()).Report_ScanFolders(xGetPathWithBackslash(path), root);
}

/// Reads the dates, the attributes and the owner of a source itself, because no listing contains
/// them.
void ScanRun::readRootFacts(TextView path, NodeIndex root) {
  FolderNode& node = state_.tree[root];
  platform::FindData data;
  if (platform::GetFileInformation(path, data) != platform::kSuccess) return;
  node.dateModified = data.ftLastWriteTime;
  node.dateCreate = data.ftCreationTime;
  node.dateAccess = data.ftLastAccessTime;
  // A source that is a mount point is a drive, not a junction.
  node.attributes = data.dwFileAttributes & ~platform::kAttributeReparsePoint;
  if (node.has(FolderNode::IsJunction)) node.attributes |= platform::kAttributeReparsePoint;
  // If the source was reached by a link, a deletion removes this link.
  platform::FindData named;
  if (findObject(path, named) == platform::kSuccess) {
    state_.tree.setIdentity(root, named.identity);
  }
  if (state_.options.ShowFolderOwner == 0 && state_.options.CreateListOwner == 0) return;
  const OwnerTexts owners;
  node.owner = state_.tree.ownerNumber(owners.of(state_.context.KeepsOwners, data));
  node.set(FolderNode::HasOwner);
}

}  // namespace ombrelian
