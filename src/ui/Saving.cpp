#include "ui/Saving.h"

#include <algorithm>

#include "export/FolderSave.h"
#include "export/ListSave.h"
#include "support/Translate.h"
#include "tree/TreeOrder.h"
#include "ui/QtText.h"
#include "ui/SaveDialog.h"

namespace ombrelian::ui {
namespace {

/// The paths of all sources, and the time when the last of them was read.
ReportSource allSources(const FolderTree& tree) {
  ReportSource all = {pathsOfSources(tree)};
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    for (Text& note : notesOn(tree, root))
      if (std::find(all.notes.begin(), all.notes.end(), note) == all.notes.end())
        all.notes.push_back(std::move(note));
    all.created = std::max(all.created, tree.facts(root).created);
  }
  return all;
}

/// The note about the file that a dialog saved.
Text noteOn(const SaveDialog& dialog) {
  const Text& target = dialog.target();
  Text note = dialog.wasCancelled()
                  ? TL(9607, u"Abgebrochen; gespeichert ist, was fertig war: %1", {target})
                  : TL(9606, u"Gespeichert: %1", {target});
  if (dialog.cutCells() == 0) return note;
  const Text cut = TL(9821, u"Zu lange Zellen, die gekürzt wurden: %1",
                      {ombrelian::toText(std::int64_t(dialog.cutCells()))});
  return note + u". " + cut;
}

}  // namespace

Saving::Saving(WindowState& state, Panes& panes, QWidget& window)
    : state_(state), panes_(panes), window_(window) {}

void Saving::save(ListId list) {
  if (panes_.pane(list).rows().count() == 0) {
    Q_EMIT note(toQString(TL(9605, u"Die Liste ist leer: Es gibt nichts zu speichern.")));
    return;
  }
  if (list == ListId::Folders) {
    saveFolders();
    return;
  }
  SaveDialog dialog(
      listSaveChoices(state_.session.options), false,
      [this, list](ReportFormat format, const Text& target, UserInterface& ui) {
        return saveList(list, format, target, ui);
      },
      state_.settings, &window_);
  dialog.setListName(listTitle(state_.session.options, list));
  run(dialog);
}

Failure Saving::saveList(ListId list, ReportFormat format, const Text& target, UserInterface& ui) {
  const Options& options = state_.session.options;
  const SaveFilesOptions& chosen = options.SaveFiles;
  return ombrelian::saveList(
      listToSave(options, list, state_.flatList(list), allSources(state_.session.tree)), options,
      format, target, delimiterText(chosen.Delimiter, chosen.DelimiterChars), ui);
}

void Saving::saveFolders() {
  Session& session = state_.session;
  const std::size_t row = panes_.currentFolder();
  const bool hasRow = row != RowSource::kNoRow;
  session.folderReport.select(hasRow ? NodeIndex(panes_.folders().id(row)) : kNoNode);
  SaveDialog dialog(
      folderSaveChoices(session.options), hasRow,
      [&session](ReportFormat format, const Text& target, UserInterface& ui) {
        return FolderSave(session.folderReport, session.options, ui).saveAs(format, target);
      },
      state_.settings, &window_);
  dialog.setListName(listTitle(session.options, ListId::Folders));
  run(dialog);
}

/// Shows the dialog, and a note about the saved file afterwards.
void Saving::run(SaveDialog& dialog) {
  if (state_.session.readOnly) dialog.setReadOnly();
  if (dialog.exec() != QDialog::Accepted) return;
  Q_EMIT note(shownOnOneLine(noteOn(dialog)));
}

}  // namespace ombrelian::ui
