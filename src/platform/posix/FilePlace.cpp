#include "platform/FilePlace.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/Errors.h"
#include "platform/posix/HandleCalls.h"
#include "platform/posix/Home.h"
#include "platform/posix/ObjectAt.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/PatientCalls.h"
#include "platform/posix/Retried.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {

struct FilePlace::Folder {
  Descriptor descriptor;
  bool isReadable = false;  // else it was opened with O_PATH and cannot be synchronised
};

namespace {

constexpr mode_t kOwnersFile = 0600;
constexpr mode_t kOwnersFolder = 0700;
constexpr mode_t kAnyRights = 0777;
constexpr mode_t kRightsOfOthers = 0077;
constexpr mode_t kNewFile = 0666;  // before the file mask of the process is applied
constexpr int kMostLinks = 40;     // as in the kernel
constexpr int kNoWaiting = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

ErrorCode lastError() { return translateErrno(errno); }

/// A folder that is being looked up, and the name of the file in it.
struct Spot {
  Descriptor folder;
  bool isReadable = false;
  std::string name;
  std::string path;  // path of the folder, with a final separator
};

constexpr int kUntrusted = -1;  // beside the values of errno

/// Whether users share the folder: each of them may make names in it and remove only his own.
bool isShared(const struct stat& folder) {
  return (folder.st_mode & S_ISVTX) != 0 && (folder.st_mode & (S_IWOTH | S_IWGRP)) != 0;
}

/// Whether a link on the way to a folder may be followed: not if somebody else than the runner, the
/// administrator or, for an ordinary user, the owner of the folder put it into a folder that users
/// share. The kernel has this rule only for the last name of a path.
bool mayFollowOnTheWay(const struct stat& link, int folder) {
  const uid_t user = geteuid();
  if (link.st_uid == user || link.st_uid == 0) return true;
  struct stat told;
  if (fstat(folder, &told) != 0) return false;
  return !isShared(told) || (user != 0 && link.st_uid == told.st_uid);
}

/// Opens the folder `name`, which is no link, for reading, or at least as a place for names.
Descriptor openStep(int folder, const char* name, bool& isReadable) {
  constexpr int kFlags = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  Descriptor opened(retried([&] { return openat(folder, name, O_RDONLY | kFlags); }));
  isReadable = bool(opened);
  if (!opened && errno == EACCES)
    opened = Descriptor(retried([&] { return openat(folder, name, O_PATH | kFlags); }));
  return opened;
}

/// Opens the folder `path`, which may be relative to the open folder `base`, step by step. Returns
/// 0, errno or kUntrusted.
int openSteps(int base, const std::string& path, Spot& spot) {
  std::string way = path;
  std::string_view rest = way;
  Descriptor folder = openStep(base, way.starts_with('/') ? "/" : ".", spot.isReadable);
  for (int links = 0; folder;) {
    const std::string step = takeComponent(rest);
    if (step.empty()) break;
    struct stat told;
    if (fstatat(folder.get(), step.c_str(), &told, AT_SYMLINK_NOFOLLOW) != 0) return errno;
    if (!S_ISLNK(told.st_mode)) {
      folder = openStep(folder.get(), step.c_str(), spot.isReadable);
      continue;
    }
    if (++links > kMostLinks) return ELOOP;
    if (!mayFollowOnTheWay(told, folder.get())) return kUntrusted;
    std::string text(PATH_MAX, '\0');
    const ssize_t size = readlinkat(folder.get(), step.c_str(), text.data(), text.size());
    if (size <= 0) return size < 0 ? errno : ENOENT;
    text.resize(std::size_t(size));
    way = text.append("/").append(rest);
    rest = way;
    if (way.starts_with('/')) folder = openStep(base, "/", spot.isReadable);
  }
  const int error = errno;
  spot.folder = std::move(folder);
  return spot.folder ? 0 : error;
}

/// Opens the folder of `path`, which may be relative to the open folder `base`. Returns 0, errno or
/// kUntrusted.
int openFolder(int base, const std::string& path, Spot& spot) {
  const auto slash = path.rfind('/');
  const bool isRelative = slash == std::string::npos;
  spot.name = isRelative ? path : path.substr(slash + 1);
  return openSteps(base, isRelative ? std::string() : path.substr(0, slash + 1), spot);
}

/// Whether the link may lead this process to a file that it changes.
bool isTrusted(const struct stat& link, int folder) {
  const uid_t user = geteuid();
  if (link.st_uid == user || link.st_uid == 0) return true;
  struct stat told;
  return user != 0 && fstat(folder, &told) == 0 && link.st_uid == told.st_uid;
}

/// Text of the link at the spot; empty: there is no link.
std::string linkAt(const Spot& spot, ErrorCode& error) {
  struct stat told;
  const char* const name = spot.name.c_str();
  if (fstatat(spot.folder.get(), name, &told, AT_SYMLINK_NOFOLLOW) != 0) return {};
  if (!S_ISLNK(told.st_mode)) return {};
  if (!isTrusted(told, spot.folder.get())) {
    error = kUntrustedLink;
    return {};
  }
  std::string text(PATH_MAX, '\0');
  const ssize_t size = readlinkat(spot.folder.get(), name, text.data(), text.size());
  text.resize(size > 0 ? std::size_t(size) : 0);
  return text;
}

ErrorCode findSpot(std::string path, Spot& spot) {
  for (int links = 0; links < kMostLinks; ++links) {
    while (path.size() > 1 && path.ends_with('/'))
      path.pop_back();
    Spot next;
    next.path = path.starts_with('/') ? std::string() : spot.path;
    next.path.append(path, 0, path.rfind('/') + 1);  // npos + 1 is 0
    const int missing = openFolder(spot.folder.get(), path, next);
    if (missing == kUntrusted) return kUntrustedLink;
    if (missing != 0) return missing == ENOENT ? kPathNotFound : translateErrno(missing);
    spot = std::move(next);
    if (spot.name.empty()) spot.name = ".";
    ErrorCode error = kSuccess;
    path = linkAt(spot, error);
    if (error != kSuccess || path.empty()) return error;
  }
  return kLinkLoop;
}

/// Whether the file is one that another user left in a folder that users share.
bool isForeign(const struct stat& file, int folder) {
  struct stat told;
  if (fstat(folder, &told) != 0) return true;
  return isShared(told) && file.st_uid != geteuid() && file.st_uid != told.st_uid;
}

mode_t modeOfNewFile(int folder) {
  if (geteuid() == 0 && !isInHome(folder)) return kOwnersFile;
  const mode_t mask = umask(kRightsOfOthers);
  umask(mask);
  return kNewFile & ~mask;
}

/// Errors are ignored: not every file system has modes and owners, and the file has the rights of
/// its owner alone.
void setMode(int fd, mode_t mode) { static_cast<void>(fchmod(fd, mode)); }

ErrorCode copyAccess(int fd, int folder, const char* name) {
  struct stat told;
  const bool isThere = fstatat(folder, name, &told, AT_SYMLINK_NOFOLLOW) == 0;
  if (!isThere || !S_ISREG(told.st_mode) || isForeign(told, folder)) {
    setMode(fd, modeOfNewFile(folder));
    return kSuccess;
  }
  // If the group cannot be kept, another group must not get its rights.
  const bool isSameGroup =
      fchown(fd, told.st_uid, told.st_gid) == 0 || fchown(fd, -1, told.st_gid) == 0;
  setMode(fd, told.st_mode & (isSameGroup ? kAnyRights : kAnyRights & ~S_IRWXG));
  return kSuccess;
}

bool isOwnFile(int fd, bool isWritten) {
  struct stat told;
  if (fstat(fd, &told) != 0 || !S_ISREG(told.st_mode)) return false;
  // An administrator may have written a file that the user only reads.
  if (told.st_uid != geteuid()) return !isWritten && told.st_uid == 0;
  if ((told.st_mode & kRightsOfOthers) != 0)
    setMode(fd, told.st_mode & kAnyRights & ~kRightsOfOthers);
  return true;
}

/// The error of a file that could not be opened: a link, a folder and a pipe are no own files.
ErrorCode openError() {
  const bool isOther = errno == ELOOP || errno == ENXIO || errno == EISDIR;
  return isOther ? kNotOwnFile : lastError();
}

/// Waits until an open file or folder is on the disk. Some file systems cannot say so.
ErrorCode synchronise(int result) {
  return result == 0 || errno == EINVAL || errno == ENOTSUP ? kSuccess : lastError();
}

ErrorCode makeOwnFolder(TextView path) {
  const std::string bytes = toBytes(path);
  std::string_view rest = bytes;
  Descriptor folder(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
  while (folder) {
    const std::string step = takeComponent(rest);
    if (step.empty()) break;
    if (mkdirat(folder.get(), step.c_str(), kOwnersFolder) != 0 && errno != EEXIST) {
      // Something may be there although nothing can be made there.
      const ErrorCode error = lastError();
      if (faccessat(folder.get(), step.c_str(), F_OK, AT_EACCESS) != 0) return error;
    }
    folder = Descriptor(openat(folder.get(), step.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  }
  struct stat told;
  if (!folder || fstat(folder.get(), &told) != 0) return lastError();
  if (told.st_uid != geteuid()) return kNotOwnFile;
  if ((told.st_mode & kRightsOfOthers) != 0) changeMode(folder.get(), told.st_mode & kOwnersFolder);
  return kSuccess;
}

}  // namespace

/// Result of a call on the open folder, which owns all its other data.
template <class Call>
ErrorCode FilePlace::ask(Call call) const {
  return askPatiently(
      slowMount_, [call, folder = folder_] { return call(folder->descriptor.get()); }, kTimeout);
}

ErrorCode FilePlace::open(TextView path) {
  if (path.empty()) return kPathNotFound;
  slowMount_ = patientMountOf(path);
  using Answer = std::pair<ErrorCode, Spot>;
  const auto find = [bytes = toBytes(path)] {
    Answer answer;
    answer.first = findSpot(bytes, answer.second);
    return answer;
  };
  Answer answer = askPatiently(slowMount_, find, Answer(kTimeout, Spot()));
  if (answer.first != kSuccess) return answer.first;
  Spot& spot = answer.second;
  folder_ = std::make_shared<Folder>(Folder{std::move(spot.folder), spot.isReadable});
  name_ = fromBytes(spot.name);
  path_ = fromBytes(spot.path);
  return kSuccess;
}

ErrorCode FilePlace::checkWritable() const {
  return ask([](int folder) {
    return faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) == 0 ? kSuccess : lastError();
  });
}

ErrorCode FilePlace::find(TextView name, FindData& data) const {
  using Answer = std::pair<ErrorCode, FindData>;
  const auto read = [bytes = toBytes(name), folder = folder_] {
    Answer answer;
    answer.first = translateErrno(readFindData(folder->descriptor.get(), bytes.c_str(),
                                               AT_SYMLINK_NOFOLLOW, 0, answer.second));
    return answer;
  };
  const Answer answer = askPatiently(slowMount_, read, Answer(kTimeout, FindData()));
  if (answer.first == kSuccess) data = answer.second;
  return answer.first;
}

bool FilePlace::mayWrite() const {
  FindData data;
  if (find(name_, data) != kSuccess) return true;
  if ((data.dwFileAttributes & kAttributeReadOnly) != 0) return false;
  const ErrorCode error = ask([bytes = toBytes(name_)](int folder) {
    return faccessat(folder, bytes.c_str(), W_OK, AT_EACCESS) == 0 ? kSuccess : lastError();
  });
  return error != kAccessDenied;
}

/// The file that `call` opens, which may be on a file system that does not answer.
template <class Call>
FileHandle FilePlace::openWith(Call call, ErrorCode& error) const {
  using Answer = std::pair<ErrorCode, Descriptor>;
  FileHandle file;
  file.slowMount_ = slowMount_;
  Answer answer = askPatiently(slowMount_, std::move(call), Answer(kTimeout, Descriptor()));
  error = answer.first;
  if (answer.second) file.handle_ = answer.second.release();
  return file;
}

FileHandle FilePlace::make(TextView name, ErrorCode& error) const {
  using Answer = std::pair<ErrorCode, Descriptor>;
  const auto make = [bytes = toBytes(name), folder = folder_] {
    const bool isNameless = bytes.empty();
    const char* const made = isNameless ? "." : bytes.c_str();
    const int flags = isNameless ? O_TMPFILE : O_CREAT | O_EXCL | O_NOFOLLOW;
    Answer answer;
    answer.second.reset(retried([&] {
      return openat(folder->descriptor.get(), made, O_WRONLY | O_CLOEXEC | flags, kOwnersFile);
    }));
    if (!answer.second) answer.first = lastError();
    return answer;
  };
  FileHandle file = openWith(make, error);
  // Only this path can give the file a name later.
  if (file.isOpen() && name.empty() && GetHandlePath(file, {}).empty()) error = kNotSupported;
  return file;
}

FileHandle FilePlace::openOwn(TextView name, int disposition, ErrorCode& error) const {
  using Answer = std::pair<ErrorCode, Descriptor>;
  const auto open = [bytes = toBytes(name), disposition, folder = folder_] {
    const bool isWritten = disposition != kOpenRead;
    Answer answer;
    answer.second.reset(retried([&] {
      return openat(folder->descriptor.get(), bytes.c_str(), openFlags(disposition) | kNoWaiting,
                    kOwnersFile);
    }));
    if (!answer.second) {
      answer.first = openError();
    } else if (!isOwnFile(answer.second.get(), isWritten)) {
      answer = Answer(kNotOwnFile, Descriptor());
    }
    return answer;
  };
  return openWith(open, error);
}

ErrorCode FilePlace::nameFile(const FileHandle& file, TextView name) const {
  return file.ask([bytes = toBytes(name), folder = folder_](int fd) {
    const std::string alias = "/proc/self/fd/" + std::to_string(fd);
    const int result =
        linkat(AT_FDCWD, alias.c_str(), folder->descriptor.get(), bytes.c_str(), AT_SYMLINK_FOLLOW);
    return result == 0 ? kSuccess : lastError();
  });
}

ErrorCode FilePlace::rename(TextView from, TextView to) const {
  return ask([from = toBytes(from), to = toBytes(to)](int folder) {
    return renameat(folder, from.c_str(), folder, to.c_str()) == 0 ? kSuccess : lastError();
  });
}

ErrorCode FilePlace::remove(TextView name, const FileIdentity& identity) const {
  FindData data;
  if (const ErrorCode error = find(name, data); error != kSuccess) return error;
  if (!(data.identity == identity)) return kObjectReplaced;
  return ask([bytes = toBytes(name)](int folder) {
    return unlinkat(folder, bytes.c_str(), 0) == 0 ? kSuccess : lastError();
  });
}

ErrorCode FilePlace::giveAccess(const FileHandle& file) const {
  return file.ask([bytes = toBytes(name_), folder = folder_](int fd) {
    return copyAccess(fd, folder->descriptor.get(), bytes.c_str());
  });
}

ErrorCode FilePlace::flush() const {
  if (!folder_->isReadable) return kSuccess;
  return ask([](int folder) { return synchronise(fsync(folder)); });
}

FileHandle OpenOwnFile(TextView path, int disposition, ErrorCode& error) {
  FilePlace place;
  error = place.open(path);
  if (error == kUntrustedLink) error = kNotOwnFile;
  return error == kSuccess ? place.openOwn(place.name(), disposition, error) : FileHandle();
}

ErrorCode MakeOwnFolder(TextView path) {
  const auto make = [path = Text(path)] { return makeOwnFolder(path); };
  return askPatiently(patientMountOf(path), make, kTimeout);
}

}  // namespace ombrelian::platform
