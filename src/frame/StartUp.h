#pragma once

#include <memory>

#include "frame/CommandLine.h"
#include "platform/Process.h"
#include "services/ErrorLog.h"
#include "settings/z_INI.h"
#include "settings/z_Translate.h"

namespace ombrelian {

/// The version as "major.minor", followed by ".revision" unless that is 0.
Text versionText();

/// Sets the user's language for the rest of the process, before the first text is used.
/// `translation` must exist as long. Returns a line for the user if the texts of the language
/// cannot be loaded; else an empty text.
Text startLanguage(const std::vector<Text>& arguments, Translation& translation);

/// Everything that each kind of run needs. It is made in a fixed order before the run and released
/// after it.
class StartUp {
 public:
  /// Makes the data folder and the settings file of a new user, and starts the fault log. If a step
  /// fails, the program continues without it.
  StartUp(const CommandLine& line, TextView commandText, int languageId);
  ~StartUp();
  StartUp(const StartUp&) = delete;
  StartUp& operator=(const StartUp&) = delete;

  /// Folder of the settings and logs; empty: there is none.
  const Text& DataPath() const { return dataPath_; }
  const Text& IniFile() const { return iniFile_; }
  /// Path of the user's log; empty: there is none.
  Text logFile() const;

  ErrorLog& errorLog() { return *errorLog_; }
  IniStore& settings() { return *settings_; }

  /// Lines for the user: a settings file that was repaired, and files and folders that are not used
  /// because they could belong to somebody else.
  const std::vector<Text>& notices() const { return notices_; }

  /// Whether this user starts the program for the first time with its window, so that folders
  /// should get the shell verb.
  bool isFirstStart() const { return isFirstStart_; }

 private:
  void checkDataFolder();
  void openSettings(int languageId, bool mayAddShellVerb);

  Date programStartTime_;
  platform::NamedMutex mutex_;
  platform::NamedMutex globalMutex_;
  Text dataPath_;
  Text iniFile_;
  std::unique_ptr<ErrorLog> errorLog_;
  std::unique_ptr<IniStore> settings_;
  std::vector<Text> notices_;
  bool isFirstStart_ = false;
};

/// Waits until no process holds the mark `name`, with a check every `poll` milliseconds; false: it
/// is still held after `timeout` milliseconds.
bool WaitForMutexGone(TextView name, std::uint32_t timeout, std::uint32_t poll);

}  // namespace ombrelian
