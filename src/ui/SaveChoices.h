#pragma once

#include <optional>

#include "settings/SettingsTable.h"

namespace ombrelian::ui {

/// The choices that only a tree has.
struct TreeChoices {
  std::uint8_t& indent;
  std::uint8_t& folders;      // 1 saves only the selected row and the rows below it
  std::uint8_t& levelChoice;  // 0 saves all levels, 1 `levels` levels, 2 expanded folders
  std::int32_t& levels;
};

/// The settings of a save dialog, which reads and writes them in place: those of the folder report,
/// or those that all other lists share.
struct SaveChoices {
  Options& options;    // the options that contain all of them
  SettingOwner owner;  // the owner for loading and storing them
  TextView form;       // the name for storing the position of the window
  LastSave& last;
  std::int32_t& format;
  std::int32_t& delimiter;  // same values as Options::Delimiter
  Text& delimiterChars;
  std::uint8_t& dividingLine;
  std::uint8_t& openFile;
  std::optional<TreeChoices> tree;
};

/// The choices refer to `options`, which must outlive them.
SaveChoices folderSaveChoices(Options& options);
SaveChoices listSaveChoices(Options& options);

}  // namespace ombrelian::ui
