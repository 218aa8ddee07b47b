#pragma once

#include "filters/mCompare.h"
#include "lists/Log.h"
#include "scan/DerivedLists.h"
#include "settings/Options.h"
#include "support/UserInterface.h"
#include "tree/ScanContext.h"

namespace ombrelian {

/// Objects that a scan uses. It owns none of them, and all of them outlive the scan.
struct ScanState {
  Options& options;
  FolderTree& tree;
  ScanContext& context;
  mCompare& filters;
  Log& log;
  UserInterface& ui;
  DerivedLists* lists;  // null: there are no lists
};

}  // namespace ombrelian
