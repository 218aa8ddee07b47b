#include "platform/Removal.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/Errors.h"
#include "platform/posix/ObjectAt.h"

namespace ombrelian::platform {
namespace {

constexpr mode_t kMayRemoveFrom = S_IWUSR | S_IXUSR;

/// Removes one object; `flags` are those of unlinkat.
ErrorCode removeOne(const ShownObject& object, int flags) {
  const ObjectAt at(object);
  if (at.error() != kSuccess) return at.error();
  FindData data;
  if (const ErrorCode error = at.read(data); error != kSuccess) return error;
  if (data.dwReserved0 == kTagMountPoint) return kIsMountPoint;
  return unlinkat(at.folder(), at.name(), flags) == 0 ? kSuccess : translateErrno(errno);
}

}  // namespace

ErrorCode DeleteFileW(const ShownObject& object) { return removeOne(object, 0); }

ErrorCode RemoveDirectoryW(const ShownObject& object) { return removeOne(object, AT_REMOVEDIR); }

ForcedRights::ForcedRights(const ShownObject& object) {
  const ObjectAt at(object);
  error_ = at.error();
  if (error_ != kSuccess) return;
  struct stat told;
  if (fstat(at.folder(), &told) != 0) {
    error_ = translateErrno(errno);
    return;
  }
  if ((told.st_mode & kMayRemoveFrom) == kMayRemoveFrom) return;
  if (!changeMode(at.folder(), told.st_mode | kMayRemoveFrom)) {
    error_ = translateErrno(errno);
    return;
  }
  mode_ = told.st_mode;
  folder_ = fcntl(at.folder(), F_DUPFD_CLOEXEC, 0);
}

ForcedRights::~ForcedRights() {
  if (folder_ == kNone) return;
  changeMode(int(folder_), mode_);
  close(int(folder_));
}

}  // namespace ombrelian::platform
