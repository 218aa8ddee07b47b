#pragma once

#include <deque>

#include "scan/RowsOnShow.h"
#include "scan/Walker.h"

namespace ombrelian {

/// Result of one run.
struct RunResult {
  ScanTotals sum;  // over all sources
  int sourcesScanned = 0;
  int sourcesMissing = 0;  // number of sources that do not exist or that nothing is known of
  Text missingText;        // message about the first of them
  bool cancelled = false;
  bool failed = false;  // a fault of the program ended the run or a part of it
  NodeIndex lastRoot = kNoNode;
  NodeIndex listedRoot = kNoNode;  // the source that filled the lists
  std::int64_t milliseconds = 0;   // over all sources

  /// Whether everything that was requested was read.
  bool isComplete() const {
    return sum.Errors == 0 && sourcesMissing == 0 && !cancelled && !failed;
  }
};

/// Reads every source of the queue into the tree, writes the log, and fills the lists if there is
/// only one source.
class ScanRun {
 public:
  /// `state` and `rows` are kept; `rows` may be null.
  explicit ScanRun(const ScanState& state, RowsOnShow* rows = nullptr)
      : state_(state), rows_(orNobody(rows)) {}

  /// Consumes the queue, which may grow meanwhile. The sources of a run are side by side in the
  /// tree. Only a run that never has more than one source fills the lists.
  RunResult Ordnerliste_Abarbeiten(std::deque<Text>& SourceQueue);

  /// Scans one source into a new root, or into `existing` for a rescan; returns the root.
  NodeIndex Quelle_Einlesen(TextView path, NodeIndex existing = kNoNode);

  /// Reads a folder that is in the tree into a twin, which then takes its place. `followsAll`: see
  /// putInPlace.
  void readAgain(TextView path, NodeIndex folder, bool followsAll);

 private:
  void scanSource(const Text& path, bool isOnlySource, RunResult& result);
  bool wasRead(const Text& path);
  void prepareSource(bool isOnlySource);
  void useFiltersOfOptions();
  void logOptions();
  void logCounts(const ScanTotals& counts);
  void readRootFacts(TextView path, NodeIndex root);
  void scanQueue(std::deque<Text>& SourceQueue, RunResult& result);
  void readSource(TextView path, NodeIndex root);
  void markFault(NodeIndex root, const Error& error) noexcept;
  ScanTotals walk(TextView path, NodeIndex root);
  DerivedLists* listsOfRun() const;

  const ScanState state_;
  RowsOnShow& rows_;
  std::vector<platform::FileIdentity> read_;  // folders that this run has read as sources
};

}  // namespace ombrelian
