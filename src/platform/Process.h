#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/SystemError.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// Value of an environment variable; empty where it is not set.
Text GetEnvironmentVariableW(TextView name);

/// Folder for this user's settings of all programs (no trailing separator); empty where the
/// system names none.
Text GetApplicationDataFolder();

/// Folder that holds this program's file, without trailing separator.
Text GetModuleFolder();

/// Present folder, without trailing separator but for a root.
Text GetCurrentDirectoryW();

/// Whether this process was told of a screen that a window could stand on.
bool HasDisplay();

/// Goes on as another program with these arguments, in the same process where the system can do
/// that. Returns only if it could not be started.
ErrorCode ReplaceProcess(TextView program, const std::vector<Text>& arguments);

/// Facts for a fault report. What the system does not tell is empty or 0.
struct SystemFacts {
  Text osName;
  Text osVersion;
  Text cpuName;
  Text computerName;
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

/// Whether the process's standard error goes to a terminal that a person reads.
bool IsErrorOutputTerminal();

/// Columns of that terminal; 80 where it does not say.
int GetTerminalWidth();

/// A named mark that other processes of this user can see while this object lives. More than one
/// process may hold the same one.
class NamedMutex {
 public:
  NamedMutex() = default;
  NamedMutex(NamedMutex&&) noexcept;
  NamedMutex& operator=(NamedMutex&&) noexcept;
  ~NamedMutex();

  bool isHeld() const { return handle_ != kNone; }

 private:
  friend NamedMutex CreateMutexW(TextView);

  static constexpr std::intptr_t kNone = -1;
  std::intptr_t handle_ = kNone;
};

/// Makes a mark. It is not held if the system gives no place for it; a caller goes on without it.
NamedMutex CreateMutexW(TextView name);

/// Whether any process holds the mark. False too where it cannot be asked.
bool OpenMutexW(TextView name);

/// On a 32-bit Windows process: file system redirection off or on again. Elsewhere nothing.
void DisableWow64FsRedirection(bool disable);

/// Switches the redirection off while it lives.
class NoRedirection {
 public:
  NoRedirection() { DisableWow64FsRedirection(true); }
  ~NoRedirection() { DisableWow64FsRedirection(false); }
  NoRedirection(const NoRedirection&) = delete;
  NoRedirection& operator=(const NoRedirection&) = delete;
};

}  // namespace ombrelian::platform
