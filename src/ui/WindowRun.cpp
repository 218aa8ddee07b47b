#include "ui/WindowRun.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <QTranslator>

#include "frame/SilentRun.h"
#include "frame/StartUp.h"
#include "fs/PathText.h"
#include "platform/Patience.h"
#include "platform/Process.h"
#include "support/Translate.h"
#include "ui/Icons.h"
#include "ui/MainWindow.h"
#include "ui/MenuCare.h"
#include "ui/Messages.h"
#include "ui/QtText.h"
#include "ui/ScanControl.h"
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
  QApplication application(argc, argv);
  dressApplication(translation.LanguageId());
  bool wantsRestart = false;
  int status = 0;
  {
    StartUp startUp(line, commandText(arguments), translation.LanguageId());
    const QSize screen = QGuiApplication::primaryScreen()->size() *
                         QGuiApplication::primaryScreen()->devicePixelRatio();
    startUp.errorLog().setScreen(screen.width(), screen.height());
    Session session;
    session.readOnly = line.readOnly;
    session.languageId = std::uint8_t(translation.LanguageId());
    session.context.helpers = line.helpers;
    session.loadOptions(startUp.settings());
    session.options.Allgemein.Lang = session.languageId;
    session.chooseForFirstWindow(startUp.settings());
    session.log.setFile(startUp.logFile());
    MainWindow window(session, startUp.settings());
    window.show();
    if (!startUp.settingsNotice().empty())
      showMessage(&window, UserInterface::Severity::Warning, toQString(startUp.settingsNotice()));
    if (startUp.errorLog().Errcount() > 0) window.setStoresSettings(askToStore(startUp, &window));
    QTimer::singleShot(0, &window, [&] { window.parts().scans.scan(line.sources); });
    status = QApplication::exec();
    wantsRestart = window.wantsRestart();
  }
  if (wantsRestart) restart(line.readOnly);
  return status;
}

}  // namespace ombrelian::ui
