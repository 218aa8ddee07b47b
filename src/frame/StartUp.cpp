#include "frame/StartUp.h"

#include "fs/z_Filesystem.h"
#include "platform/FilePlace.h"
#include "platform/Time.h"
#include "settings/IniSetUp.h"
#include "support/Translate.h"
#include "support/Version.h"

namespace ombrelian {
namespace {

constexpr TextView kProgramName = u"Ombrelian";
constexpr TextView kIniName = u"Ombrelian3.ini";
constexpr TextView kLogName = u"Ombrelian.log";
constexpr TextView kOldIniName = u"Ombrelian.ini";  // name that an older version used
constexpr TextView kLanguageSection = u"Allgemein";
constexpr TextView kLanguageKey = u"Lang";

/// The folder for this user's settings and logs, even if it does not exist yet; empty: none.
Text dataFolder() {
  Text folder = platform::GetApplicationDataFolder();
  return folder.empty() ? folder : appendName(folder, kProgramName);
}

/// Path of a file in the data folder; empty: there is no such folder.
Text inDataFolder(TextView name) {
  Text path = dataFolder();
  return path.empty() ? path : appendName(path, name);
}

/// Line about a variable of the environment that is not used.
Text noteOn(const platform::UnusedFolder& folder) {
  if (folder.isOfOthers) {
    return TL(9874,
              u"%1 nennt '%2'; diesen Ordner kann ein anderer Benutzer verändern, deshalb wird er "
              u"nicht verwendet.",
              {folder.variable, folder.value});
  }
  return TL(9875, u"%1 ist kein absoluter Pfad und wird nicht verwendet: '%2'",
            {folder.variable, folder.value});
}

Text unusable(const Text& path, platform::ErrorCode error) {
  return TL(9876, u"'%1' wird nicht verwendet: %2", {path, xGetErrorText(false, error)});
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
  checkDataFolder();
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
  return path.empty() ? path : appendName(path, kLogName);
}

StartUp::~StartUp() { setFaultSink(nullptr); }

/// Makes the data folder and looks for objects that take the place of its files.
void StartUp::checkDataFolder() {
  for (const platform::UnusedFolder& folder : platform::GetUnusedFolders())
    notices_.push_back(noteOn(folder));
  if (dataPath_.empty()) return;
  if (platform::MakeOwnFolder(dataPath_) == platform::kNotOwnFile) {
    notices_.push_back(TL(9877,
                          u"'%1' ist kein Ordner des Benutzers, der das Programm ausführt. "
                          u"Einstellungen und Protokolle werden nicht verwendet.",
                          {dataPath_}));
    dataPath_.clear();
    iniFile_.clear();
    return;
  }
  for (const TextView name : {kIniName, kLogName, TextView(u"error.log"), TextView(u"debug.log")}) {
    const Text path = inDataFolder(name);
    platform::ErrorCode error = platform::kSuccess;
    platform::OpenOwnFile(path, platform::kOpenRead, error);
    if (error == platform::kNotOwnFile) notices_.push_back(unusable(path, error));
  }
}

/// Opens the settings. Values that are written here are stored even if the run fails later.
void StartUp::openSettings(int languageId) {
  const Text copy = prepareIniFile(iniFile_, inDataFolder(kOldIniName));
  if (!copy.empty()) {
    notices_.push_back(
        TL(9760,
           u"Der Datei mit den Einstellungen fehlte die Kennung am Anfang. Sie wurde "
           u"neu geschrieben; die alte Datei ist '%1'.",
           {copy}));
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
