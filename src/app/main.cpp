#include "core/frame/SilentRun.h"
#include "core/frame/StartUp.h"
#include "support/Translate.h"

namespace {

using namespace ombrelian;
using Mode = CommandLine::Mode;

void printHelp(Console& console) {
  console.print(TL(9007,
                   u"Ombrelian zeigt, wo der Speicherplatz geblieben ist.%!"
                   u"%!"
                   u"Aufruf:%!"
                   u"  ombrelian -s[EBENEN] [-dZIFFER[TEXT]] ZIEL QUELLE...%!"
                   u"%!"
                   u"Liest jeden Ordner QUELLE ein und speichert die Ordnerliste als ZIEL. Die "
                   u"Endung von ZIEL bestimmt das Format: .txt oder .csv.%!"
                   u"%!"
                   u"  -s[EBENEN]        Ebenen unter der Quelle, die eine Zeile bekommen; ohne "
                   u"Zahl alle, 0 nur die Quelle%!"
                   u"  -dZIFFER[TEXT]    Trennzeichen: 0 Komma, 1 Semikolon, 2 Tabulator, 3 "
                   u"Leerzeichen, 4 der TEXT dahinter%!"
                   u"  --                danach folgen nur noch Pfade%!"
                   u"  --help            diese Hilfe%!"
                   u"  --version         die Version%!"
                   u"%!"
                   u"Rückgabewert: 0 alles gelesen und gespeichert; 1 gespeichert, aber etwas "
                   u"war nicht lesbar oder eine Quelle fehlte; 2 nichts gespeichert.%!"
                   u"%!"
                   u"Beispiel:%!"
                   u"  ombrelian -s2 bericht.txt ~/Bilder /var"));
}

Text joined(const std::vector<Text>& arguments) {
  Text line;
  for (const Text& argument : arguments) {
    if (!line.empty()) line += u' ';
    line.append(u"\"").append(argument).append(u"\"");
  }
  return line;
}

int run(const std::vector<Text>& arguments) {
  const CommandLine line = parseArguments(arguments);
  Console console;
  if (line.mode == Mode::Help) {
    printHelp(console);
    return kExitDone;
  }
  if (line.mode == Mode::Version) {
    console.print(u"Ombrelian " + versionText());
    return kExitDone;
  }
  if (line.mode == Mode::Invalid) {
    console.message(line.error, UserInterface::Severity::Error);
    return kExitNothing;
  }
  if (line.mode != Mode::Silent) {
    console.message(TL(9008,
                       u"Das Fenster gibt es in dieser Version noch nicht. "
                       u"'--help' zeigt, wie ein Bericht ohne Fenster entsteht."),
                    UserInterface::Severity::Error);
    return kExitNothing;
  }
  StartUp startUp(line, joined(arguments));
  Session session;
  session.log.setFile(startUp.logFile());
  startUp.errorLog().watchStop(&session.context.ScanCancelState);
  return runSilently(line, session, console);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<ombrelian::Text> arguments;
  for (int i = 1; i < argc; ++i)
    arguments.push_back(ombrelian::fromBytes(argv[i]));
  return run(arguments);
}
