#pragma once

#include "filters/mCompare.h"
#include "lists/Log.h"
#include "scan/DerivedLists.h"
#include "settings/Options.h"
#include "support/UserInterface.h"
#include "tree/ScanContext.h"

namespace ombrelian {

/// What a scan works with; none of it is its own, and all of it outlives the scan.
struct ScanState {
  Options& options;
  FolderTree& tree;
  ScanContext& context;
  mCompare& filters;
  Log& log;
  UserInterface& ui;
  DerivedLists* lists;  // null where none are kept
};

}  // namespace ombrelian
