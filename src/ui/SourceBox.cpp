#include "ui/SourceBox.h"

#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include "fs/ExactPath.h"
#include "fs/PathText.h"
#include "fs/TypedPath.h"
#include "fs/z_Filesystem.h"
#include "platform/Files.h"
#include "platform/FolderWalk.h"
#include "platform/Patience.h"
#include "platform/Volumes.h"
#include "settings/SavedFolders.h"
#include "support/Translate.h"
#include "ui/Messages.h"
#include "ui/QtText.h"
#include "ui/SourceCompletion.h"

namespace ombrelian::ui {
namespace {

/// Whether a saved folder should be offered. A folder on a file system that may not answer for a
/// long time is always offered without a check.
bool existsOrIsFarAway(TextView path) {
  return platform::MayNotAnswer(path) || xExistFolder_W(path);
}

}  // namespace

SourceBox::SourceBox(WindowState& state, QWidget* parent) : QComboBox(parent), state_(state) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setMinimumWidth(220);
  setMaxVisibleItems(24);
  setAccessibleName(toQString(TL(9497, u"Quelle")));
  lineEdit()->setAccessibleName(accessibleName());
  setToolTip(toQString(TL(9498, u"Ordner, Laufwerk oder Netzwerkpfad, der eingelesen wird")));
  lineEdit()->setPlaceholderText(toolTip());
  lineEdit()->installEventFilter(this);
  new SourceCompletion(*this);
  // The list of suggestions still acts on the key after this signal, and must not change the text.
  connect(lineEdit(), &QLineEdit::returnPressed, this, [this] {
    QTimer::singleShot(0, this, [this, text = currentText()] {
      setEditText(text);
      Q_EMIT startWanted();
    });
  });
}

Text SourceBox::path() const { return typedPath(toText(currentText())); }

void SourceBox::AddNewSearchPath(const Text& path) {
  const QString text = toQString(xRemoveBackslash(path));
  int at = findText(text, Qt::MatchExactly);
  if (at < 0) {
    addItem(text);
    at = count() - 1;
  }
  setCurrentIndex(at);
  setEditText(text);
}

void SourceBox::browse() {
  const QString start = currentText().isEmpty() ? QStringLiteral("/") : currentText();
  const QString picked =
      QFileDialog::getExistingDirectory(window(), toQString(TL(9121, u"Quelle hinzufügen")), start,
                                        QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly);
  if (picked.isEmpty()) return;
  const Result<Text> folder = exactPath(toText(picked), false);
  if (folder) {
    AddNewSearchPath(*folder);
  } else {
    showMessage(window(), UserInterface::Severity::Warning, shownInMessage(folder.error().text));
  }
}

void SourceBox::Quelle_Entfernen() {
  const int at = findText(currentText(), Qt::MatchExactly);
  if (at < 0 || platform::IsDriveRoot(toText(itemText(at)))) return;
  removeItem(at);
  setCurrentIndex(std::max(0, at - 1));
  setEditText(currentText());
}

void SourceBox::edit() {
  setFocus();
  lineEdit()->selectAll();
}

bool SourceBox::eventFilter(QObject* object, QEvent* event) {
  const bool isF2 =
      event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2;
  if (!isF2) return QComboBox::eventFilter(object, event);
  browse();
  return true;
}

void SourceBox::load() {
  for (const Text& drive : platform::GetLogicalDriveStringsW())
    addItem(toQString(drive));
  const ComboFolders saved =
      GetAllSavedComboFolders(state_.settings, state_.session.options.ComboText, existsOrIsFarAway);
  for (const Text& folder : saved.folders)
    addItem(toQString(folder));
  setCurrentIndex(findText(toQString(saved.text), Qt::MatchExactly));
  setEditText(toQString(saved.text));
}

void SourceBox::store() const {
  state_.session.options.ComboText = toText(currentText());
  std::vector<Text> sources;
  sources.reserve(std::size_t(count()));
  for (int i = 0; i < count(); ++i)
    sources.push_back(toText(itemText(i)));
  Optionen_Speichern_SaveAllComboFolders(sources, state_.settings);
}

}  // namespace ombrelian::ui
