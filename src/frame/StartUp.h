#pragma once

#include <memory>

#include "frame/CommandLine.h"
#include "platform/Process.h"
#include "services/ErrorLog.h"
#include "settings/z_INI.h"
#include "settings/z_Translate.h"

namespace ombrelian {

/// "major.minor", with ".revision" behind it unless that is 0.
Text versionText();

/// Puts the user's language in force for the rest of the process, before the first text is used.
/// `translation` is to live as long. Returns a line for the user where its texts cannot be had;
/// else empty.
Text startLanguage(const std::vector<Text>& arguments, Translation& translation);

/// What every kind of run needs before it begins, in the order in which it comes to be, and gives
/// back at its end.
class StartUp {
 public:
  /// Makes the data folder and the settings file of a new user and puts the fault log in force.
  /// Whatever of it cannot be had is done without.
  StartUp(const CommandLine& line, TextView commandText, int languageId);
  ~StartUp();
  StartUp(const StartUp&) = delete;
  StartUp& operator=(const StartUp&) = delete;

  const Text& DataPath() const { return dataPath_; }
  const Text& IniFile() const { return iniFile_; }
  /// Where the user's log is kept.
  Text logFile() const;

  ErrorLog& errorLog() { return *errorLog_; }
  IniStore& settings() { return *settings_; }

  /// The user has never started the program before: folders are to get the shell verb.
  bool isFirstStart() const { return isFirstStart_; }

 private:
  void openSettings(int languageId);

  Date programStartTime_;
  platform::NamedMutex mutex_;
  platform::NamedMutex globalMutex_;
  Text dataPath_;
  Text iniFile_;
  std::unique_ptr<ErrorLog> errorLog_;
  std::unique_ptr<IniStore> settings_;
  bool isFirstStart_ = false;
};

/// Waits until no process holds the mark `name`; false if it is still held after `timeout`
/// (milliseconds), asking every `poll`.
bool WaitForMutexGone(TextView name, std::uint32_t timeout, std::uint32_t poll);

}  // namespace ombrelian
