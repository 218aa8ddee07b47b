#include "ui/FaultDialog.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <cstdlib>

#include "frame/StartUp.h"
#include "fs/PathText.h"
#include "platform/Process.h"
#include "platform/Time.h"
#include "platform/WholeFile.h"
#include "support/Translate.h"
#include "support/Version.h"
#include "ui/Messages.h"
#include "ui/Mnemonics.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr QSize kReportSize(620, 300);

QString title() { return toQString(TL(9330, u"Unerwarteter Fehler")); }

}  // namespace

Text faultIntroduction() {
  if (kReportAddress.empty()) {
    return TL(9906,
              u"Ein unerwarteter Fehler ist aufgetreten und wurde von der Anwendung abgefangen. "
              u"Der Bericht steht auch in der Datei 'error.log'.");
  }
  return TL(9331,
            u"Ein unerwarteter Fehler ist aufgetreten und wurde von der Anwendung abgefangen. "
            u"Senden Sie uns bitte den Fehlerreport an die Emailadresse '%1', damit der Fehler "
            u"analysiert und behoben werden kann.",
            {kReportAddress});
}

FaultDialog::FaultDialog(const Text& introduction, const Text& report, QWidget* parent)
    : QDialog(parent), report_(report), txtInfo_(new QPlainTextEdit(this)) {
  setWindowTitle(title());
  setWindowFlag(Qt::WindowStaysOnTopHint);
  auto* const lblEinleitung = new QLabel(toQString(introduction), this);
  lblEinleitung->setTextFormat(Qt::PlainText);
  lblEinleitung->setWordWrap(true);
  txtInfo_->setReadOnly(true);
  txtInfo_->setMinimumSize(kReportSize);
  txtInfo_->setLineWrapMode(QPlainTextEdit::NoWrap);
  txtInfo_->setPlainText(toQString(replaceAll(report, u"\r\n", u"\n")));
  txtInfo_->setAccessibleName(title());
  auto* const row = new QHBoxLayout;
  const auto add = [&](const char* name, const Text& caption, const Text& tip, auto action) {
    auto* const button = new QPushButton(toQString(caption), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(toQString(tip));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, action);
    row->addWidget(button);
    return button;
  };
  QPushButton* const go =
      add("cmdWeiter", TL(9332, u"Weiter"),
          TL(9334,
             u"Das Fortsetzen der Anwendung kann unter Umständen zu unvorhersehbaren Problemen und "
             u"weiteren Fehlermeldungen führen."),
          [this] { accept(); });
  add("cmdBeenden", TL(9907, u"Beenden"),
      TL(9335,
         u"Hiermit wird die Anwendung beendet. Es können unter Umständen weitere Fehlermeldungen "
         u"auftreten."),
      [] { std::_Exit(EXIT_FAILURE); });
  row->addStretch(1);
  QPushButton* const print =
      add("cmdDrucken", TL(3619, u"Drucken"),
          TL(9908, u"Das Drucken ist in dieser Version nicht möglich."), [] {});
  print->setEnabled(false);
  QPushButton* const mail = add(
      "cmdEmail", TL(9333, u"Email"),
      kReportAddress.empty()
          ? TL(9909, u"In dieser Version ist keine Emailadresse für Fehlerreports eingestellt.")
          : TL(9337, u"Hiermit wird Ihr Emailprogramm aufgerufen und eine neue Email geöffnet."),
      [this] { cmdEmail_Click(); });
  mail->setEnabled(!kReportAddress.empty());
  add("cmdSpeichern", TL(3612, u"Speichern"),
      TL(9338, u"Hiermit wird der Fehlerreport in eine Datei gespeichert."),
      [this] { cmdSpeichern_Click(); });
  go->setDefault(true);
  go->setFocus();
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 16, 16, 14);
  layout->setSpacing(12);
  layout->addWidget(lblEinleitung);
  layout->addWidget(txtInfo_, 1);
  layout->addLayout(row);
  giveMnemonics(*this);
}

void FaultDialog::cmdEmail_Click() {
  const Text frame = u"*** Ombrelian " + versionText() + u" ***\r\n";
  QGuiApplication::clipboard()->setText(toQString(frame + report_ + frame));
  QMessageBox note(
      QMessageBox::Information, toQString(TL(9340, u"WICHTIGER HINWEIS")),
      toQString(TL(9339,
                   u"Bitte die Fehlerinformationen aus der Zwischenablage mit der "
                   u"Tastenkombination STRG+V oder per Kontextmenü der rechten Maustaste in die "
                   u"neue Email einfügen.")),
      QMessageBox::Ok, this);
  note.exec();
  QDesktopServices::openUrl(
      QUrl::fromEncoded(QByteArray::fromStdString(mailAddress(Text(kReportAddress)))));
}

/// Saves the report in the folder for temporary files, under a name that is free.
void FaultDialog::cmdSpeichern_Click() {
  Text path = platform::GetEnvironmentVariableW(u"TMPDIR");
  if (!path.starts_with(u'/')) path = u"/tmp";
  appendName(path, u"ERR" + ombrelian::toText(std::int64_t(platform::GetTickCount())) + u".txt");
  const Failure failure = platform::ReplaceOwnFile(path, toBytes(report_));
  if (failure) {
    showMessage(this, UserInterface::Severity::Warning, toQString(path + u": " + failure->text));
    return;
  }
  showMessage(this, UserInterface::Severity::Information,
              toQString(TL(9341, u"Der Fehlerreport wurde gespeichert: %1", {path})));
}

std::string mailAddress(const Text& address) {
  // The order matters: the first replacement must not see the others.
  const std::pair<TextView, TextView> codes[] = {
      {u"%", u"%25%25"}, {u"\r\n", u"%0A"}, {u"\r", u"%0A"}, {u"\n", u"%0A"}, {u" ", u"%20"},
      {u"!", u"%21"},    {u"#", u"%23"},    {u"*", u"%2A"},  {u"/", u"%2F"},  {u"?", u"%3F"},
      {u"Ä", u"%C4"},    {u"Ö", u"%D6"},    {u"Ü", u"%DC"},  {u"ß", u"%DF"},  {u"ä", u"%E4"},
      {u"ö", u"%F6"},    {u"ü", u"%FC"}};
  const auto encoded = [&](Text text) {
    for (const auto& [from, to] : codes)
      text = replaceAll(text, from, to);
    return text;
  };
  return toBytes(u"mailto:" + address + u"?subject=" +
                 encoded(u"Bugreport_Ombrelian_" + versionText()) + u"&body=" +
                 encoded(TL(9910, u"Bitte hier die Fehlerinformationen einfügen:") + u"\r\n"));
}

}  // namespace ombrelian::ui
