#include "platform/posix/Marks.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/Instance.h"
#include "platform/posix/Home.h"

namespace ombrelian::platform {

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

std::string markName(TextView name) {
  std::string file = toBytes(name);
  for (char& c : file) {
    if (c == '/' || c == '\\') c = '_';
  }
  return file;
}

Descriptor openMark(TextView name) {
  const Descriptor folder = runtimeFolder();
  if (!folder) return {};
  constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  Descriptor mark(openat(folder.get(), (markName(name) + ".lock").c_str(), kFlags, 0600));
  struct stat told;
  const bool isFile = mark && fstat(mark.get(), &told) == 0 && S_ISREG(told.st_mode);
  return isFile ? std::move(mark) : Descriptor();
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

NamedMutex TakeMutexW(TextView name, bool& isTaken) {
  NamedMutex mutex;
  Descriptor mark = openMark(name);
  isTaken = false;
  if (!mark) return mutex;
  if (flock(mark.get(), LOCK_EX | LOCK_NB) == 0) {
    mutex.handle_ = mark.release();
  } else {
    isTaken = errno == EWOULDBLOCK;
  }
  return mutex;
}

}  // namespace ombrelian::platform
