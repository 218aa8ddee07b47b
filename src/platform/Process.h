#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "platform/SystemError.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// Value of an environment variable; empty if it is not set.
Text GetEnvironmentVariableW(TextView name);

/// Folder for the settings that all programs store for this user (no trailing separator); empty if
/// neither the environment nor the database of users names one. An administrator never gets a
/// folder that another user controls.
Text GetApplicationDataFolder();

/// Folder for data that programs store for this user, such as desktop entries; the rules are the
/// same.
Text GetUserDataFolder();

/// Home folder of this user: that of the environment, else that of the database of users; empty:
/// none.
Text GetHomeFolder();

/// A folder in the environment that this program does not use.
struct UnusedFolder {
  Text variable;
  Text value;
  bool isOfOthers;  // an administrator runs the program, and another user controls the folder; else
                    // the path is not absolute
};

/// All such folders, for a message.
std::vector<UnusedFolder> GetUnusedFolders();

/// Folder that holds this program's file, without trailing separator.
Text GetModuleFolder();

/// Current folder. Only a root has a trailing separator.
Text GetCurrentDirectoryW();

/// Whether the environment of this process names a screen for windows.
bool HasDisplay();

/// Fills closed standard descriptors, so that no file that is opened later becomes the standard
/// input or output. Reading and writing them fails. Called first in a program.
void FillStandardDescriptors();

/// Makes a write to a closed pipe, or beyond the greatest size of a file, fail with an error
/// instead of ending the program. Called at the start of a program.
void IgnoreWriteSignals();

/// From now on, the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP, unless ignored) are
/// only noted in StopSignal(), and the run has to end itself. If it does not within some seconds,
/// or if the same signal comes again, the signal ends the process.
void CatchStopSignals();

/// Number of the first signal that CatchStopSignals() has noted; 0: none.
int StopSignal();

/// Whether ReplaceProcess continues in the same process. If so, the program that it starts need not
/// wait for the end of this one.
extern const bool kReplacesInPlace;

/// Replaces this program with another one, in the same process if the system can do that. Returns
/// only if the other program could not be started.
ErrorCode ReplaceProcess(TextView program, const std::vector<Text>& arguments);

/// Starts a thread that no signal interrupts; throws std::system_error if there can be no more.
std::thread StartThread(std::function<void()> body);

/// Facts for a fault report. A value that the system does not report is empty or 0.
struct SystemFacts {
  Text osName;
  Text osVersion;
  Text cpuName;
  Text computerName;
  Text desktop;  // the desktop's session; empty: there is none
  bool is64Bit = false;
  std::uint64_t upTimeSeconds = 0;
  std::uint64_t physicalFree = 0;  // bytes, like all below
  std::uint64_t physicalTotal = 0;
  std::uint64_t processMemory = 0;
  std::uint64_t pageFileFree = 0;
  std::uint64_t pageFileTotal = 0;
  std::uint64_t virtualFree = 0;
  std::uint64_t virtualTotal = 0;
};
SystemFacts GetSystemFacts();

enum class StandardStream { Output, Error };

/// Whether a stream of the process is a terminal.
bool IsTerminal(StandardStream stream);

/// Width of the terminal of the standard error in columns; 80 if it is not known.
int GetTerminalWidth();

/// A named mark that other processes of this user can see while this object exists. More than one
/// process may hold the same mark.
class NamedMutex {
 public:
  NamedMutex() = default;
  NamedMutex(NamedMutex&&) noexcept;
  NamedMutex& operator=(NamedMutex&&) noexcept;
  ~NamedMutex();

  bool isHeld() const { return handle_ != kNone; }

 private:
  friend NamedMutex CreateMutexW(TextView);
  friend NamedMutex TakeMutexW(TextView, bool&);

  static constexpr std::intptr_t kNone = -1;
  std::intptr_t handle_ = kNone;
};

/// Makes a mark. The mark is not held if the system has no place for it; the caller then continues
/// without a mark.
NamedMutex CreateMutexW(TextView name);

/// Whether any process holds the mark. Also false if this cannot be found out.
bool OpenMutexW(TextView name);

/// Switches file system redirection off or on again in a 32-bit Windows process. Does nothing on
/// other systems.
void DisableWow64FsRedirection(bool disable);

/// Switches the redirection off while this object exists.
class NoRedirection {
 public:
  NoRedirection() { DisableWow64FsRedirection(true); }
  ~NoRedirection() { DisableWow64FsRedirection(false); }
  NoRedirection(const NoRedirection&) = delete;
  NoRedirection& operator=(const NoRedirection&) = delete;
};

}  // namespace ombrelian::platform
