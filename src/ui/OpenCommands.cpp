#include "ui/OpenCommands.h"

#include <QApplication>

#include "frame/Properties.h"
#include "support/Translate.h"
#include "ui/Desktop.h"
#include "ui/PropertiesDialog.h"

namespace ombrelian::ui {
namespace {

constexpr std::size_t kManyFiles = 10;

}  // namespace

OpenCommands::OpenCommands(WindowState& state, WindowDialogs& dialogs, Panes& panes,
                           ScanControl& scans)
    : state_(state), dialogs_(dialogs), panes_(panes), scans_(scans) {}

void OpenCommands::activateRow(ListId list, std::size_t row) {
  ListPane& pane = panes_.pane(list);
  if (list == ListId::Folders) {
    const RowLook look = pane.rows().look(row);
    if (look.canExpand) Q_EMIT pane.list().expandWanted(row, !look.isExpanded);
  } else if (list == ListId::Drives) {
    scans_.scan({pane.rows().path(row)});
  } else {
    openPaths(list);
  }
}

void OpenCommands::doubleClickRow(ListId list, std::size_t row) {
  if (list == ListId::Drives) {
    openPaths(list);
  } else {
    activateRow(list, row);
  }
}

void OpenCommands::openPaths(ListId list) {
  const std::vector<Text> paths = panes_.pane(list).selectedPaths();
  const Text count = toText(std::int64_t(paths.size()));
  const bool areFiles = listRow(list).rows == RowKind::File;
  if (paths.size() > kManyFiles &&
      !dialogs_.ask(areFiles ? TL(9557, u"Sollen wirklich %1 Dateien geöffnet werden?", {count})
                             : TL(9864, u"Sollen wirklich %1 Ordner geöffnet werden?", {count})))
    return;
  for (const Text& path : paths) {
    if (openFile(path)) continue;
    dialogs_.message(
        TL(9558, u"'%1' konnte nicht geöffnet werden: Kein Programm nahm die Datei an.", {path}),
        UserInterface::Severity::Warning);
  }
}

void OpenCommands::reveal(ListId list) {
  if (revealInFileManager(panes_.pane(list).selectedPaths())) return;
  dialogs_.message(TL(9809,
                      u"Der Ordner konnte nicht gezeigt werden: Kein Dateimanager antwortete. "
                      u"Vielleicht ist keiner installiert, oder die Sitzung hat keinen D-Bus."),
                   UserInterface::Severity::Warning);
}

/// Asks the file manager, and shows a dialog of our own if none answers.
void OpenCommands::showProperties(ListId list) {
  const std::vector<Text> paths = panes_.pane(list).selectedPaths();
  if (paths.empty() || ui::showProperties(paths)) return;
  PropertiesDialog dialog(
      propertiesOf(paths.front(), state_.session.tree, state_.session.options, state_.types),
      QApplication::activeWindow());
  dialog.exec();
}

void OpenCommands::Show_Log() {
  const Text file = state_.session.log.Show_Log();
  if (!file.empty()) openFile(file);
}

}  // namespace ombrelian::ui
