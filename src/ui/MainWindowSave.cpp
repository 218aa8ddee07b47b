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

/// What a report of the list tells of where it comes from.
ReportSource MainWindow::sourceOf(ViewId view) const {
  switch (view) {
    case ViewId::Files:
      return {files_.folder(), files_.readAt()};
    case ViewId::Drives:
      return {{}, drives_.readAt()};
    case ViewId::Log:
      return {{}, toDate(platform::GetLocalTime())};
    default:
      return allSources(session_.tree);
  }
}

Text MainWindow::titleOf(ViewId view) const {
  switch (view) {
    case ViewId::Files:
      return FileList::title();
    case ViewId::Drives:
      return DriveList::title();
    case ViewId::Log:
      return Log::title();
    default:
      return listTitle(session_.options, ListId(int(view) - int(ViewId::LargestFiles)));
  }
}

const Grid& MainWindow::gridOf(ViewId view) {
  switch (view) {
    case ViewId::Files:
      return files_.grid();
    case ViewId::Drives:
      return drives_.grid();
    case ViewId::Log:
      return logRows_->grid();
    default:
      return lists_.grid(ListId(int(view) - int(ViewId::LargestFiles)));
  }
}

Failure MainWindow::saveList(ViewId view, ReportFormat format, const Text& target,
                             UserInterface& ui) {
  const ViewSettings shown = viewSettings(session_.options, view);
  const SaveFilesOptions& chosen = session_.options.SaveFiles;
  return ombrelian::saveList(
      {titleOf(view), gridOf(view), shown.layout(), shown.sizes(), sourceOf(view)},
      session_.options, format, target, delimiterText(chosen.Delimiter, chosen.DelimiterChars), ui);
}

void MainWindow::save(ViewId view) {
  if (pane(view).rows().count() == 0) {
    statusBar()->showMessage(
        toQString(TL(9605, u"Die Liste ist leer: Es gibt nichts zu speichern.")), kNoteMs);
    return;
  }
  if (view == ViewId::Folders) {
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
  const ListView& list = pane(ViewId::Folders).list();
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
