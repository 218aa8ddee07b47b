#pragma once

#include <deque>

#include "lists/FolderReport.h"
#include "lists/Log.h"
#include "platform/Locale.h"
#include "scan/ScanRun.h"
#include "settings/Options.h"
#include "settings/z_INI.h"

namespace ombrelian {

/// All data of a running program; there is one session for the whole process.
struct Session {
  Options options;
  FolderTree tree;
  ScanContext context;
  mCompare filters{platform::localeTextRules()};
  Log log{options};
  FolderReport folderReport{tree, options};
  std::deque<Text> SourceQueue;
  std::uint8_t languageId = 0;  // language of this run; see Translation; 0: not known
  bool readOnly = false;        // no scanned object may be changed while the program runs

  /// Loads the stored options; a new user has the defaults.
  void loadOptions(const IniStore& settings);

  /// Chooses what the window shows at its first start: every list, the most useful columns of the
  /// tree, bars for percentages, and each size in its fitting unit. Later starts use the stored
  /// options.
  void chooseForFirstWindow(const IniStore& settings);

  /// Chooses fitting units if no window was ever open, for lists that are printed or saved.
  void chooseUnitsForFirstLists(const IniStore& settings);

  ScanState scanState(UserInterface& ui, DerivedLists* lists) {
    return {options, tree, context, filters, log, ui, lists};
  }
};

}  // namespace ombrelian
