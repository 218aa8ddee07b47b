#include "platform/Process.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "platform/posix/CMemory.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Home.h"
#include "platform/posix/SignalsBlocked.h"

namespace ombrelian::platform {
namespace {

/// Value after "key:" or "KEY=" in a small text file of the system; empty if it is missing.
std::string valueInFile(const char* path, const std::string& key, char separator) {
  const CFile file = openForReading(path);
  if (file == nullptr) return {};
  std::string value;
  char line[512];
  while (value.empty() && std::fgets(line, sizeof line, file.get()) != nullptr) {
    if (std::strncmp(line, key.c_str(), key.size()) != 0) continue;
    const char* at = std::strchr(line, separator);
    if (at == nullptr) continue;
    at += 1 + std::strspn(at + 1, " \t\"");
    value.assign(at, std::strcspn(at, "\"\n"));
  }
  return value;
}

std::uint64_t kilobytesInFile(const char* path, const char* key) {
  return std::strtoull(valueInFile(path, key, ':').c_str(), nullptr, 10) * 1024;
}

/// Folder of this user for marks that end with the session; closed if there is none.
Descriptor runtimeFolder() {
  std::string folder = environmentVariable("XDG_RUNTIME_DIR");
  struct stat told;
  const bool isOurs =
      folder.starts_with('/') && stat(folder.c_str(), &told) == 0 && told.st_uid == geteuid();
  folder = isOurs ? folder + "/Ombrelian" : "/tmp/ombrelian-" + std::to_string(geteuid());
  mkdir(folder.c_str(), 0700);
  Descriptor opened(open(folder.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  const bool isSafe = opened && fstat(opened.get(), &told) == 0 && told.st_uid == geteuid() &&
                      (told.st_mode & 077) == 0;
  return isSafe ? std::move(opened) : Descriptor();
}

Descriptor openMark(TextView name) {
  std::string file = toBytes(name);
  for (char& c : file) {
    if (c == '/' || c == '\\') c = '_';
  }
  const Descriptor folder = runtimeFolder();
  if (!folder) return {};
  constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  Descriptor mark(openat(folder.get(), (file + ".lock").c_str(), kFlags, 0600));
  struct stat told;
  const bool isFile = mark && fstat(mark.get(), &told) == 0 && S_ISREG(told.st_mode);
  return isFile ? std::move(mark) : Descriptor();
}

}  // namespace

Text GetEnvironmentVariableW(TextView name) {
  return fromBytes(environmentVariable(toBytes(name).c_str()));
}

Text GetApplicationDataFolder() { return fromBytes(userFolder("XDG_CONFIG_HOME", "/.config")); }

Text GetHomeFolder() {
  const std::string home = environmentVariable("HOME");
  return fromBytes(home.starts_with('/') ? home : accountHome());
}

Text GetModuleFolder() {
  const CText path(realpath("/proc/self/exe", nullptr));
  const std::string folder = path != nullptr ? path.get() : "";
  const auto slash = folder.rfind('/');
  return slash == std::string::npos ? Text() : fromBytes(folder.substr(0, slash));
}

Text GetCurrentDirectoryW() {
  const CText folder(getcwd(nullptr, 0));
  return folder != nullptr ? fromBytes(folder.get()) : Text();
}

bool HasDisplay() {
  for (const TextView name : {u"DISPLAY", u"WAYLAND_DISPLAY", u"QT_QPA_PLATFORM"}) {
    if (!GetEnvironmentVariableW(name).empty()) return true;
  }
  return false;
}

void FillStandardDescriptors() {
  for (const int descriptor : {0, 1, 2}) {
    // The lowest free number is used, which is this one; the wrong direction makes its use fail.
    if (fcntl(descriptor, F_GETFD) < 0) open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
  }
}

const bool kReplacesInPlace = true;

ErrorCode ReplaceProcess(TextView program, const std::vector<Text>& arguments) {
  std::vector<std::string> bytes;
  bytes.reserve(arguments.size() + 1);
  bytes.push_back(toBytes(program));
  for (const Text& argument : arguments)
    bytes.push_back(toBytes(argument));
  std::vector<char*> pointers;
  pointers.reserve(bytes.size() + 1);
  for (std::string& argument : bytes)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execv(pointers.front(), pointers.data());
  return translateErrno(errno);
}

SystemFacts GetSystemFacts() {
  SystemFacts facts;
  struct utsname names;
  if (uname(&names) == 0) {
    facts.osName = fromBytes(names.sysname);
    facts.osVersion = fromBytes(names.release);
    facts.computerName = fromBytes(names.nodename);
    facts.is64Bit = std::strstr(names.machine, "64") != nullptr;
  }
  const std::string pretty = valueInFile("/etc/os-release", "PRETTY_NAME", '=');
  if (!pretty.empty()) facts.osName = fromBytes(pretty);
  facts.cpuName = fromBytes(valueInFile("/proc/cpuinfo", "model name", ':'));
  facts.desktop = fromBytes(environmentVariable("XDG_CURRENT_DESKTOP"));
  struct sysinfo information;
  if (sysinfo(&information) == 0) facts.upTimeSeconds = std::uint64_t(information.uptime);
  facts.physicalFree = kilobytesInFile("/proc/meminfo", "MemAvailable");
  facts.physicalTotal = kilobytesInFile("/proc/meminfo", "MemTotal");
  facts.pageFileFree = kilobytesInFile("/proc/meminfo", "SwapFree");
  facts.pageFileTotal = kilobytesInFile("/proc/meminfo", "SwapTotal");
  facts.virtualTotal = kilobytesInFile("/proc/meminfo", "CommitLimit");
  const std::uint64_t committed = kilobytesInFile("/proc/meminfo", "Committed_AS");
  facts.virtualFree = facts.virtualTotal > committed ? facts.virtualTotal - committed : 0;
  facts.processMemory = kilobytesInFile("/proc/self/status", "VmRSS");
  return facts;
}

bool IsErrorOutputTerminal() { return isatty(STDERR_FILENO) == 1; }

int GetTerminalWidth() {
  struct winsize size;
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

NamedMutex::NamedMutex(NamedMutex&& other) noexcept
    : handle_(std::exchange(other.handle_, kNone)) {}

NamedMutex& NamedMutex::operator=(NamedMutex&& other) noexcept {
  std::swap(handle_, other.handle_);
  return *this;
}

NamedMutex::~NamedMutex() {
  if (isHeld()) close(int(handle_));
}

NamedMutex CreateMutexW(TextView name) {
  NamedMutex mutex;
  Descriptor mark = openMark(name);
  // All holders share the lock. OpenMutexW finds the mark because it cannot get the lock
  // exclusively.
  if (mark && flock(mark.get(), LOCK_SH) == 0) mutex.handle_ = mark.release();
  return mutex;
}

bool OpenMutexW(TextView name) {
  const Descriptor mark = openMark(name);
  return mark && flock(mark.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

std::thread StartThread(std::function<void()> body) {
  const SignalsBlocked signals;
  return std::thread(std::move(body));
}

void DisableWow64FsRedirection(bool) {}

}  // namespace ombrelian::platform
