#include "platform/Rename.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>

#include "platform/posix/Errors.h"
#include "platform/posix/ObjectAt.h"
#include "platform/posix/PatientCalls.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

using Replaced = std::optional<FileIdentity>;

bool isAt(int folder, const char* name, const FileIdentity& wanted) {
  FindData data;
  return readFindData(folder, name, AT_SYMLINK_NOFOLLOW, 0, data) == 0 && data.identity == wanted;
}

ErrorCode rename(const ObjectAt& at, const char* name, const Replaced& replaced) {
  if (!replaced) return translateErrno(renameToNew(at.folder(), at.name(), at.folder(), name));
  if (!isAt(at.folder(), name, *replaced)) return kObjectReplaced;
  const int result = renameat(at.folder(), at.name(), at.folder(), name);
  return result == 0 ? kSuccess : translateErrno(errno);
}

ErrorCode renameNow(const ShownObject& object, const std::string& name, const Replaced& replaced) {
  const ObjectAt at(object);
  if (at.error() != kSuccess) return at.error();
  FindData data;
  if (const ErrorCode error = at.read(data); error != kSuccess) return error;
  const ErrorCode error = rename(at, name.c_str(), replaced);
  if (error != kSuccess || isAt(at.folder(), name.c_str(), data.identity)) return error;
  // Another object took the place just before the call; it gets its name back.
  renameToNew(at.folder(), name.c_str(), at.folder(), at.name());
  return kObjectReplaced;
}

}  // namespace

ErrorCode RenameObject(const ShownObject& object, TextView name, const Replaced& replaced) {
  const auto rename = [object, name = toBytes(name), replaced] {
    return renameNow(object, name, replaced);
  };
  return askPatiently(patientMountOf(object.path), rename, kTimeout);
}

}  // namespace ombrelian::platform
