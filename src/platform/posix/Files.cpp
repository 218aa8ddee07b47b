#include "platform/Files.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/posix/CMemory.h"
#include "platform/posix/Errors.h"
#include "platform/posix/HandleCalls.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/PatientCalls.h"
#include "platform/posix/Retried.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

constexpr mode_t kFileMode = 0666;  // mode before the file mask of the process is applied
constexpr mode_t kFolderMode = 0777;
constexpr std::chrono::minutes kLongestFlush(1);

ErrorCode lastError() { return translateErrno(errno); }

ErrorCode readAt(TextView path, int flags, FindData& data) {
  if (path.empty()) return kPathNotFound;
  const PathAt at(path);
  if (at.error() != 0) return translateErrno(at.error());
  const int error = readFindData(at.folder(), at.name(), flags, 0, data);
  if (error != 0) return translateErrno(error);
  data.dwFileAttributes &= ~kAttributeHidden;
  const char* const name = at.lastComponent();
  if (name[0] == '.' && name[1] != '\0' && name[1] != '/') {
    data.dwFileAttributes |= kAttributeHidden;
  }
  return kSuccess;
}

/// The same as readAt for a file system that may not answer.
ErrorCode readPatiently(TextView path, int flags, FindData& data) {
  const std::optional<std::string> mount = patientMountOf(path);
  if (!mount) return readAt(path, flags, data);
  using Answer = std::pair<ErrorCode, FindData>;
  const auto read = [path = Text(path), flags] {
    Answer answer;
    answer.first = readAt(path, flags, answer.second);
    return answer;
  };
  const Answer answer = askPatiently(mount, read, Answer(kTimeout, FindData()));
  if (answer.first == kSuccess) data = answer.second;
  return answer.first;
}

/// Result of `call` for `path`, which may be on a file system that does not answer.
template <class Call>
auto askAt(TextView path, Call call, std::invoke_result_t<Call&, TextView> silent) {
  const auto ask = [path = Text(path), call] { return call(path); };
  return askPatiently(patientMountOf(path), ask, std::move(silent));
}

ErrorCode moveFile(TextView from, TextView to) {
  const PathAt fromAt(from);
  const PathAt toAt(to);
  if (fromAt.error() != 0) return translateErrno(fromAt.error());
  if (toAt.error() != 0) return translateErrno(toAt.error());
  const int result = renameat(fromAt.folder(), fromAt.name(), toAt.folder(), toAt.name());
  return result == 0 ? kSuccess : lastError();
}

ErrorCode makeFolder(TextView path) {
  const PathAt at(path);
  if (at.error() != 0) return translateErrno(at.error());
  return mkdirat(at.folder(), at.name(), kFolderMode) == 0 ? kSuccess : lastError();
}

ErrorCode allowExecution(TextView path) {
  constexpr mode_t kOwnersProgram = 0700;
  const PathAt at(path);
  if (at.error() != 0) return translateErrno(at.error());
  return fchmodat(at.folder(), at.name(), kOwnersProgram, 0) == 0 ? kSuccess : lastError();
}

ErrorCode checkWritable(TextView path) {
  const PathAt at(path);
  if (at.error() != 0) return translateErrno(at.error());
  struct stat told;
  if (fstatat(at.folder(), at.name(), &told, 0) != 0) return lastError();
  if (!S_ISDIR(told.st_mode)) return kNotADirectory;
  return faccessat(at.folder(), at.name(), W_OK | X_OK, AT_EACCESS) == 0 ? kSuccess : lastError();
}

Text finalPath(TextView path) {
  const CText resolved(realpath(toBytes(path).c_str(), nullptr));
  return resolved == nullptr ? Text() : fromBytes(resolved.get());
}

/// Calls `visit` for each component of `path`.
template <class Visit>
void forEachStep(TextView path, Visit visit) {
  while (!path.empty()) {
    const TextView step = path.substr(0, path.find(u'/'));
    if (!step.empty()) visit(step);
    path.remove_prefix(std::min(path.size(), step.size() + 1));
  }
}

bool hasParentStep(TextView path) {
  bool found = false;
  forEachStep(path, [&](TextView step) { found = found || step == u".."; });
  return found;
}

/// Removes ".", ".." and extra separators from an absolute path, without reading any object; "/.."
/// is "/".
Text withoutIdleSteps(TextView path) {
  Text clean;
  forEachStep(path, [&](TextView step) {
    if (step == u"..") {
      clean.resize(std::min(clean.size(), clean.rfind(u'/')));
    } else if (step != u".") {
      clean.append(u"/").append(step);
    }
  });
  return clean.empty() ? Text(u"/") : clean;
}

/// A path that leads to the open file or folder while it is open.
std::string aliasOf(std::intptr_t handle) { return "/proc/self/fd/" + std::to_string(handle); }

/// Writes all of `bytes`.
ErrorCode writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return lastError();
    bytes.remove_prefix(std::size_t(written));
  }
  return kSuccess;
}

ErrorCode readSome(int fd, char* buffer, std::size_t size, std::size_t& got) {
  for (;;) {
    const ssize_t result = read(fd, buffer, size);
    if (result < 0 && errno == EINTR) continue;
    if (result < 0) return lastError();
    got = std::size_t(result);
    return kSuccess;
  }
}

/// Patience for a healthy server that needs some time to store what was written. The user can still
/// end the waiting.
class MorePatience {
 public:
  MorePatience()
      : patience_([goOn = Patience::current()](std::chrono::milliseconds waited) {
          return waited < kLongestFlush &&
                 (goOn == nullptr || (*goOn)(std::chrono::milliseconds(0)));
        }) {}

 private:
  const Patience patience_;
};

bool hasAlias(std::intptr_t handle) { return access(aliasOf(handle).c_str(), F_OK) == 0; }

}  // namespace

const char16_t kNativeSeparator = u'/';

ErrorCode FindFirstFileW(TextView path, FindData& data) {
  return readPatiently(path, AT_SYMLINK_NOFOLLOW, data);
}

ErrorCode GetFileInformation(TextView path, FindData& data) { return readPatiently(path, 0, data); }

ErrorCode MoveFileExW(TextView from, TextView to) {
  std::optional<std::string> mount = patientMountOf(from);
  if (!mount) mount = patientMountOf(to);
  const auto move = [from = Text(from), to = Text(to)] { return moveFile(from, to); };
  return askPatiently(mount, move, kTimeout);
}

ErrorCode CreateDirectoryW(TextView path) { return askAt(path, makeFolder, kTimeout); }

ErrorCode AllowExecution(TextView path) { return askAt(path, allowExecution, kTimeout); }

ErrorCode CheckFolderWritable(TextView path) { return askAt(path, checkWritable, kTimeout); }

Text GetFinalPathNameW(TextView path) { return askAt(path, finalPath, Text()); }

Text GetFullPathNameW(TextView path) {
  Text absolute(path);
  if (path.empty() || path.front() != u'/') {
    const CText folder(getcwd(nullptr, 0));
    if (folder == nullptr) return absolute;
    absolute = fromBytes(folder.get()).append(u"/").append(path);
  }
  if (hasParentStep(absolute)) {
    while (absolute.size() > 1 && absolute.back() == u'/')
      absolute.pop_back();
    const auto last = absolute.rfind(u'/');
    const bool endsAbove = hasParentStep(TextView(absolute).substr(last));
    // The last name may be a link that must not be followed, or a file that does not exist yet.
    Text real = GetFinalPathNameW(endsAbove ? absolute
                                            : absolute.substr(0, std::max<std::size_t>(last, 1)));
    if (!real.empty() && !endsAbove) real.append(TextView(absolute).substr(last));
    if (!real.empty()) return withoutIdleSteps(real);
  }
  return withoutIdleSteps(absolute);
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : handle_(std::exchange(other.handle_, kNone)), slowMount_(std::move(other.slowMount_)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(slowMount_, other.slowMount_);
  return *this;
}

FileHandle::~FileHandle() {
  if (isOpen()) close();
}

/// Closes the file. If its file system does not answer, that happens later.
ErrorCode FileHandle::close() {
  const int fd = int(std::exchange(handle_, kNone));
  if (!slowMount_) return ::close(fd) == 0 ? kSuccess : lastError();
  const MorePatience patience;
  const auto file = std::make_shared<Descriptor>(fd);
  const auto result = std::make_shared<std::atomic<ErrorCode>>(kTimeout);
  PatientCalls calls(*slowMount_);
  const bool isClosed = calls.run(
      [file, result] { *result = ::close(file->release()) == 0 ? kSuccess : lastError(); });
  if (!isClosed) calls.runLast([file] { file->reset(); });
  return *result;
}

FileHandle CreateFileW(TextView path, int disposition, ErrorCode& error) {
  using Answer = std::pair<ErrorCode, Descriptor>;
  const auto open = [path = Text(path), disposition] {
    Answer answer;
    const PathAt at(path);
    answer.first = translateErrno(at.error());
    if (answer.first != kSuccess) return answer;
    const int flags = openFlags(disposition) | O_NONBLOCK | O_CLOEXEC;
    answer.second.reset(retried([&] { return openat(at.folder(), at.name(), flags, kFileMode); }));
    if (!answer.second) answer.first = lastError();
    return answer;
  };
  FileHandle file;
  file.slowMount_ = patientMountOf(path);
  Answer answer = askPatiently(file.slowMount_, open, Answer(kTimeout, Descriptor()));
  error = answer.first;
  if (answer.second) file.handle_ = answer.second.release();
  return file;
}

FileHandle OpenStandardOutput(ErrorCode& error) {
  FileHandle file;
  const int fd = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
  error = fd < 0 ? lastError() : kSuccess;
  if (fd >= 0) file.handle_ = fd;
  return file;
}

FileHandle DuplicateHandle(const FileHandle& file, ErrorCode& error) {
  FileHandle copy;
  const int fd = fcntl(int(file.handle_), F_DUPFD_CLOEXEC, 0);
  error = fd < 0 ? lastError() : kSuccess;
  if (fd < 0) return copy;
  copy.handle_ = fd;
  copy.slowMount_ = file.slowMount_;
  return copy;
}

ErrorCode FlushFileBuffers(FileHandle& file) {
  const MorePatience patience;
  return file.ask([](int fd) {
    const bool isDone = fdatasync(fd) == 0 || errno == EINVAL || errno == ENOTSUP;
    return isDone ? kSuccess : lastError();
  });
}

ErrorCode GetFileInformationByHandle(const FileHandle& file, FindData& data) {
  const auto told = std::make_shared<FindData>();
  const ErrorCode error = file.ask(
      [told](int fd) { return translateErrno(readFindData(fd, "", AT_EMPTY_PATH, 0, *told)); });
  if (error == kSuccess) data = *told;
  return error;
}

ErrorCode LockFile(FileHandle& file) {
  return file.ask(
      [](int fd) { return flock(fd, LOCK_EX | LOCK_NB) == 0 ? kSuccess : lastError(); });
}

ErrorCode WriteFile(FileHandle& file, std::string_view bytes) {
  if (!file.slowMount_) return writeAll(int(file.handle_), bytes);
  return file.ask([copy = std::string(bytes)](int fd) { return writeAll(fd, copy); });
}

ErrorCode ReadFile(FileHandle& file, char* buffer, std::size_t size, std::size_t& got) {
  got = 0;
  if (!file.slowMount_) return readSome(int(file.handle_), buffer, size, got);
  const auto copy = std::make_shared<std::string>(size, '\0');
  const auto copied = std::make_shared<std::size_t>(0);
  const ErrorCode error = file.ask(
      [copy, copied](int fd) { return readSome(fd, copy->data(), copy->size(), *copied); });
  if (error != kSuccess) return error;
  got = *copied;
  std::copy_n(copy->data(), got, buffer);
  return kSuccess;
}

std::string GetHandlePath(const FileHandle& file, TextView path) {
  return hasAlias(file.handle_) ? aliasOf(file.handle_) : toBytes(path);
}

ErrorCode CloseHandle(FileHandle& file) { return file.close(); }

}  // namespace ombrelian::platform
