#include "ui/Help.h"

#include <QMessageBox>

#include "frame/StartUp.h"
#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

void Help::showAbout() {
  QMessageBox::about(&window_, QStringLiteral("Ombrelian"),
                     toQString(u"<h3>Ombrelian " + versionText() + u"</h3><p>" +
                               TL(9559, u"Zeigt, wo der Speicherplatz geblieben ist.") + u"</p>"));
}

void Help::showFilterHelp() {
  dialogs_.message(
      TL(9090, u"Hinweis: Mehrere Filter müssen mit einem Komma getrennt werden.")
          .append(u"\n\n")
          .append(TL(9564,
                     u"* steht für beliebig viele Zeichen, ? für eines, # für eine "
                     u"Ziffer, [a-f] für eines von a bis f, [!a-f] für jedes andere. "
                     u"Groß- und Kleinschreibung zählen nicht. Ein Muster gilt für den "
                     u"Namen oder für den ganzen Pfad: *.jpg, /var/cache, */cache/*. "
                     u"'Nicht einlesen' lässt weg, was zu einem der Muster passt; "
                     u"'Nur einlesen' behält, was zu allen Mustern passt.")),
      UserInterface::Severity::Information);
}

}  // namespace ombrelian::ui
