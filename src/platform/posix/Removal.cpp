#include "platform/Removal.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/Errors.h"
#include "platform/posix/ObjectAt.h"
#include "platform/posix/PatientCalls.h"

namespace ombrelian::platform {
namespace {

constexpr mode_t kMayRemoveFrom = S_IWUSR | S_IXUSR;

/// Removes one object; `flags` are those of unlinkat.
ErrorCode removeNow(const ShownObject& object, int flags) {
  const ObjectAt at(object);
  if (at.error() != kSuccess) return at.error();
  FindData data;
  if (const ErrorCode error = at.read(data); error != kSuccess) return error;
  if (data.dwReserved0 == kTagMountPoint) return kIsMountPoint;
  return unlinkat(at.folder(), at.name(), flags) == 0 ? kSuccess : translateErrno(errno);
}

ErrorCode removeOne(const ShownObject& object, int flags) {
  const auto remove = [object, flags] { return removeNow(object, flags); };
  return askPatiently(patientMountOf(object.path), remove, kTimeout);
}

/// A folder whose mode was changed; none: there was nothing to change.
struct ForcedFolder {
  ErrorCode error = kSuccess;
  Descriptor folder;
  mode_t mode = 0;  // the mode before
};

ForcedFolder makeWritable(const ShownObject& object) {
  const ObjectAt at(object);
  if (at.error() != kSuccess) return {at.error(), {}};
  struct stat told;
  if (fstat(at.folder(), &told) != 0) return {translateErrno(errno), {}};
  if ((told.st_mode & kMayRemoveFrom) == kMayRemoveFrom) return {};
  if (!changeMode(at.folder(), told.st_mode | kMayRemoveFrom)) return {translateErrno(errno), {}};
  return {kSuccess, Descriptor(fcntl(at.folder(), F_DUPFD_CLOEXEC, 0)), told.st_mode};
}

}  // namespace

ErrorCode DeleteFileW(const ShownObject& object) { return removeOne(object, 0); }

ErrorCode RemoveDirectoryW(const ShownObject& object) { return removeOne(object, AT_REMOVEDIR); }

ForcedRights::ForcedRights(const ShownObject& object) : path_(object.path) {
  const auto force = [object] { return makeWritable(object); };
  ForcedFolder forced = askPatiently(patientMountOf(path_), force, ForcedFolder{kTimeout, {}});
  error_ = forced.error;
  mode_ = forced.mode;
  folder_ = forced.folder.release();
}

ForcedRights::~ForcedRights() {
  if (folder_ == kNone) return;
  const auto folder = std::make_shared<Descriptor>(int(folder_));
  const auto restore = [folder, mode = mode_] { return changeMode(folder->get(), mode); };
  askPatiently(patientMountOf(path_), restore, false);
}

}  // namespace ombrelian::platform
