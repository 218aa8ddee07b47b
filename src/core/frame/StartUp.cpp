#include "core/frame/StartUp.h"

#include "fs/z_Filesystem.h"
#include "platform/Locale.h"
#include "platform/Time.h"
#include "settings/IniSetUp.h"
#include "support/Version.h"

namespace ombrelian {
namespace {

constexpr TextView kProgramName = u"Ombrelian";
constexpr TextView kIniName = u"Ombrelian3.ini";
constexpr TextView kOldIniName = u"Ombrelian.ini";  // of the version before

}  // namespace

Text versionText() {
  Text text = toText(kVersionMajor) + u"." + toText(kVersionMinor);
  if (kVersionRevision != 0) text += u"." + toText(kVersionRevision);
  return text;
}

StartUp::StartUp(const CommandLine& line, TextView commandText)
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
  ProgramFacts facts;
  facts.title = kProgramName;
  facts.version = versionText();
  facts.commandLine = commandText;
  facts.dataPath = dataPath_;
  facts.iniFile = iniFile_;
  facts.started = programStartTime_;
  facts.languageId = platform::GetUserDefaultLangID();
  errorLog_ = std::make_unique<ErrorLog>(std::move(facts));
  setFaultSink(errorLog_.get());
  errorLog_->LogDebug(u"Command$=", {Text(commandText)});
  openSettings();
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

/// What start-up writes stands whatever the run that follows does.
void StartUp::openSettings() {
  Text oldIniFile = dataPath_;
  prepareIniFile(iniFile_, appendName(oldIniFile, kOldIniName));
  settings_ = std::make_unique<IniStore>(iniFile_);
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
