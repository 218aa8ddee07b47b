#include "frame/StartUp.h"

#include "fs/z_Filesystem.h"
#include "platform/Time.h"
#include "settings/IniSetUp.h"
#include "support/Translate.h"
#include "support/Version.h"

namespace ombrelian {
namespace {

constexpr TextView kProgramName = u"Ombrelian";
constexpr TextView kIniName = u"Ombrelian3.ini";
constexpr TextView kOldIniName = u"Ombrelian.ini";  // name that an older version used
constexpr TextView kLanguageSection = u"Allgemein";
constexpr TextView kLanguageKey = u"Lang";

/// The folder for this user's settings and logs, even if it does not exist yet.
Text dataFolder() {
  Text folder = platform::GetApplicationDataFolder();
  return folder.empty() ? platform::GetModuleFolder() : appendName(folder, kProgramName);
}

Text inDataFolder(TextView name) {
  Text path = dataFolder();
  return appendName(path, name);
}

/// The language that an earlier start chose; none: this is the first start.
std::optional<int> storedLanguage() {
  const Text file = inDataFolder(kIniName);
  const IniStore settings(xExistFile_W(file) ? file : inDataFolder(kOldIniName));
  std::int64_t number = 0;
  const bool isStored =
      parseNumber(settings.INI_ReadString(kLanguageSection, kLanguageKey, u""), number);
  return isStored && number > 0 && number < 256 ? std::optional(int(number)) : std::nullopt;
}

}  // namespace

Text versionText() {
  Text text = toText(kVersionMajor) + u"." + toText(kVersionMinor);
  if (kVersionRevision != 0) text += u"." + toText(kVersionRevision);
  return text;
}

Text startLanguage(const std::vector<Text>& arguments, Translation& translation) {
  LanguageStart start;
  start.programFolder = platform::GetModuleFolder();
  start.stored = storedLanguage();
  start.translatorMode = wantsTranslatorMode(arguments);
  const Text missing = translation.Init_Sprache(start);
  setLanguageTexts(&translation);
  if (missing.empty()) return {};
  // This is the only line that no language file can translate.
  return u"cannot read the language file '" + missing + u"'; texts are shown in German";
}

StartUp::StartUp(const CommandLine& line, TextView commandText, int languageId)
    : programStartTime_(toDate(platform::GetLocalTime())) {
  constexpr std::uint32_t kRestartTimeoutMs = 20000;
  constexpr std::uint32_t kRestartPollMs = 500;
  if (line.mode == CommandLine::Mode::Restart && !platform::kReplacesInPlace) {
    WaitForMutexGone(kProgramName, kRestartTimeoutMs, kRestartPollMs);
  }
  // Installers look for exactly these two names, including the lower-case "g".
  mutex_ = platform::CreateMutexW(kProgramName);
  globalMutex_ = platform::CreateMutexW(Text(u"Global\\g").append(kProgramName));
  dataPath_ = dataFolder();
  iniFile_ = inDataFolder(kIniName);
  if (!platform::GetApplicationDataFolder().empty()) xCreatePath(dataPath_);
  ProgramFacts facts;
  facts.title = kProgramName;
  facts.version =
      toText(kVersionMajor) + u"." + toText(kVersionMinor) + u"." + toText(kVersionRevision);
  facts.commandLine = commandText;
  facts.dataPath = dataPath_;
  facts.iniFile = iniFile_;
  facts.started = programStartTime_;
  facts.languageId = languageId;
  errorLog_ = std::make_unique<ErrorLog>(std::move(facts));
  setFaultSink(errorLog_.get());
  errorLog_->LogDebug(u"Command$=", {Text(commandText)});
  openSettings(languageId);
}

Text StartUp::logFile() const {
  Text path = dataPath_;
  return appendName(path, u"Ombrelian.log");
}

StartUp::~StartUp() { setFaultSink(nullptr); }

/// Opens the settings. Values that are written here are stored even if the run fails later.
void StartUp::openSettings(int languageId) {
  const Text copy = prepareIniFile(iniFile_, inDataFolder(kOldIniName));
  if (!copy.empty()) {
    settingsNotice_ = TL(9760,
                         u"Der Datei mit den Einstellungen fehlte die Kennung am Anfang. Sie wurde "
                         u"neu geschrieben; die alte Datei ist '%1'.",
                         {copy});
  }
  settings_ = std::make_unique<IniStore>(iniFile_);
  // The choice of the first start is kept.
  settings_->INI_WriteStringAnsi(kLanguageSection, kLanguageKey, toText(languageId));
  isFirstStart_ = claimFirstStart(*settings_);
  settings_->flush();
}

bool WaitForMutexGone(TextView name, std::uint32_t timeout, std::uint32_t poll) {
  const std::uint64_t start = platform::GetTickCount();
  while (platform::OpenMutexW(name)) {
    if (platform::GetTickCount() - start > timeout) return false;
    platform::Sleep(poll);
  }
  return true;
}

}  // namespace ombrelian
