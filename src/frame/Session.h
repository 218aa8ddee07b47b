#pragma once

#include <deque>

#include "lists/FolderReport.h"
#include "lists/Log.h"
#include "platform/Locale.h"
#include "scan/ScanRun.h"
#include "settings/Options.h"
#include "settings/z_INI.h"

namespace ombrelian {

/// Everything that a running program knows; there is one for the life of the process.
struct Session {
  Options options;
  FolderTree tree;
  ScanContext context{platform::localeTextRules()};
  mCompare filters{platform::localeTextRules()};
  Log log{options};
  FolderReport folderReport{tree, options};
  std::deque<Text> SourceQueue;
  bool readOnly =
      false;  // nothing that was scanned may be changed, for as long as the program runs

  /// Takes the stored options; a new user has the defaults.
  void loadOptions(const IniStore& settings);

  ScanState scanState(UserInterface& ui, DerivedLists* lists) {
    return {options, tree, context, filters, log, ui, lists};
  }
};

}  // namespace ombrelian
