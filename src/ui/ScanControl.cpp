#include "ui/ScanControl.h"

#include "fs/z_Filesystem.h"
#include "settings/WalkFilters.h"
#include "support/Translate.h"
#include "tree/TreeOrder.h"
#include "ui/QtText.h"
#include "ui/RowsInPanes.h"

namespace ombrelian::ui {
namespace {

/// A second click on the button within this time belongs to the first.
constexpr qint64 kDoubleClickMs = 1000;

}  // namespace

ScanControl::ScanControl(WindowState& state, WindowDialogs& dialogs, Panes& panes,
                         SourceBox& sources)
    : state_(state), dialogs_(dialogs), panes_(panes), sources_(sources) {}

void ScanControl::startOrStop() {
  if (state_.files.isReading()) {
    state_.stopsFiles = true;
  } else if (isScanning()) {
    if (!started_.isValid() || started_.elapsed() > kDoubleClickMs) stop();
  } else {
    StartSearchViaToolbar();
  }
}

void ScanControl::StartSearchViaToolbar() {
  state_.session.context.ScanCancelState = kScanIdle;
  state_.session.SourceQueue.clear();
  const Text path = sources_.path();
  if (path.empty()) return;
  if (xExistFolder_W(path)) sources_.AddNewSearchPath(path);
  state_.session.SourceQueue.push_back(path);
  Ordnerliste_Abarbeiten();
}

void ScanControl::scan(const std::deque<Text>& sources) {
  if (sources.empty() || isScanning()) return;
  state_.session.SourceQueue = sources;
  for (const Text& source : sources) {
    if (xExistFolder_W(source)) sources_.AddNewSearchPath(source);
  }
  Ordnerliste_Abarbeiten();
}

bool ScanControl::takeMore(const std::deque<Text>& sources) {
  std::deque<Text>& queue = state_.session.SourceQueue;
  // A rescan has no queue, and a stopped run empties it.
  const bool isStopped = state_.session.context.ScanCancelState == kScanCancelRequested;
  if (!isScanning() || queue.empty() || isStopped) return false;
  queue.insert(queue.end(), sources.begin(), sources.end());
  for (const Text& source : sources) {
    if (xExistFolder_W(source)) sources_.AddNewSearchPath(source);
  }
  return true;
}

void ScanControl::Ordnerliste_Abarbeiten() {
  Session& session = state_.session;
  started_.start();
  Q_EMIT starting();
  // A run with one source fills the lists again; no view may read them meanwhile.
  const bool fillsLists = session.SourceQueue.size() == 1;
  if (fillsLists) panes_.setDerivedFrozen(true);
  RowsInPanes rows(panes_, session.folderReport);
  ScanRun run(session.scanState(dialogs_, &state_.found), &rows);
  const RunResult result = run.Ordnerliste_Abarbeiten(session.SourceQueue);
  state_.scanMilliseconds = result.milliseconds;
  ListPane& folders = panes_.pane(ListId::Folders);
  folders.model().replace([&] {
    expandNewSources();
    panes_.folders().treeChanged();
  });
  if (fillsLists) {
    state_.filled = filledBy(result);
    panes_.setDerivedFrozen(false);
  }
  folders.rowsReplaced();
  if (result.lastRoot != kNoNode) folders.selectRow(result.lastRoot);
  Q_EMIT finished(fillsLists);
  if (result.sourcesMissing == 0) return;
  dialogs_.message(result.missingText, UserInterface::Severity::Warning);
  sources_.edit();
}

/// The lists that a run with one source filled.
FilledLists ScanControl::filledBy(const RunResult& run) const {
  FilledLists filled;
  if (run.listedRoot != kNoNode) filled.source = state_.session.tree[run.listedRoot].name();
  filled.isIncomplete = run.cancelled || run.failed;
  for (const ListId list : kDerivedLists)
    filled.wasOn[std::size_t(list)] = isOn(state_.session.options, list);
  return filled;
}

void ScanControl::leaveOut() {
  const std::size_t row = panes_.currentFolder();
  if (row == RowSource::kNoRow || state_.isBusy()) return;
  const FolderTree& tree = state_.session.tree;
  const Text path = panes_.folders().path(row);
  const Text source(tree[sourceOf(tree, NodeIndex(panes_.folders().id(row)))].name());
  if (path == source) return;
  if (path.find(u',') != Text::npos) {
    dialogs_.message(TL(9777,
                        u"Ein Komma im Pfad trennt Filter; '%1' kann deshalb nicht weggelassen "
                        u"werden.",
                        {path}),
                     UserInterface::Severity::Warning);
    return;
  }
  excludeFolder(state_.session.options, path);
  scan({source});
}

void ScanControl::fillList(ListId list) {
  if (isScanning()) return;
  state_.session.options.*listRow(list).isOn = 1;
  if (!state_.filled.source.empty()) scan({state_.filled.source});
  panes_.showEmptyNotes();
}

/// Expands every source that the last run read.
void ScanControl::expandNewSources() {
  FolderTree& tree = state_.session.tree;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    if (tree.facts(root).run == state_.session.context.run)
      state_.session.folderReport.setExpanded(root, true);
  }
}

}  // namespace ombrelian::ui
