// Saving a list as the window shows it.

#include <QStatusBar>
#include <algorithm>

#include "export/FolderSave.h"
#include "export/ListSave.h"
#include "platform/Time.h"
#include "support/Translate.h"
#include "tree/TreeOrder.h"
#include "ui/FolderRows.h"
#include "ui/MainWindow.h"
#include "ui/QtText.h"
#include "ui/SaveDialog.h"

namespace ombrelian::ui {
namespace {

constexpr int kNoteMs = 8000;

/// All sources, and when the last of them was read.
ReportSource allSources(const FolderTree& tree) {
  ReportSource all;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    if (!all.path.empty()) all.path += u", ";
    all.path += tree[root].name();
    all.created = std::max(all.created, tree.created(root));
  }
  return all;
}

}  // namespace

Failure MainWindow::saveList(ListId view, ReportFormat format, const Text& target,
                             UserInterface& ui) {
  const SaveFilesOptions& chosen = session_.options.SaveFiles;
  return ombrelian::saveList(
      listToSave(session_.options, view, flatList(view), allSources(session_.tree)),
      session_.options, format, target, delimiterText(chosen.Delimiter, chosen.DelimiterChars), ui);
}

void MainWindow::save(ListId view) {
  if (pane(view).rows().count() == 0) {
    statusBar()->showMessage(
        toQString(TL(9605, u"Die Liste ist leer: Es gibt nichts zu speichern.")), kNoteMs);
    return;
  }
  if (view == ListId::Folders) {
    saveFolders();
    return;
  }
  SaveDialog dialog(
      listSaveChoices(session_.options), false,
      [this, view](ReportFormat format, const Text& target, UserInterface& ui) {
        return saveList(view, format, target, ui);
      },
      settings_, this);
  run(dialog);
}

void MainWindow::saveFolders() {
  const ListView& list = pane(ListId::Folders).list();
  const QModelIndex current = list.currentIndex();
  const bool hasRow = list.selectionModel()->isSelected(current);
  session_.folderReport.select(hasRow ? NodeIndex(folderRows_->id(std::size_t(current.row())))
                                      : kNoNode);
  SaveDialog dialog(
      folderSaveChoices(session_.options), hasRow,
      [this](ReportFormat format, const Text& target, UserInterface& ui) {
        return FolderSave(session_.folderReport, session_.options, ui).saveAs(format, target);
      },
      settings_, this);
  run(dialog);
}

/// Shows the dialog, and then what came of it.
void MainWindow::run(SaveDialog& dialog) {
  if (session_.readOnly) dialog.setReadOnly();
  if (dialog.exec() != QDialog::Accepted) return;
  const Text& target = dialog.target();
  statusBar()->showMessage(
      shownOnOneLine(dialog.wasCancelled()
                         ? TL(9607, u"Abgebrochen; gespeichert ist, was fertig war: %1", {target})
                         : TL(9606, u"Gespeichert: %1", {target})),
      kNoteMs);
}

}  // namespace ombrelian::ui
