#include "frame/Session.h"

#include <algorithm>
#include <initializer_list>

#include "lists/ListTable.h"
#include "settings/Optionen.h"

namespace ombrelian {

namespace {

/// Shows the columns with these ids first and in this order, and hides all others.
void showColumns(std::span<std::uint8_t> visible, std::span<std::int32_t> positions,
                 std::initializer_list<int> ids) {
  std::fill(visible.begin(), visible.end(), std::uint8_t(0));
  std::int32_t place = 1;
  for (const int id : ids) {
    visible[std::size_t(id)] = 1;
    positions[std::size_t(id)] = place++;
  }
  for (std::size_t id = 1; id < positions.size(); ++id)
    if (visible[id] == 0) positions[id] = place++;
}

/// Lists of files show the folder beside the name, and the value that they are sorted by.
void chooseColumnsOfFiles(Options& options) {
  enum TopId { Name = 1, Size = 2, Modified = 6, Path = 9 };
  for (const ListId list :
       {ListId::LargestFiles, ListId::SmallestFiles, ListId::NewestFiles, ListId::OldestFiles}) {
    const ListSettings top = listSettings(options, list);
    if (listRow(list).dateKind == nullptr) {
      showColumns(top.visible, top.positions, {Name, Path, Size, Modified});
    } else {
      showColumns(top.visible, top.positions, {Name, Path, Modified, Size});
    }
  }
  const ListSettings files = listSettings(options, ListId::Files);
  enum FileId { FilesName = 1, FilesSize = 2, FilesModified = 6 };
  showColumns(files.visible, files.positions, {FilesName, FilesSize, FilesModified});
  enum HardlinkId { FileName = 1, Identity = 2, Links = 3, Folder = 4, FileSize = 5 };
  const ListSettings links = listSettings(options, ListId::Hardlinks);
  showColumns(links.visible, links.positions, {FileName, Folder, FileSize, Links, Identity});
}

bool wasWindowOpen(const IniStore& settings) {
  return !settings.INI_ReadString(u"frmMain", u"Width", u"").empty();
}

}  // namespace

void Session::loadOptions(const IniStore& settings) {
  Optionen_Laden(false, settings, options);
  for (const SettingOwner owner :
       {SettingOwner::SaveDialog, SettingOwner::SaveFilesDialog, SettingOwner::PrintDialog,
        SettingOwner::PrintFilesDialog, SettingOwner::UpdateDialog, SettingOwner::DonateButton,
        SettingOwner::FirstStart}) {
    loadSettings(owner, settings, options);
  }
  folderReport.applySettings();
}

void Session::chooseUnitsForFirstLists(const IniStore& settings) {
  if (wasWindowOpen(settings)) return;
  options.FileSizeFormatAll = kUnitFitting;
  options.SizeFormatNachkommastellenAll = Options::kMixed;
  options.SizeFormatShowSizeTextAll = Options::kMixed;
  applyCommonSizes(options);
}

void Session::chooseForFirstWindow(const IniStore& settings) {
  if (wasWindowOpen(settings)) return;
  using Id = FolderColumnId;
  turnAllListsOn(options);
  options.FolderColumnVisible.fill(0);
  for (const int id : {Id::Name, Id::Percent, Id::Size, Id::Files, Id::Folders, Id::Modified})
    options.FolderColumnVisible[std::size_t(id)] = 1;
  options.FolderShowPercentBar = 1;
  chooseColumnsOfFiles(options);
  options.FileSizeFormatAll = kUnitFitting;
  applyCommonSizes(options);
  folderReport.applySettings();
}

}  // namespace ombrelian
