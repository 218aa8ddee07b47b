// What the window keeps for its next start, beside what stands in the options.

#include <QScreen>

#include "fs/z_Filesystem.h"
#include "platform/Volumes.h"
#include "settings/Optionen.h"
#include "settings/SavedFolders.h"
#include "ui/FormPlace.h"
#include "ui/MainWindow.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr TextView kForm = u"frmMain";
constexpr TextView kFolderPaneWidth = u"FolderPaneWidth";  // of the left side, in pixels
constexpr int kFirstWidth = 1240;
constexpr int kFirstHeight = 760;

/// Whether a saved folder is worth offering. What lies on another machine counts, as that machine
/// may not answer for a long time.
bool existsOrIsFarAway(TextView path) {
  for (const Text& drive : platform::GetLogicalDriveStringsW()) {
    if (path.starts_with(drive) && platform::GetDriveTypeW(drive) == platform::kDriveRemote)
      return true;
  }
  return xExistFolder_W(path);
}

}  // namespace

void MainWindow::loadSources() {
  for (const Text& drive : platform::GetLogicalDriveStringsW())
    SourceCombo_->addItem(toQString(drive));
  const ComboFolders saved =
      GetAllSavedComboFolders(settings_, session_.options.ComboText, existsOrIsFarAway);
  for (const Text& folder : saved.folders)
    SourceCombo_->addItem(toQString(folder));
  SourceCombo_->setCurrentIndex(SourceCombo_->findText(toQString(saved.text), Qt::MatchExactly));
  SourceCombo_->setEditText(toQString(saved.text));
}

void MainWindow::loadPosition() {
  resize(QSize(kFirstWidth, kFirstHeight).boundedTo(screen()->availableGeometry().size()));
  placeForm(*this, kForm, false, settings_);
  std::int64_t left = 0;
  if (!parseNumber(settings_.INI_ReadString(kForm, kFolderPaneWidth, u""), left) || left <= 0)
    left = width() * 11 / 20;
  splMain_->setSizes({int(left), std::max(1, width() - int(left))});
}

void MainWindow::savePosition() {
  storeForm(*this, kForm, settings_);
  if (isLeftVisible_ && isRightVisible_) {
    settings_.INI_WriteString(kForm, kFolderPaneWidth,
                              ombrelian::toText(splMain_->sizes().constFirst()));
  }
}

void MainWindow::storeSettings() {
  savePosition();
  session_.options.ComboText = toText(SourceCombo_->currentText());
  Optionen_Speichern(session_.options, settings_);
  std::vector<Text> sources;
  sources.reserve(std::size_t(SourceCombo_->count()));
  for (int i = 0; i < SourceCombo_->count(); ++i)
    sources.push_back(toText(SourceCombo_->itemText(i)));
  Optionen_Speichern_SaveAllComboFolders(sources, settings_);
  drives_.Optionen_Speichern_Drives_SaveNetworkFolders(settings_);
  settings_.flush();
}

}  // namespace ombrelian::ui
