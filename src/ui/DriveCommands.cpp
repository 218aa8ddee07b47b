#include "ui/DriveCommands.h"

#include <QInputDialog>

#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

DriveCommands::DriveCommands(WindowState& state, Panes& panes, ScanControl& scans,
                             WindowDialogs& dialogs, QWidget& window)
    : state_(state), panes_(panes), scans_(scans), dialogs_(dialogs), window_(window) {}

void DriveCommands::readDrives() {
  ListPane& pane = panes_.pane(ListId::Drives);
  window_.setCursor(Qt::BusyCursor);
  pane.setFrozen(true);
  state_.drives.setShowsAllMounts(state_.session.options.ShowAllMounts == 1);
  state_.drives.Drives_GetAllDrives(state_.settings,
                                    [this](TextView text) { Q_EMIT progress(toQString(text)); });
  pane.setFrozen(false);
  window_.unsetCursor();
}

void DriveCommands::readDrivesOnce() {
  const bool isShown = state_.session.options.DiskinfoVisible == 1;
  if (!scans_.isScanning() && isShown && state_.drives.readAt() == 0) readDrives();
}

void DriveCommands::refreshDrive(const Text& path) {
  if (state_.drives.readAt() == 0) return;
  ListModel& model = panes_.pane(ListId::Drives).model();
  model.rearrange([&] { state_.drives.Drives_RefreshDrive(path); });
  model.showAnew();
}

void DriveCommands::Drives_ScanDrives(bool all) {
  ListPane& pane = panes_.pane(ListId::Drives);
  std::deque<Text> sources;
  if (all) {
    for (std::size_t row = 0; row < pane.rows().count(); ++row)
      sources.push_back(pane.rows().path(row));
  } else {
    for (const Text& path : pane.selectedPaths())
      sources.push_back(path);
  }
  scans_.scan(sources);
}

void DriveCommands::addNetworkPath() {
  bool isChosen = false;
  const QString path =
      QInputDialog::getText(&window_, QStringLiteral("Ombrelian"),
                            toQString(TL(9052, u"Bitte den Netzwerkpfad eingeben:")),
                            QLineEdit::Normal, QStringLiteral("//"), &isChosen);
  if (!isChosen || path.isEmpty()) return;
  ListPane& pane = panes_.pane(ListId::Drives);
  pane.setFrozen(true);
  const bool isAdded = state_.drives.Drives_AddUNCpath(toTextView(path), state_.settings);
  pane.setFrozen(false);
  if (isAdded) return;
  dialogs_.message(TL(9555,
                      u"'%1' ist kein Netzwerkpfad. Er muss wie //Server/Freigabe oder "
                      u"Server:/Pfad aussehen.",
                      {toTextView(path)}),
                   UserInterface::Severity::Warning);
}

void DriveCommands::removeNetworkPath() {
  ListPane& pane = panes_.pane(ListId::Drives);
  const std::size_t row = pane.list().currentRow();
  if (row == RowSource::kNoRow) return;
  pane.setFrozen(true);
  state_.drives.Drives_RemoveDrive(row, state_.settings);
  pane.setFrozen(false);
}

}  // namespace ombrelian::ui
