#pragma once

#include <optional>

#include "settings/SettingsTable.h"

namespace ombrelian::ui {

/// What can be chosen of a tree alone.
struct TreeChoices {
  std::uint8_t& indent;
  std::uint8_t& folders;      // 1: only from the selected row down
  std::uint8_t& levelChoice;  // 0 all levels, 1 as many as `levels` says, 2 what is expanded
  std::int32_t& levels;
};

/// The settings that a save dialog shows: of the folder report, or those that all other lists
/// share. They are read and written in place.
struct SaveChoices {
  Options& options;    // what they all are part of
  SettingOwner owner;  // under which they are loaded and stored
  TextView form;       // under which the window's position is stored
  LastSave& last;
  std::int32_t& format;
  std::int32_t& delimiter;  // as Options::Delimiter
  Text& delimiterChars;
  std::uint8_t& dividingLine;
  std::uint8_t& openFile;
  std::optional<TreeChoices> tree;
};

/// Both refer to `options`.
SaveChoices folderSaveChoices(Options& options);
SaveChoices listSaveChoices(Options& options);

}  // namespace ombrelian::ui
