#include "platform/posix/ObjectAt.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <algorithm>

#include "platform/posix/Errors.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/Retried.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

constexpr int kPathOnly = O_PATH | O_DIRECTORY | O_CLOEXEC;

}  // namespace

ObjectAt::ObjectAt(const ShownObject& object) : identity_(object.identity) {
  error_ = open(object);
}

ErrorCode ObjectAt::open(const ShownObject& object) {
  const TextView path = object.path;
  const auto last = path.rfind(u'/');
  if (last == TextView::npos) return kPathNotFound;
  if (last + 1 == path.size()) return kIsMountPoint;  // the root folder "/"
  name_ = toBytes(path.substr(last + 1));
  const TextView folder = path.substr(0, std::max<std::size_t>(last, 1));
  const TextView trusted = folder.substr(0, std::max<std::size_t>(object.linksUpTo, 1));
  const PathAt at(trusted);
  if (at.error() != 0) return translateErrno(at.error());
  folder_ = Descriptor(retried([&] { return openat(at.folder(), at.name(), kPathOnly); }));
  const std::string bytes = toBytes(folder.substr(trusted.size()));
  std::string_view rest = bytes;
  while (folder_) {
    const std::string component = takeComponent(rest);
    if (component.empty()) return kSuccess;
    folder_ = Descriptor(
        retried([&] { return openat(folder_.get(), component.c_str(), kPathOnly | O_NOFOLLOW); }));
    if (!folder_ && (errno == ENOTDIR || errno == ELOOP)) return kObjectReplaced;
  }
  return errno == ENOENT ? kPathNotFound : translateErrno(errno);
}

ErrorCode ObjectAt::read(FindData& data) const {
  FileIdentity parent;
  int error = readIdentity(folder(), parent);
  if (error == 0) error = readFindData(folder(), name(), AT_SYMLINK_NOFOLLOW, parent.device, data);
  if (error != 0) return translateErrno(error);
  const bool isAnother = identity_.index != 0 && !(data.identity == identity_);
  return isAnother ? kObjectReplaced : kSuccess;
}

int renameToNew(int fromFolder, const char* from, int toFolder, const char* to) {
  if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // This file system does not support RENAME_NOREPLACE, so another program can take the name
  // between the next two calls.
  struct stat told;
  if (fstatat(toFolder, to, &told, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  if (errno != ENOENT) return errno;
  return renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

bool changeMode(int folder, unsigned mode) {
  // fchmod does not accept a descriptor opened with O_PATH. This name always leads to the open
  // folder, so no other object can take its place.
  const std::string name = "/proc/self/fd/" + std::to_string(folder);
  return fchmodat(AT_FDCWD, name.c_str(), mode & 07777, 0) == 0;
}

}  // namespace ombrelian::platform
