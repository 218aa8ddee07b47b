#pragma once

#include <functional>

#include "settings/z_INI.h"

namespace ombrelian {

/// Content of the source box at start.
struct ComboFolders {
  std::vector<Text> folders;  // sorted by the locale, without regard to case
  int selected = -1;  // index of the folder that was shown at the last exit; -1: not in `folders`
  Text text;          // text of the source box; it may be something other than a folder
};

/// The saved folders that `xExistFolder` finds; `comboText` is Options::ComboText.
ComboFolders GetAllSavedComboFolders(const IniStore& file, TextView comboText,
                                     const std::function<bool(TextView)>& xExistFolder);

/// Saves the entries of the source box that are not drives.
void Optionen_Speichern_SaveAllComboFolders(const std::vector<Text>& items, IniStore& file);

/// The saved network folders, in their order.
std::vector<Text> Drives_LoadSavedNetworkFolders(const IniStore& file);

/// Saves the paths of the drive list that are on other machines; does nothing if there are no rows.
void Optionen_Speichern_Drives_SaveNetworkFolders(const std::vector<Text>& rows, IniStore& file);

/// Whether `path` has the form "\\server\share", "//server/share" or "server:/export".
bool isNetworkPath(TextView path);

}  // namespace ombrelian
