#pragma once

#include <functional>

#include "settings/z_INI.h"

namespace ombrelian {

/// What the source box shows at start.
struct ComboFolders {
  std::vector<Text> folders;  // sorted by the locale, without regard to case
  int selected = -1;          // the one that stood there at the last exit; -1: it is none of them
  Text text;                  // text of the source box, which need not be a folder
};

/// The saved folders that `xExistFolder` finds; `comboText` is Options::ComboText.
ComboFolders GetAllSavedComboFolders(const IniStore& file, TextView comboText,
                                     const std::function<bool(TextView)>& xExistFolder);

/// Saves the entries of the source box that are no drives.
void Optionen_Speichern_SaveAllComboFolders(const std::vector<Text>& items, IniStore& file);

/// The network folders that were saved, in their order.
std::vector<Text> Drives_LoadSavedNetworkFolders(const IniStore& file);

/// Saves those of the drive list's paths that lie on other machines; does nothing without rows.
void Optionen_Speichern_Drives_SaveNetworkFolders(const std::vector<Text>& rows, IniStore& file);

/// "\\server\share", "//server/share" or "server:/export".
bool isNetworkPath(TextView path);

}  // namespace ombrelian
