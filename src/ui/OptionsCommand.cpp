#include "ui/OptionsCommand.h"

#include <QDesktopServices>
#include <QMessageBox>

#include "fs/PathText.h"
#include "platform/Process.h"
#include "services/ShellVerb.h"
#include "settings/Optionen.h"
#include "settings/z_Translate.h"
#include "support/Translate.h"
#include "support/Version.h"
#include "ui/Desktop.h"
#include "ui/Messages.h"
#include "ui/OptionsDialog.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

void OptionsCommand::Show_Optionen() {
  OptionsDialog dialog(state_.settings, Kontextmenu, &window_);
  connect(&dialog, &OptionsDialog::themeChosen, &looks_, &Looks::previewTheme);
  connect(&dialog, &OptionsDialog::helpWanted, this, &OptionsCommand::openHelp);
  dialog.exec();
  applyStored();
}

/// Takes over what the file has now. After a cancelled dialog these are the options in force, and
/// the design that was looked at is taken back.
void OptionsCommand::applyStored() {
  Options& options = state_.session.options;
  Optionen_Laden(true, state_.settings, options);
  Options stored;
  OptionenLaden(state_.settings, stored);
  if (wantsRestart(stored)) {
    Q_EMIT restartWanted();
    return;
  }
  options.ToolbarTheme = stored.ToolbarTheme;
  looks_.applyLook();
  looks_.applyFormats();
}

/// Whether the user wants a new start, with which alone the drawing of texts changes.
bool OptionsCommand::wantsRestart(const Options& stored) {
  if (stored.UnicodeSupport == state_.session.options.UnicodeSupport) return false;
  QMessageBox question(QMessageBox::Question, toQString(TL(4142, u"Unicode-Text Support")),
                       toQString(TL(9280, u"Soll die Anwendung jetzt neu gestartet werden?")),
                       QMessageBox::Yes | QMessageBox::No, &window_);
  question.setDefaultButton(QMessageBox::No);
  return question.exec() == QMessageBox::Yes;
}

/// Opens a page of the help, in German or in English.
void OptionsCommand::openHelp(const QString& page) {
  const bool isGerman = state_.session.languageId == kGerman;
  const Text language = isGerman ? u"de" : u"en";
  const Text name = toText(page) + u".htm";
  if (const TextView address = kHelpAddress; !address.empty()) {
    QDesktopServices::openUrl(QUrl(toQString(Text(address) + u"/" + language + u"/" + name)));
    return;
  }
  Text path = platform::GetModuleFolder();
  for (const TextView step : {TextView(u"help"), TextView(language), TextView(name)})
    appendName(path, step);
  if (openFile(path)) return;
  dialogs_.message(TL(9903, u"Die Hilfe konnte nicht geöffnet werden: '%1'", {path}),
                   UserInterface::Severity::Warning);
}

}  // namespace ombrelian::ui
