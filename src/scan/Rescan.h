#pragma once

#include "scan/RowsOnShow.h"
#include "scan/ScanRun.h"

namespace ombrelian {

/// Reads folders of the tree again. During the reading the tree does not change; then the result
/// replaces the folder. Lists beside the tree still describe the last run.
class Rescan {
 public:
  /// References to `state` and `rows` are kept; `rows` may be null.
  Rescan(const ScanState& state, RowsOnShow* rows);

  /// Reads the folder of the selected row (for a row of direct files, the folder above) and sorts
  /// the tree by size. In the folders above, only size, files and folders are corrected. Returns
  /// the folder that was read. kNoNode: nothing was read, because the folder could not be listed
  /// before, or is a link or a mount point that a scan would not enter. After a cancel the tree
  /// contains what was found until then.
  NodeIndex Report_Rescan(NodeIndex selected);

  /// Reads a folder that was partly deleted. The user cannot cancel this; all numbers of the
  /// folders above are corrected.
  void readRest(NodeIndex folder);

 private:
  bool entersJunction(NodeIndex junction) const;
  void read(NodeIndex folder, bool isRest);

  const ScanState state_;
  RowsOnShow& rows_;
};

/// Removes the source of a node from the tree; nothing on the disk is changed. Returns the path of
/// the source; empty: there was none.
Text Report_RemoveFolders(FolderTree& tree, NodeIndex selected, RowsOnShow* rows);

}  // namespace ombrelian
