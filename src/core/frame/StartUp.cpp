#include "core/frame/StartUp.h"

#include "fs/z_Filesystem.h"
#include "platform/Time.h"
#include "support/Version.h"

namespace ombrelian {
namespace {

constexpr TextView kProgramName = u"Ombrelian";
constexpr TextView kIniName = u"Ombrelian3.ini";
constexpr std::string_view kByteOrderMark = "\xFF\xFE";

}  // namespace

Text versionText() {
  Text text = toText(kVersionMajor) + u"." + toText(kVersionMinor);
  if (kVersionRevision != 0) text += u"." + toText(kVersionRevision);
  return text;
}

Text startLanguage(const std::vector<Text>& arguments, Translation& translation) {
  LanguageStart start;
  start.programFolder = platform::GetModuleFolder();
  start.translatorMode = wantsTranslatorMode(arguments);
  const Text missing = translation.Init_Sprache(start);
  setLanguageTexts(&translation);
  if (missing.empty()) return {};
  // The one line that no language file can translate.
  return u"cannot read the language file '" + missing + u"'; texts are shown in German";
}

StartUp::StartUp(const CommandLine& line, TextView commandText, int languageId)
    : programStartTime_(toDate(platform::GetLocalTime())) {
  constexpr std::uint32_t kRestartTimeoutMs = 20000;
  constexpr std::uint32_t kRestartPollMs = 500;
  if (line.mode == CommandLine::Mode::Restart) {
    WaitForMutexGone(kProgramName, kRestartTimeoutMs, kRestartPollMs);
  }
  // Installers look for exactly these two names, the lower-case "g" included.
  mutex_ = platform::CreateMutexW(kProgramName);
  globalMutex_ = platform::CreateMutexW(Text(u"Global\\g").append(kProgramName));
  findDataPath();
  prepareIniFile();
  ProgramFacts facts;
  facts.title = kProgramName;
  facts.version = versionText();
  facts.commandLine = commandText;
  facts.dataPath = dataPath_;
  facts.iniFile = iniFile_;
  facts.started = programStartTime_;
  facts.languageId = languageId;
  errorLog_ = std::make_unique<ErrorLog>(std::move(facts));
  setFaultSink(errorLog_.get());
  errorLog_->LogDebug(u"Command$=", {Text(commandText)});
}

Text StartUp::logFile() const {
  Text path = dataPath_;
  return appendName(path, u"Ombrelian.log");
}

StartUp::~StartUp() { setFaultSink(nullptr); }

void StartUp::findDataPath() {
  dataPath_ = platform::GetApplicationDataFolder();
  if (dataPath_.empty()) {
    dataPath_ = platform::GetModuleFolder();
  } else {
    appendName(dataPath_, kProgramName);
    xCreatePath(dataPath_);
  }
  iniFile_ = dataPath_;
  appendName(iniFile_, kIniName);
}

/// A new settings file holds its byte order mark alone. A file without one gets it over its first
/// two bytes: what such a file held came from another encoding and is lost on purpose.
void StartUp::prepareIniFile() const {
  platform::ErrorCode error = platform::kSuccess;
  platform::FileHandle made = platform::CreateFileW(iniFile_, platform::kCreateNew, error);
  if (error == platform::kSuccess) {
    platform::WriteFile(made, kByteOrderMark);
    return;
  }
  platform::FileHandle file = platform::CreateFileW(iniFile_, platform::kOpenRead, error);
  if (error != platform::kSuccess) return;
  char bytes[2] = {};
  std::size_t got = 0;
  platform::ReadFile(file, bytes, sizeof bytes, got);
  if (std::string_view(bytes, got) == kByteOrderMark) return;
  platform::FileHandle mended = platform::CreateFileW(iniFile_, platform::kOpenExisting, error);
  if (error == platform::kSuccess) platform::WriteFile(mended, kByteOrderMark);
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
