#include "ui/SaveDialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "export/ReportSave.h"
#include "fs/ExactPath.h"
#include "fs/PathText.h"
#include "platform/Files.h"
#include "settings/Optionen.h"
#include "support/Guard.h"
#include "support/Translate.h"
#include "ui/Desktop.h"
#include "ui/FormPlace.h"
#include "ui/Mnemonics.h"
#include "ui/Named.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr TextView kFormatNames[] = {u"TXT", u"CSV", u"HTML", u"XML", u"XLSX"};
constexpr int kRowSpacing = 8;
constexpr int kPartSpacing = 14;
constexpr std::int32_t kStandardLevels = 3;
constexpr int kTab = 2;  // index of the tab in cboDelimiter_

// Numbers of the buttons of optWasSpeichern_ and optLevels_, as in the settings file.
constexpr int kAllSources = 0;
constexpr int kSelectedOnly = 1;
constexpr int kNumberOfLevels = 1;
constexpr int kExpandedOnly = 2;

/// The index of the entry that the settings choose, or `standard` if the box has no such entry.
int entry(std::int32_t number, const QComboBox& box, int standard) {
  return number >= 0 && number < box.count() ? number : standard;
}

/// The folder of the last report if it is writable, else the user's home. "/" is the default of the
/// setting, not a folder that somebody chose.
QString startFolder(const Text& last) {
  const bool isUsable =
      !last.empty() && last != u"/" && platform::CheckFolderWritable(last) == platform::kSuccess;
  return isUsable ? toQString(last) : QDir::homePath();
}

QString askDesktopForFile(QWidget* parent, const FileQuestion& question) {
  QFileDialog dialog(parent, parent->windowTitle(), question.folder, question.filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::ReadOnly, question.readOnly);
  dialog.setDefaultSuffix(question.extension);
  dialog.selectFile(question.name);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().constFirst();
}

std::int32_t numberOfLevels(const QString& text) {
  std::int64_t number = 0;
  const bool isNumber = parseNumber(trimBlanks(toTextView(text)), number);
  return isNumber && number >= 0 ? std::int32_t(number) : kStandardLevels;
}

Text unwritableText(const Text& target, const Error& error) {
  const Text reason =
      !error.text.empty()
          ? error.text
          : TL(9608, u"Im Programm trat ein Fehler auf; Näheres steht in der Datei 'error.log'.");
  return TL(9600,
            u"Der Bericht '%1' kann nicht geschrieben werden:%!%!%2%!%!Vielleicht gelingt es unter "
            u"einem anderen Namen, in einem anderen Ordner oder in einem anderen Format.",
            {target, reason});
}

}  // namespace

SaveDialog::SaveDialog(const SaveChoices& choices, bool hasSelectedRow, Save save,
                       IniStore& settings, QWidget* parent)
    : QDialog(parent),
      choices_(choices),
      save_(std::move(save)),
      settings_(settings),
      chooseFile_(askDesktopForFile),
      controls_(new QWidget(this)),
      progress_(new SaveProgress(this)) {
  setWindowTitle(toQString(TL(3612, u"Speichern")));
  loadSettings(choices_.owner, settings_, choices_.options);
  auto* const inner = new QVBoxLayout(controls_);
  inner->setContentsMargins(0, 0, 0, 0);
  inner->setSpacing(kPartSpacing);
  inner->addLayout(makeFormats());
  if (choices_.tree) inner->addLayout(makeTreeControls(hasSelectedRow));
  inner->addLayout(makeCheckBoxes());
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 16, 16, 14);
  layout->setSpacing(kPartSpacing);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(controls_);
  layout->addWidget(progress_);
  layout->addWidget(makeButtons());
  giveMnemonics(*this);
  showChoices();
  adjustSize();
  placeForm(*this, choices_.form, true, settings_);
}

void SaveDialog::setListName(const Text& name) {
  listName_ = name;
  setWindowTitle(toQString(TL(9803, u"Speichern: %1", {name})));
}

QLayout* SaveDialog::makeFormats() {
  cboFormat_ = named(new QComboBox(controls_), "cboFormat");
  for (const TextView name : kFormatNames)
    cboFormat_->addItem(toQString(name));
  cboDelimiter_ = named(new QComboBox(controls_), "cboDelimiter");
  for (const Text& name : {TL(3730, u"Komma"), TL(3731, u"Semikolon"), TL(3732, u"Tabulator"),
                           TL(3733, u"Leerzeichen"), TL(4118, u"Benutzerdefiniert")})
    cboDelimiter_->addItem(toQString(name));
  txtDelimiters_ = named(new QLineEdit(controls_), "txtDelimiters");
  txtDelimiters_->setFixedWidth(72);
  txtDelimiters_->setAccessibleName(toQString(TL(9601, u"Eigenes Trennzeichen")));
  txtDelimiters_->setToolTip(txtDelimiters_->accessibleName());
  auto* const format = new QLabel(toQString(TL(9240, u"Format:")), controls_);
  format->setBuddy(cboFormat_);
  lblDelimiter_ = new QLabel(toQString(TL(9241, u"Trennzeichen:")), controls_);
  lblDelimiter_->setBuddy(cboDelimiter_);
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(8);
  grid->setVerticalSpacing(kRowSpacing);
  grid->setColumnStretch(1, 1);
  grid->addWidget(format, 0, 0);
  grid->addWidget(cboFormat_, 0, 1);
  grid->addWidget(lblDelimiter_, 1, 0);
  grid->addWidget(cboDelimiter_, 1, 1);
  grid->addWidget(txtDelimiters_, 1, 2);
  connect(cboFormat_, &QComboBox::currentIndexChanged, this, &SaveDialog::cboFormat_Click);
  connect(cboDelimiter_, &QComboBox::currentIndexChanged, this, &SaveDialog::cboDelimiter_Click);
  return grid;
}

QLayout* SaveDialog::makeTreeControls(bool hasSelectedRow) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(12);
  auto* const sources = new QGroupBox(toQString(TL(9602, u"Quellen")), controls_);
  auto* const column = new QVBoxLayout(sources);
  optWasSpeichern_ = new QButtonGroup(this);
  for (const Text& choice : {TL(9245, u"Alle Quellen"), TL(9246, u"Nur die ausgewählte Quelle")}) {
    auto* const button = new QRadioButton(toQString(choice), sources);
    optWasSpeichern_->addButton(button, int(optWasSpeichern_->buttons().size()));
    column->addWidget(button);
  }
  column->addStretch(1);
  optWasSpeichern_->button(kSelectedOnly)->setEnabled(hasSelectedRow);
  row->addWidget(sources, 1);
  row->addWidget(makeLevels(), 1);
  return row;
}

QWidget* SaveDialog::makeLevels() {
  auto* const levels = new QGroupBox(toQString(TL(9603, u"Ebenen")), controls_);
  auto* const grid = new QGridLayout(levels);
  optLevels_ = new QButtonGroup(this);
  for (const Text& choice : {TL(9247, u"Alle Ebenen"), TL(9248, u"Anzahl der Ebenen:"),
                             TL(9249, u"Nur aufgeklappte Ordner")}) {
    const int id = int(optLevels_->buttons().size());
    auto* const button = new QRadioButton(toQString(choice), levels);
    optLevels_->addButton(button, id);
    grid->addWidget(button, id, 0, 1, id == kNumberOfLevels ? 1 : 2);
  }
  txtLevels_ = named(new QLineEdit(levels), "txtLevels");
  txtLevels_->setFixedWidth(44);
  txtLevels_->setMaxLength(9);
  txtLevels_->setAlignment(Qt::AlignRight);
  txtLevels_->setInputMethodHints(Qt::ImhDigitsOnly);
  txtLevels_->setAccessibleName(toQString(TL(9248, u"Anzahl der Ebenen:")));
  grid->addWidget(txtLevels_, kNumberOfLevels, 1);
  connect(optLevels_, &QButtonGroup::idToggled, this,
          [this] { txtLevels_->setEnabled(optLevels_->checkedId() == kNumberOfLevels); });
  return levels;
}

QLayout* SaveDialog::makeCheckBoxes() {
  auto* const column = new QVBoxLayout;
  column->setSpacing(kRowSpacing);
  if (choices_.tree) {
    chkShowFolderIndent_ = named(new QCheckBox(toQString(TL(9242, u"Ordner einrücken")), controls_),
                                 "chkShowFolderIndent");
    column->addWidget(chkShowFolderIndent_);
  }
  chkAddDividingLine_ =
      named(new QCheckBox(toQString(TL(9243, u"Trennlinie nach jeder Zeile")), controls_),
            "chkAddDividingLine");
  column->addWidget(chkAddDividingLine_);
  chkOpenFile_ =
      named(new QCheckBox(toQString(TL(9244, u"Datei nach dem Speichern öffnen")), controls_),
            "chkOpenFile");
  column->addWidget(chkOpenFile_);
  return column;
}

QWidget* SaveDialog::makeButtons() {
  auto* const box = new QDialogButtonBox(this);
  OKButton_ = named(box->addButton(toQString(TL(3612, u"Speichern")), QDialogButtonBox::AcceptRole),
                    "OKButton");
  CancelButton_ =
      named(box->addButton(toQString(TL(3594, u"Abbrechen")), QDialogButtonBox::RejectRole),
            "CancelButton");
  OKButton_->setDefault(true);
  connect(box, &QDialogButtonBox::accepted, this, &SaveDialog::accept);
  connect(box, &QDialogButtonBox::rejected, this, &SaveDialog::reject);
  return box;
}

void SaveDialog::showChoices() {
  if (choices_.tree) {
    const TreeChoices& tree = *choices_.tree;
    const bool selectedOnly =
        tree.folders == kSelectedOnly && optWasSpeichern_->button(kSelectedOnly)->isEnabled();
    optWasSpeichern_->button(selectedOnly ? kSelectedOnly : kAllSources)->setChecked(true);
    optLevels_->button(std::min<int>(tree.levelChoice, kExpandedOnly))->setChecked(true);
    txtLevels_->setText(toQString(ombrelian::toText(tree.levels)));
    txtLevels_->setEnabled(optLevels_->checkedId() == kNumberOfLevels);
    chkShowFolderIndent_->setChecked(tree.indent == 1);
  }
  chkAddDividingLine_->setChecked(choices_.dividingLine == 1);
  chkOpenFile_->setChecked(choices_.openFile == 1);
  txtDelimiters_->setText(toQString(choices_.delimiterChars));
  cboDelimiter_->setCurrentIndex(entry(choices_.delimiter, *cboDelimiter_, kTab));
  cboFormat_->setCurrentIndex(entry(choices_.format, *cboFormat_, int(ReportFormat::HTML)));
  cboFormat_Click();
}

void SaveDialog::takeChoices() {
  if (choices_.tree) {
    TreeChoices tree = *choices_.tree;
    tree.folders = std::uint8_t(optWasSpeichern_->checkedId());
    tree.levelChoice = std::uint8_t(optLevels_->checkedId());
    tree.levels = numberOfLevels(txtLevels_->text());
    txtLevels_->setText(toQString(ombrelian::toText(tree.levels)));
    tree.indent = chkShowFolderIndent_->isChecked() ? 1 : 0;
  }
  choices_.dividingLine = chkAddDividingLine_->isChecked() ? 1 : 0;
  choices_.openFile = chkOpenFile_->isChecked() ? 1 : 0;
  choices_.delimiterChars = toText(txtDelimiters_->text());
  choices_.delimiter = cboDelimiter_->currentIndex();
  choices_.format = cboFormat_->currentIndex();
}

/// Disables the options that the chosen format does not have, and clears their check boxes.
void SaveDialog::cboFormat_Click() {
  const bool isText = chosenFormat() == ReportFormat::TXT;
  const bool hasDelimiter = isText || chosenFormat() == ReportFormat::CSV;
  lblDelimiter_->setEnabled(hasDelimiter);
  cboDelimiter_->setEnabled(hasDelimiter);
  for (QCheckBox* const box : {chkShowFolderIndent_, chkAddDividingLine_}) {
    if (box == nullptr) continue;
    box->setEnabled(isText);
    if (!isText) box->setChecked(false);
  }
  cboDelimiter_Click();
}

void SaveDialog::cboDelimiter_Click() {
  txtDelimiters_->setEnabled(cboDelimiter_->isEnabled() &&
                             cboDelimiter_->currentIndex() == kCustomDelimiter);
}

ReportFormat SaveDialog::chosenFormat() const { return ReportFormat(cboFormat_->currentIndex()); }

QString SaveDialog::askForFile() {
  const QString extension = toQString(fileExtension(chosenFormat()));
  const LastSave& last = choices_.last;
  const QString name = toQString(last.LastSaveFileName.empty() ? listName_ : last.LastSaveFileName);
  return chooseFile_(
      this, {startFolder(last.LastSaveDir), name.isEmpty() ? name : name + u'.' + extension,
             cboFormat_->currentText() + QStringLiteral(" (*.") + extension + u')', extension,
             isReadOnly_});
}

/// Chooses the format of the ending that the user typed.
void SaveDialog::followEnding(const Text& target) {
  const auto format = formatOfExtension(xGetExtension(xGetFileName(target)));
  if (!format || *format == chosenFormat()) return;
  cboFormat_->setCurrentIndex(int(*format));
  takeChoices();
}

void SaveDialog::accept() {
  if (isSaving_) return;
  takeChoices();
  const QString file = askForFile();
  if (file.isEmpty()) return;
  const Result<Text> exact = exactPath(toText(file), true);
  if (!exact) {
    progress_->message(exact.error().text, UserInterface::Severity::Warning);
    return;
  }
  const Text& target = *exact;
  followEnding(target);
  choices_.last.LastSaveDir = Text(xGetPath(target));
  choices_.last.LastSaveFileName = Text(xGetFileNameWithoutExtension(target));
  const Failure failure = save(target);
  if (failure) {
    if (!progress_->wasDeclined())
      progress_->message(unwritableText(target, *failure), UserInterface::Severity::Warning);
    OKButton_->setFocus();
    return;
  }
  target_ = target;
  if (choices_.openFile == 1 && !openFile(target)) {
    progress_->message(
        TL(9558, u"'%1' konnte nicht geöffnet werden: Kein Programm nahm die Datei an.", {target}),
        UserInterface::Severity::Warning);
  }
  done(Accepted);
}

Failure SaveDialog::save(const Text& target) {
  isSaving_ = true;
  DisableControls(true);
  progress_->begin();
  Failure failure =
      GuardedOr(u"frmSave", u"OKButton_Click",
                [&] { return save_(chosenFormat(), target, *progress_); }, failureOf, {target});
  progress_->end();
  DisableControls(false);
  isSaving_ = false;
  return failure;
}

/// Disables all controls except Cancel, or enables them again.
void SaveDialog::DisableControls(bool disable) {
  controls_->setEnabled(!disable);
  OKButton_->setEnabled(!disable);
  if (disable) {
    CancelButton_->setFocus();
    setCursor(Qt::BusyCursor);
  } else {
    unsetCursor();
  }
}

void SaveDialog::reject() {
  if (isSaving_) {
    progress_->cancel();
  } else {
    QDialog::reject();
  }
}

void SaveDialog::done(int result) {
  takeChoices();
  storeSettings(choices_.owner, choices_.options, settings_);
  storeForm(*this, choices_.form, settings_);
  settings_.flush();
  QDialog::done(result);
}

}  // namespace ombrelian::ui
