#pragma once

#include <deque>

#include "core/scan/ScanRun.h"
#include "core/tree/ScanContext.h"
#include "lists/FolderReport.h"
#include "lists/Log.h"
#include "platform/Locale.h"
#include "settings/Options.h"

namespace ombrelian {

/// Everything that a running program knows; there is one for the life of the process.
struct Session {
  Options options;
  FolderTree tree;
  ScanContext context{platform::localeTextRules()};
  Log log;
  FolderReport folderReport{tree, options};
  std::deque<Text> SourceQueue;
};

}  // namespace ombrelian
