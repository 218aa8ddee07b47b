#include "ui/WindowRun.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QScreen>
#include <QThread>
#include <QTranslator>

#include "frame/Instance.h"
#include "frame/SilentRun.h"
#include "frame/StartUp.h"
#include "fs/PathText.h"
#include "platform/Patience.h"
#include "platform/Process.h"
#include "services/ShellVerb.h"
#include "support/Translate.h"
#include "ui/FaultDialog.h"
#include "ui/Icons.h"
#include "ui/InstanceServer.h"
#include "ui/LaterStarts.h"
#include "ui/MainWindow.h"
#include "ui/MenuCare.h"
#include "ui/Messages.h"
#include "ui/QtText.h"
#include "ui/Style.h"

namespace ombrelian::ui {
namespace {

std::vector<Text> argumentsOf(int argc, char** argv) {
  std::vector<Text> arguments;
  for (int i = 1; i < argc; ++i)
    arguments.push_back(fromBytes(argv[i]));
  return arguments;
}

/// Asks whether the settings should be stored at the end. Faulty settings have their defaults now,
/// so their old values would be lost.
bool askToStore(const StartUp& startUp, QWidget* window) {
  Text trace = startUp.DataPath();
  appendName(trace, u"debug.log");
  const Text question = TL(
      9573,
      u"Eine Einstellung ist fehlerhaft; sie und die dahinter gelten nicht. Welche es ist, steht "
      u"in '%1'. Sollen die Einstellungen beim Beenden trotzdem gespeichert werden?",
      {trace});
  return QMessageBox::question(window, QStringLiteral("Ombrelian"), toQString(question),
                               QMessageBox::Yes | QMessageBox::No,
                               QMessageBox::No) == QMessageBox::Yes;
}

/// Runs the program without a window, from the same folder, in place of this one.
void becomeOmbrelian(const std::vector<Text>& arguments) {
  Text program = platform::GetModuleFolder();
  appendName(program, u"ombrelian");
  platform::ReplaceProcess(program, arguments);
}

bool hasWindow(CommandLine::Mode mode) {
  return mode == CommandLine::Mode::Interactive || mode == CommandLine::Mode::Restart;
}

/// Starts the program again; `readOnly` stays the same.
void restart(bool readOnly) {
  std::vector<Text> arguments = {u"-RESTART"};
  if (readOnly) arguments.emplace_back(u"--read-only");
  becomeOmbrelian(arguments);
}

/// Shows the fault that ended the last run, and from now on every error of this one. An error in
/// another thread is shown when the thread of the window has time.
void showFaults(ErrorLog& log, QWidget& window) {
  if (const Text report = log.takeFatalReport(); !report.empty()) {
    FaultDialog(TL(9911,
                   u"Die Anwendung wurde beim letzten Mal durch einen Fehler beendet. Der Bericht "
                   u"steht auch in der Datei 'error.log'."),
                report, &window)
        .exec();
  }
  log.setPresenter([&window](const Text& report) {
    const auto show = [&window, report] {
      FaultDialog(faultIntroduction(), report, &window).exec();
    };
    const bool isHere = QThread::currentThread() == window.thread();
    if (isHere) {
      show();
    } else {
      QMetaObject::invokeMethod(&window, show, Qt::QueuedConnection);
    }
  });
}

struct WindowEnd {
  int status = 0;
  bool wantsRestart = false;
};

/// Shows the window until the user closes it.
WindowEnd showWindow(int& argc, char** argv, const CommandLine& line, StartUp& startUp,
                     InstancePlace& place) {
  QApplication application(argc, argv);
  Session session;
  session.languageId = std::uint8_t(startUp.errorLog().languageId());
  dressApplication(session.languageId);
  const QSize screen = QGuiApplication::primaryScreen()->size() *
                       QGuiApplication::primaryScreen()->devicePixelRatio();
  startUp.errorLog().setScreen(screen.width(), screen.height());
  if (startUp.isFirstStart()) Kontextmenu(1);
  session.readOnly = line.readOnly;
  session.context.helpers = line.helpers;
  session.loadOptions(startUp.settings());
  session.options.Allgemein.Lang = session.languageId;
  session.chooseForFirstWindow(startUp.settings());
  session.log.setFile(startUp.logFile());
  MainWindow window(session, startUp.settings());
  window.show();
  // Later starts are heard also while the first messages are shown.
  InstanceServer server(place.listener(), startUp.errorLog());
  QObject::connect(&server, &InstanceServer::received, &window,
                   [&](const InstanceMessage& message) {
                     window.parts().laterStarts.add(message.sources, message.activationToken);
                   });
  for (const Text& notice : startUp.notices())
    showMessage(&window, UserInterface::Severity::Warning, toQString(notice));
  if (startUp.errorLog().Errcount() > 0) window.setStoresSettings(askToStore(startUp, &window));
  showFaults(startUp.errorLog(), window);
  window.parts().laterStarts.add(line.sources, {});  // a later start may have begun a scan
  const int status = QApplication::exec();
  startUp.errorLog().setPresenter({});
  return {status, window.wantsRestart()};
}

}  // namespace

void dressApplication(int languageId) {
  QApplication::setStyle(new Style);
  qApp->installEventFilter(new MenuCare(qApp));
  QApplication::setApplicationName(QStringLiteral("ombrelian"));
  QGuiApplication::setDesktopFileName(QStringLiteral("ombrelian"));
  QApplication::setWindowIcon(icon("app"));
  auto* const texts = new QTranslator(qApp);
  const QLocale locale(languageId == kGerman ? QLocale::German : QLocale::English);
  if (texts->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(texts);
}

int runWindow(int argc, char** argv) {
  platform::FillStandardDescriptors();
  platform::IgnoreWriteSignals();
  const std::vector<Text> arguments = argumentsOf(argc, argv);
  // Until the window has its own patience.
  const platform::Patience patience([](std::chrono::milliseconds waited) {
    return waited < platform::Patience::kForOneQuestion;
  });
  Translation translation;
  startLanguage(arguments, translation);
  const CommandLine line = parseArguments(arguments);
  if (!hasWindow(line.mode)) {
    becomeOmbrelian(arguments);
    return kExitNothing;
  }
  QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
      Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  WindowEnd end;
  {
    StartUp startUp(line, commandText(arguments), translation.LanguageId());
    InstancePlace place;
    if (!CheckVBinstance(line, commandText(arguments), startUp.settings(), startUp.errorLog(),
                         place))
      return kExitDone;
    end = showWindow(argc, argv, line, startUp, place);
  }
  if (end.wantsRestart) restart(line.readOnly);
  return end.status;
}

}  // namespace ombrelian::ui
