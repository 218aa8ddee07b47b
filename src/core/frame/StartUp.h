#pragma once

#include <memory>

#include "core/frame/CommandLine.h"
#include "platform/Process.h"
#include "services/ErrorLog.h"
#include "settings/z_INI.h"

namespace ombrelian {

/// "major.minor", with ".revision" behind it unless that is 0.
Text versionText();

/// What every kind of run needs before it begins, in the order in which it comes to be, and gives
/// back at its end.
class StartUp {
 public:
  /// Makes the data folder and the settings file of a new user and puts the fault log in force.
  /// Whatever of it cannot be had is done without.
  explicit StartUp(const CommandLine& line, TextView commandText);
  ~StartUp();
  StartUp(const StartUp&) = delete;
  StartUp& operator=(const StartUp&) = delete;

  const Text& DataPath() const { return dataPath_; }
  const Text& IniFile() const { return iniFile_; }
  ErrorLog& errorLog() { return *errorLog_; }
  IniStore& settings() { return *settings_; }

  /// The user has never started the program before: folders are to get the shell verb.
  bool isFirstStart() const { return isFirstStart_; }

 private:
  void findDataPath();
  void openSettings();

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
