#include "frame/Session.h"

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

}  // namespace ombrelian
