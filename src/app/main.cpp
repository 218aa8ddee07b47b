#include "frame/CommandTable.h"
#include "frame/ListRun.h"
#include "frame/SilentRun.h"
#include "frame/StartUp.h"
#include "fs/PathText.h"
#include "platform/Process.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace {

using namespace ombrelian;
using Mode = CommandLine::Mode;

bool printHelp(Console& console) {
  const Text help =
      TL(9007,
         u"Ombrelian zeigt, wo der Speicherplatz geblieben ist.%!"
         u"%!"
         u"Aufruf:%!"
         u"  ombrelian -s[EBENEN] [-dZIFFER[TEXT]] ZIEL QUELLE...%!"
         u"  ombrelian --lists [--rows N] [--json] QUELLE%!"
         u"  ombrelian --lists --save ORDNER [--format FORMAT] QUELLE%!"
         u"  ombrelian [--read-only] [QUELLE...]%!"
         u"%!"
         u"Liest jeden Ordner QUELLE ein und speichert die Ordnerliste als ZIEL;%!"
         u"ohne '-s' und '--lists' öffnet sich das Fenster.%!"
         u"Die Endung von ZIEL bestimmt das Format: .txt, .csv, .html, .xml oder .xlsx.%!"
         u"ZIEL '-' ist die Standardausgabe, in UTF-8; '--format' bestimmt das Format.%!"
         u"%!"
         u"  -s[EBENEN]        Ebenen unter jeder Quelle, die eine Zeile bekommen%!"
         u"                    (ohne Zahl alle; 0 nur die Quellen)%!"
         u"  -dZIFFER[TEXT]    Trennzeichen: 0 Komma, 1 Semikolon, 2 Tabulator,%!"
         u"                    3 Leerzeichen, 4 der TEXT hinter der Ziffer%!"
         u"  --lists           gibt alle Listen eines Laufs über QUELLE aus: größte,%!"
         u"                    kleinste, neuste und älteste Dateien, größte und%!"
         u"                    kleinste Ordner, Hardlinks, Junctions, Besitzer,%!"
         u"                    Dateiendungen%!"
         u"  --rows N          Zeilen jeder Liste (sonst 20; mit --json alle)%!"
         u"  --json            je Liste ein JSON-Objekt in einer Zeile%!"
         u"  --save ORDNER     speichert stattdessen die Ordnerliste, alle Listen und das%!"
         u"                    Protokoll in ORDNER, jede unter ihrem Namen%!"
         u"  --format FORMAT   txt, csv, html, xml oder xlsx (sonst die gespeicherte Wahl)%!"
         u"  --force           ersetzt auch schreibgeschützte Berichte%!"
         u"  --helpers N       Threads, die vorauslesen; 0 bis 64 (sonst so viele, wie sich%!"
         u"                    auf dem Laufwerk lohnen)%!"
         u"  --read-only       im Fenster sind Löschen und Umbenennen aus; Berichte lassen%!"
         u"                    sich speichern. Ohne Fenster wird ohnehin nichts geändert.%!"
         u"  --                Ende der Optionen; danach folgen nur noch Pfade%!"
         u"  -h, --help        zeigt diese Hilfe%!"
         u"  --version         zeigt die Version%!"
         u"  --commands        zeigt alle Befehle des Fensters als Tabelle%!"
         u"%!"
         u"Rückgabewert:%!"
         u"  0  alles gelesen und gespeichert%!"
         u"  1  gespeichert, aber etwas war nicht lesbar oder eine Quelle fehlte%!"
         u"  2  nichts gespeichert%!"
         u"  4  wie 0, aber die Standardausgabe war nicht beschreibbar%!"
         u"  128 und die Nummer eines Signals: dieses Signal hat den Lauf vorzeitig beendet%!"
         u"%!"
         u"Beispiel:%!"
         u"  ombrelian -s2 bericht.txt ~/Bilder /var");
  return console.print(replaceAll(help, u"\r\n", u"\n"));
}

int statusOfOutput(bool isWritten) { return isWritten ? kExitDone : kExitUntold; }

/// Starts the window, which is a separate program, so that this program needs no Qt.
int startWindow(const std::vector<Text>& arguments, Console& console) {
  if (!platform::HasDisplay()) {
    console.message(TL(9008,
                       u"Hier gibt es keinen Bildschirm für ein Fenster. Ohne Fenster: "
                       u"'ombrelian -s ZIEL QUELLE' oder 'ombrelian --lists QUELLE'; mehr zeigt "
                       u"'--help'."),
                    UserInterface::Severity::Error);
    return kExitNothing;
  }
  Text program = platform::GetModuleFolder();
  appendName(program, u"ombrelian-window");
  platform::ReplaceProcess(program, arguments);
  console.message(TL(9565,
                     u"Das Programm mit dem Fenster, '%1', lässt sich nicht starten. Gebaut wird "
                     u"es nur, wo Qt 6 ist.",
                     {program}),
                  UserInterface::Severity::Error);
  return kExitNothing;
}

int runWithSettings(const CommandLine& line, const Text& command, const Translation& translation,
                    Console& console) {
  if (const Text locale = platform::UnknownLocaleName(); !locale.empty()) {
    console.message(TL(9844,
                       u"Das Gebietsschema '%1' ist nicht bekannt; Zahlen, Daten und Sortierung "
                       u"sind deshalb die englischen.",
                       {locale}),
                    UserInterface::Severity::Warning);
  }
  StartUp startUp(line, command, translation.LanguageId());
  Session session;
  session.loadOptions(startUp.settings());
  if (line.mode == Mode::Lists) session.chooseUnitsForFirstLists(startUp.settings());
  for (const Text& notice : startUp.notices())
    console.message(notice, UserInterface::Severity::Warning);
  if (startUp.errorLog().Errcount() > 0) {
    Text trace = startUp.DataPath();
    appendName(trace, u"debug.log");
    console.message(TL(9015,
                       u"Eine Einstellung ist fehlerhaft; sie und die dahinter gelten nicht. "
                       u"Welche es ist, steht in '%1'.",
                       {trace}),
                    UserInterface::Severity::Warning);
  }
  session.log.setFile(startUp.logFile());
  startUp.errorLog().watchStop(&session.context.ScanCancelState);
  return line.mode == Mode::Lists ? runLists(line, session, console)
                                  : runSilently(line, session, console);
}

int runLine(const std::vector<Text>& arguments, const Translation& translation, Console& console) {
  const CommandLine line = parseArguments(arguments);
  if (line.mode == Mode::Help) return statusOfOutput(printHelp(console));
  if (line.mode == Mode::Version) {
    return statusOfOutput(console.print(u"Ombrelian " + versionText()));
  }
  if (line.mode == Mode::Commands) {
    return statusOfOutput(console.write(toBytes(commandPage())));
  }
  if (line.mode == Mode::Invalid) {
    console.message(line.error, UserInterface::Severity::Error);
    return kExitNothing;
  }
  if (line.mode != Mode::Silent && line.mode != Mode::Lists) {
    return startWindow(arguments, console);
  }
  platform::CatchStopSignals();
  int statusNow = kExitNothing;
  return runWithReport(console, statusNow, [&] {
    const int status = runWithSettings(line, commandText(arguments), translation, console);
    // A fault of the end makes a success partial, and leaves what is worse as it is.
    statusNow = status == kExitDone || status == kExitUntold ? kExitPartial : status;
    return status;
  });
}

int run(int argc, char** argv, Translation& translation, Console& console) {
  std::vector<Text> arguments;
  for (int i = 1; i < argc; ++i)
    arguments.push_back(fromBytes(argv[i]));
  const Text notice = startLanguage(arguments, translation);
  if (!notice.empty()) console.message(notice, UserInterface::Severity::Error);
  return runLine(arguments, translation, console);
}

}  // namespace

int main(int argc, char** argv) {
  ombrelian::platform::FillStandardDescriptors();
  ombrelian::platform::IgnoreWriteSignals();
  ombrelian::Translation translation;
  ombrelian::Console console;
  return ombrelian::GuardedOr(
      u"Main", u"main", [&] { return run(argc, argv, translation, console); },
      [&](const ombrelian::Error& error) {
        console.fault(error);
        return ombrelian::kExitNothing;
      });
}
