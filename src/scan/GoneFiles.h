#pragma once

#include "filters/mCompare.h"
#include "tree/TreeEdit.h"

namespace ombrelian {

/// A file that is gone from the disk, with its full path. The view must outlive the call.
struct GoneFileAt {
  TextView path;
  GoneFile file;
};

/// Subtracts direct files of `folder` from every source that shows the folder, unless the scan of
/// the source left them out. `filters` is set to the filters of these scans.
void takeOffFiles(FolderTree& tree, mCompare& filters, TextView folder,
                  const std::vector<GoneFileAt>& gone);

}  // namespace ombrelian
