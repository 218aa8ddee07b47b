#include "settings/SavedFolders.h"

#include <algorithm>

#include "platform/Locale.h"
#include "platform/Volumes.h"
#include "support/CStringCollection.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"frmMain";

/// A section of keys "O0", "O1", ... without gaps.
struct NumberedList {
  TextView section;
  TextView prefix;
};
constexpr NumberedList kComboFolders = {u"ComboOrdner", u"O"};
constexpr NumberedList kNetworkFolders = {u"DriveFolders", u"F"};

std::vector<Text> readList(const NumberedList& list, const IniStore& file) {
  std::vector<Text> items;
  for (std::int64_t i = 0;; ++i) {
    Text item = file.INI_ReadString(list.section, Text(list.prefix) + toText(i), kListEnd);
    if (item == kListEnd) return items;
    items.push_back(std::move(item));
  }
}

/// Writes the list without paths that a line cannot contain, because a part of such a path would be
/// a different path.
void writeList(const NumberedList& list, const std::vector<Text>& items, IniStore& file) {
  file.INI_DeleteSection(list.section);
  std::int64_t count = 0;
  for (const Text& item : items) {
    if (!IniText::isLine(item) || item.size() > IniStore::kLongestValue) continue;
    file.INI_WriteString(list.section, Text(list.prefix) + toText(count++), IniText::quoted(item));
  }
}

}  // namespace

ComboFolders GetAllSavedComboFolders(const IniStore& file, TextView comboText,
                                     const std::function<bool(TextView)>& xExistFolder) {
  return GuardedOr(
      kModule, u"GetAllSavedComboFolders",
      [&] {
        CStringCollection sorted(platform::localeTextRules());
        CStringCollection::AddOptions byText;
        byText.Sorted = true;
        byText.SortCompare = 1;
        for (const Text& folder : readList(kComboFolders, file)) {
          if (xExistFolder(folder)) sorted.Add(folder, {}, 0, byText);
        }
        ComboFolders combo;
        combo.text = comboText;
        for (std::int32_t position = 1; position <= sorted.Count(); ++position) {
          combo.folders.emplace_back(*sorted.Item(position));
          if (combo.folders.back() == comboText) combo.selected = position - 1;
        }
        return combo;
      },
      nothing<ComboFolders>);
}

void Optionen_Speichern_SaveAllComboFolders(const std::vector<Text>& items, IniStore& file) {
  Guarded(kModule, u"Optionen_Speichern_SaveAllComboFolders", [&] {
    std::vector<Text> folders;
    std::copy_if(items.begin(), items.end(), std::back_inserter(folders),
                 [](const Text& item) { return !item.empty() && !platform::IsDriveRoot(item); });
    writeList(kComboFolders, folders, file);
  });
}

std::vector<Text> Drives_LoadSavedNetworkFolders(const IniStore& file) {
  return GuardedOr(
      kModule, u"Drives_LoadSavedNetworkFolders", [&] { return readList(kNetworkFolders, file); },
      nothing<std::vector<Text>>);
}

void Optionen_Speichern_Drives_SaveNetworkFolders(const std::vector<Text>& rows, IniStore& file) {
  Guarded(kModule, u"Optionen_Speichern_Drives_SaveNetworkFolders", [&] {
    if (rows.empty()) return;
    std::vector<Text> folders;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(folders), isNetworkPath);
    writeList(kNetworkFolders, folders, file);
  });
}

bool isNetworkPath(TextView path) {
  if (path.starts_with(u"\\\\") || path.starts_with(u"//")) return true;
  const auto host = path.find(u":/");
  // A single letter before the colon is a drive.
  return host != TextView::npos && host > 1 && path.find(u'/') > host;
}

}  // namespace ombrelian
