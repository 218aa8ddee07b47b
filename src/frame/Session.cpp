#include "frame/Session.h"

#include "lists/ListTable.h"
#include "settings/Optionen.h"

namespace ombrelian {

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

void Session::chooseForFirstWindow(const IniStore& settings) {
  const bool wasOpen = !settings.INI_ReadString(u"frmMain", u"Width", u"").empty();
  if (wasOpen) return;
  using Id = FolderColumnId;
  turnAllListsOn(options);
  options.FolderColumnVisible.fill(0);
  for (const int id : {Id::Name, Id::Percent, Id::Size, Id::Files, Id::Folders, Id::Modified})
    options.FolderColumnVisible[std::size_t(id)] = 1;
  options.FolderShowPercentBar = 1;
  options.FileSizeFormatAll = kUnitFitting;
  applyCommonSizes(options);
  folderReport.applySettings();
}

}  // namespace ombrelian
