#pragma once

#include "scan/RowsOnShow.h"
#include "scan/ScanRun.h"

namespace ombrelian {

/// Reads folders of the tree anew. While it reads the tree stays as it was; then what was read
/// takes the place of the folder. Lists beside the tree go on describing the last run.
class Rescan {
 public:
  /// `state` and `rows` are kept; `rows` may be null.
  Rescan(const ScanState& state, RowsOnShow* rows);

  /// Reads the folder of the selected row, for the row of direct files the folder above, and orders
  /// the tree by size. The folders above follow in size, files and folders alone. Returns what was
  /// read; kNoNode: nothing, because the folder could not be listed before, or is a link or a mount
  /// point that a scan would not enter. After a cancel what was found by then stands in the tree.
  NodeIndex Report_Rescan(NodeIndex selected);

  /// Reads a folder of which a part is gone, whole whatever the user wants; all numbers above
  /// follow.
  void readRest(NodeIndex folder);

 private:
  void read(NodeIndex folder, bool isRest);

  const ScanState state_;
  RowsOnShow& rows_;
};

/// Takes the source that a node belongs to out of the tree; on the disk all stays. Returns its
/// path; empty: there was none.
Text Report_RemoveFolders(FolderTree& tree, NodeIndex selected, RowsOnShow* rows);

}  // namespace ombrelian
