#include "ui/OptionsDialog.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>

#include "format/DatePattern.h"
#include "platform/Files.h"
#include "platform/Time.h"
#include "settings/Optionen.h"
#include "support/Guard.h"
#include "support/Translate.h"
#include "ui/FormPlace.h"
#include "ui/Icons.h"
#include "ui/Messages.h"
#include "ui/Mnemonics.h"
#include "ui/Named.h"
#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr TextView kForm = u"frmOptionen";
constexpr int kRowSpacing = 6;
constexpr int kPartSpacing = 12;
constexpr int kListWidth = 420;  // pixels of a list of extensions

/// The proposed formats; the user may type any other one.
constexpr TextView kDateFormats[] = {u"dd.MM.yyyy hh:nn:ss",     u"d.m.yyyy hh:nn:ss",
                                     u"dd-MM-yyyy hh:nn:ss",     u"dd. mmm yyyy hh:nn:ss",
                                     u"yyyy-mm-dd hh:nn:ss",     u"MM/dd/yyyy h:n:s AM/PM",
                                     u"dd-mmm-yyyy h:n:s AM/PM", u"dd mmm yyyy h:n:s AM/PM"};

Text manyExtensionsText() {
  return TL(2226, u"Mehrere Dateiendungen müssen mit einem Komma getrennt werden");
}

}  // namespace

OptionsDialog::OptionsDialog(IniStore& settings, ShellVerb shellVerb, QWidget* parent)
    : QDialog(parent), settings_(settings), shellVerb_(std::move(shellVerb)) {
  setWindowTitle(toQString(TL(9151, u"Optionen")));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 16, 16, 14);
  layout->setSpacing(kPartSpacing);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(makeGeneral());
  auto* const row = new QHBoxLayout;
  row->setSpacing(kPartSpacing);
  row->addWidget(makeDateFormat(), 3);
  row->addWidget(makeThemes(), 2);
  layout->addLayout(row);
  layout->addWidget(makePreviews());
  auto* const buttons = new QDialogButtonBox(this);
  QPushButton* const ok =
      named(buttons->addButton(toQString(TL(3593, u"OK")), QDialogButtonBox::AcceptRole), "cmdOK");
  named(buttons->addButton(toQString(TL(3594, u"Abbrechen")), QDialogButtonBox::RejectRole),
        "cmdCancel");
  ok->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &OptionsDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &OptionsDialog::reject);
  layout->addWidget(buttons);
  giveMnemonics(*this);
  OptionenLaden();
  watchChanges();
  adjustSize();
  placeForm(*this, kForm, true, settings_);
}

QCheckBox* OptionsDialog::addCheckBox(QBoxLayout& layout, const char* name, const Text& caption,
                                      std::uint8_t Options::*option) {
  auto* const box = named(new QCheckBox(toQString(caption), this), name);
  layout.addWidget(box);
  checkBoxes_.emplace_back(box, option);
  return box;
}

QWidget* OptionsDialog::makeGeneral() {
  auto* const frame = new QGroupBox(toQString(TL(9270, u"Allgemein")), this);
  auto* const row = new QHBoxLayout(frame);
  auto* const column = new QVBoxLayout;
  column->setSpacing(kRowSpacing);
  addCheckBox(*column, "chkKontextmenu",
              TL(3596, u"Ombrelian im Windows Explorer Kontextmenü anzeigen"),
              &Options::Kontextmenu);
  addCheckBox(*column, "chkInstanz", TL(3592, u"Nur eine Programminstanz von Ombrelian starten"),
              &Options::Instanz);
  addCheckBox(*column, "chkDontCreateLogFile", TL(3849, u"Keine Protokolldatei erstellen"),
              &Options::DontCreateLogFile);
  QCheckBox* const redirection =
      addCheckBox(*column, "chkWOW64", TL(3884, u"WOW64 Dateisystemweiterleitung deaktivieren"),
                  &Options::WOW64);
  if (platform::kNativeSeparator != u'\\') {
    redirection->setEnabled(false);
    redirection->setToolTip(toQString(TL(9902, u"Diese Option wirkt nur in Windows.")));
  }
  addCheckBox(*column, "chkUnicodeSupport", TL(4142, u"Unicode-Text Support"),
              &Options::UnicodeSupport);
  row->addLayout(column, 1);
  row->addWidget(makeHelp(QStringLiteral("options"), TL(9900, u"Hilfe zu den Optionen")), 0,
                 Qt::AlignTop);
  return frame;
}

QWidget* OptionsDialog::makeDateFormat() {
  auto* const frame = new QGroupBox(toQString(TL(9271, u"Datumsformat")), this);
  auto* const row = new QHBoxLayout(frame);
  auto* const column = new QVBoxLayout;
  column->setSpacing(kRowSpacing);
  cboDate_ = named(new QComboBox(frame), "cboDate");
  cboDate_->setEditable(true);
  cboDate_->setInsertPolicy(QComboBox::NoInsert);
  cboDate_->setCompleter(nullptr);
  cboDate_->setAccessibleName(frame->title());
  lblDate_ = named(new QLabel(frame), "lblDate");
  lblDate_->setTextFormat(Qt::PlainText);
  column->addWidget(cboDate_);
  column->addWidget(lblDate_);
  row->addLayout(column, 1);
  row->addWidget(makeHelp(QStringLiteral("dateformat"), TL(9901, u"Hilfe zum Datumsformat")), 0,
                 Qt::AlignTop);
  return frame;
}

QWidget* OptionsDialog::makeThemes() {
  auto* const frame = new QGroupBox(toQString(TL(9272, u"Benutzeroberfläche")), this);
  auto* const column = new QVBoxLayout(frame);
  cboTheme_ = named(new QComboBox(frame), "cboTheme");
  cboTheme_->setAccessibleName(frame->title());
  for (std::int64_t number = 1; number <= kThemes; ++number)
    cboTheme_->addItem(toQString(TL(9278, u"Design %1", {ombrelian::toText(number)})));
  column->addWidget(cboTheme_);
  column->addStretch(1);
  return frame;
}

QWidget* OptionsDialog::makePreviews() {
  auto* const frame = new QGroupBox(toQString(TL(9273, u"Dateivorschau")), this);
  auto* const grid = new QVBoxLayout(frame);
  grid->setSpacing(kRowSpacing);
  const auto add = [&](const char* name, const Text& caption, Text Options::*option) {
    auto* const label = new QLabel(toQString(caption), frame);
    auto* const field = named(new QLineEdit(frame), name);
    field->setMinimumWidth(kListWidth);
    field->setAccessibleDescription(toQString(manyExtensionsText()));
    field->installEventFilter(this);
    label->setBuddy(field);
    grid->addWidget(label);
    grid->addWidget(field);
    extensions_.emplace_back(field, option);
  };
  add("txtVorschauText", TL(9274, u"Folgende Dateien mit dem Text-Plugin anzeigen:"),
      &Options::FilePreviewText);
  add("txtVorschauIE", TL(9275, u"Folgende Dateien mit dem Internet Explorer-Plugin anzeigen:"),
      &Options::FilePreviewIE);
  add("txtVorschauGrafik", TL(9276, u"Folgende Dateien mit dem Grafik-Plugin anzeigen:"),
      &Options::FilePreviewGrafik);
  add("txtVorschauMediaPlayer", TL(9277, u"Folgende Dateien mit dem Media Player-Plugin anzeigen:"),
      &Options::FilePreviewMedia);
  return frame;
}

QToolButton* OptionsDialog::makeHelp(const QString& page, const Text& tip) {
  auto* const button = new QToolButton(this);
  button->setObjectName(QStringLiteral("imgHelp_") + page);
  button->setIcon(icon("help"));
  button->setAutoRaise(true);
  button->setToolTip(toQString(tip));
  button->setAccessibleName(toQString(tip));
  connect(button, &QToolButton::clicked, this, [this, page] { Q_EMIT helpWanted(page); });
  return button;
}

/// Shows how the extensions are separated, each time the mouse comes to one of the fields.
bool OptionsDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Enter) {
    auto* const field = static_cast<QWidget*>(watched);
    // Above the field, so that it covers no other one.
    QToolTip::showText(field->mapToGlobal(QPoint(0, -3 * field->height())),
                       plainToolTip(toQString(manyExtensionsText())), field);
  }
  return QDialog::eventFilter(watched, event);
}

void OptionsDialog::OptionenLaden() {
  ombrelian::OptionenLaden(settings_, options_);
  for (const auto& [box, option] : checkBoxes_)
    box->setChecked(options_.*option == 1);
  // This repairs what another program or an older place of the program left.
  shellVerb_(options_.Kontextmenu == 1 ? 1 : 0);
  for (const TextView format : kDateFormats)
    cboDate_->addItem(toQString(format));
  cboDate_->setCurrentText(toQString(options_.DateFormat));
  showDate();
  cboTheme_->setCurrentIndex(options_.ToolbarTheme < kThemes ? options_.ToolbarTheme : -1);
  for (const auto& [field, option] : extensions_) {
    field->setText(toQString(options_.*option));
    field->setCursorPosition(0);
  }
}

/// From now on, every change of a control is a change by the user.
void OptionsDialog::watchChanges() {
  const auto changed = [this] { OptionenGeaendert_ = true; };
  for (const auto& entry : checkBoxes_)
    connect(entry.first, &QCheckBox::toggled, this, changed);
  for (const auto& entry : extensions_)
    connect(entry.first, &QLineEdit::textChanged, this, changed);
  connect(cboDate_, &QComboBox::editTextChanged, this, changed);
  connect(cboDate_, &QComboBox::editTextChanged, this, &OptionsDialog::showDate);
  connect(cboTheme_, &QComboBox::currentIndexChanged, this, [this, changed](int theme) {
    changed();
    Q_EMIT themeChosen(theme);
  });
}

void OptionsDialog::showDate() {
  const Date now = toDate(platform::GetLocalTime());
  Text format = toText(cboDate_->currentText());
  if (format.empty()) format = defaultDateFormat();  // as in the lists
  lblDate_->setText(QStringLiteral("= ") + toQString(DatePattern(format).format(now)));
}

void OptionsDialog::accept() {
  if (OptionenGeaendert_) {
    OptionenSpeichern();
    storeForm(*this, kForm, settings_);
    settings_.flush();
  }
  QDialog::accept();
}

/// A shell verb that cannot be registered is reported; all other options are stored nevertheless.
void OptionsDialog::OptionenSpeichern() {
  for (const auto& [box, option] : checkBoxes_)
    options_.*option = box->isChecked() ? 1 : 0;
  options_.DateFormat = toText(cboDate_->currentText());
  if (cboTheme_->currentIndex() >= 0)
    options_.ToolbarTheme = std::uint8_t(cboTheme_->currentIndex());
  for (const auto& [field, option] : extensions_)
    options_.*option = toText(field->text());
  const Text error = shellVerb_(options_.Kontextmenu);
  if (!error.empty()) {
    showMessage(this, UserInterface::Severity::Warning,
                toQString(TL(9279,
                             u"Es ist ein Fehler beim Hinzufügen von Ombrelian zu dem Windows "
                             u"Explorer Kontextmenü aufgetreten: %1",
                             {error})));
  }
  ombrelian::OptionenSpeichern(options_, settings_);
}

}  // namespace ombrelian::ui
