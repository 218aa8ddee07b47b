#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <algorithm>

#include "platform/Deleting.h"
#include "platform/ShellCodes.h"
#include "platform/Time.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/ObjectAt.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/Stat.h"
#include "platform/posix/TrashFolder.h"
#include "platform/posix/TrashRecord.h"

namespace ombrelian::platform {
namespace {

constexpr ErrorCode kNameIsTaken = kShellErrorOnDestination | kAlreadyExists;

// Names are counted up to the first; beyond it the clock gives the numbers, so that a bin that
// holds thousands of a name takes no longer than others.
constexpr int kCountedNames = 32;
constexpr int kMaxNames = 64;

/// What is to go, once it was found to be what was shown.
struct Source {
  const ObjectAt& at;
  const std::string path;  // absolute
  FindData data;
  std::uint64_t device = 0;  // of the folder that it lies in
};

ErrorCode sourceError(ErrorCode code) { return code == kAccessDenied ? kShellSourceDenied : code; }

ErrorCode binError(int error) { return kShellErrorOnDestination | translateErrno(error); }

bool isRealFolder(const FindData& data) { return data.isFolder() && !data.isReparse(); }

/// Whether something is mounted in the folder `source`. It would move with the folder, and be
/// emptied with the bin.
bool holdsMountPoint(const Source& source) {
  const std::string folder = pathOfFolder(source.at.folder());
  if (folder.empty()) return false;
  const std::string inside = (folder == "/" ? "" : folder) + "/" + source.at.name() + "/";
  const std::vector<Mount> mounts = readMounts();
  return std::any_of(mounts.begin(), mounts.end(),
                     [&](const Mount& mount) { return mount.mountPoint.starts_with(inside); });
}

ErrorCode check(Source& source) {
  if (source.at.error() != kSuccess) return sourceError(source.at.error());
  const ErrorCode error = source.at.read(source.data);
  if (error != kSuccess) return sourceError(error);
  if (source.data.dwReserved0 == kTagMountPoint) return kIsMountPoint;
  if (isRealFolder(source.data) && holdsMountPoint(source)) return kIsMountPoint;
  FileIdentity folder;
  if (const int asked = readIdentity(source.at.folder(), folder); asked != 0) {
    return sourceError(translateErrno(asked));
  }
  source.device = folder.device;
  return kSuccess;
}

/// Neither may the bin go into itself, nor what lies in it anew.
ErrorCode checkApart(const Source& source, const Trash& trash) {
  FileIdentity bin;
  if (const int error = readIdentity(trash.folder.get(), bin); error != 0) return binError(error);
  bool isSo = false;
  ErrorCode error = liesIn(source.at.folder(), bin, isSo);
  if (error != kSuccess) return sourceError(error);
  if (isSo) return kShellSourceInBin;
  if (!isRealFolder(source.data)) return kSuccess;
  error = liesIn(trash.folder.get(), source.data.identity, isSo);
  if (error != kSuccess) return kShellErrorOnDestination | error;
  return isSo ? kShellBinInSource : kSuccess;
}

/// Writes all and closes; returns 0 or errno.
int writeAndClose(Descriptor file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t size = write(file.get(), bytes.data(), bytes.size());
    if (size < 0 && errno != EINTR) return errno;
    if (size > 0) bytes.remove_prefix(std::size_t(size));
  }
  return close(file.release()) == 0 ? 0 : errno;
}

/// Makes the record `name`, which reserves the name of the object too. Returns 0 or errno; then
/// there is none.
int makeRecord(int info, const std::string& name, std::string_view content) {
  constexpr mode_t kOwnersOnly = 0600;
  constexpr int kNew = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  Descriptor file(openat(info, name.c_str(), kNew, kOwnersOnly));
  if (!file) return errno;
  const int error = writeAndClose(std::move(file), content);
  if (error != 0) unlinkat(info, name.c_str(), 0);
  return error;
}

/// Renames without ever replacing anything; returns 0 or errno.
int renameToNew(int fromFolder, const char* from, int toFolder, const char* to) {
  if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // A file system that cannot promise it. Whoever uses the bin makes the record first, and that is
  // ours, so that nobody takes the name between these two.
  struct stat told;
  if (fstatat(toFolder, to, &told, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  if (errno != ENOENT) return errno;
  return renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

/// Why the object could not be renamed, and whose fault it is.
ErrorCode moveError(const Source& source, int error) {
  switch (error) {
    case EEXIST:
    case ENOTEMPTY:
      return kNameIsTaken;
    case ENOSPC:
    case EDQUOT:
    case EMLINK:
    case ENAMETOOLONG:
      return binError(error);
    case ENOENT: {  // not gone if it is still there: then the bin is
      FindData data;
      const ErrorCode now = source.at.read(data);
      return now == kSuccess ? binError(error) : sourceError(now);
    }
    default:
      return sourceError(translateErrno(error));
  }
}

/// Whether what lies in the bin now is certainly something else than what was to go.
bool isAnother(const Source& source, const Trash& trash, const std::string& name) {
  FindData data;
  const int error = readFindData(trash.files.get(), name.c_str(), AT_SYMLINK_NOFOLLOW, 0, data);
  return error == 0 && !(data.identity == source.data.identity);
}

ErrorCode moveAs(const std::string& name, std::string_view record, const Source& source,
                 const Trash& trash) {
  const std::string recordName = name + std::string(kTrashInfoEnding);
  int error = makeRecord(trash.info.get(), recordName, record);
  if (error != 0) return binError(error);
  error = renameToNew(source.at.folder(), source.at.name(), trash.files.get(), name.c_str());
  const bool isWrong = error == 0 && isAnother(source, trash, name);
  if (isWrong &&
      renameToNew(trash.files.get(), name.c_str(), source.at.folder(), source.at.name()) != 0) {
    return kObjectReplaced;  // it stays in the bin, and its record with it
  }
  if (error == 0 && !isWrong) return kSuccess;
  unlinkat(trash.info.get(), recordName.c_str(), 0);
  return isWrong ? kObjectReplaced : moveError(source, error);
}

/// `path` is what the record tells.
ErrorCode moveTo(const Trash& trash, const Source& source, std::string_view path) {
  ErrorCode error = checkApart(source, trash);
  if (error != kSuccess) return error;
  const std::string record = trashRecord(path, GetLocalTime());
  for (int attempt = 1; attempt <= kMaxNames; ++attempt) {
    const std::uint64_t number =
        attempt <= kCountedNames ? std::uint64_t(attempt) : GetTickCount() + unsigned(attempt);
    error = moveAs(trashName(source.at.name(), number), record, source, trash);
    if (error != kNameIsTaken) break;
  }
  return error;
}

/// Path of the object below the folder `top`, which is open and lies `levels` above its folder.
/// Empty: not to be told, as both are longer than the kernel tells, and a link leads to it.
std::string pathBelow(const TopFolder& top, const std::string& topPath, const Source& source) {
  const std::string folder = pathOfFolder(source.at.folder());
  if (!folder.empty() && !topPath.empty()) {
    const std::string path = folder + "/" + source.at.name();
    return path.substr(path.find_first_not_of('/', topPath.size()));
  }
  std::size_t cut = source.path.size();
  for (std::size_t level = 0; level <= top.levels && cut != std::string::npos; ++level)
    cut = cut == 0 ? std::string::npos : source.path.rfind('/', cut - 1);
  if (cut == std::string::npos) return {};
  const PathAt shown(source.path.substr(0, std::max<std::size_t>(cut, 1)));
  const Descriptor opened(openat(shown.folder(), shown.name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  FileIdentity there;
  FileIdentity wanted;
  const bool isThere = shown.error() == 0 && opened && readIdentity(opened.get(), there) == 0 &&
                       readIdentity(top.folder.get(), wanted) == 0 && there == wanted;
  return isThere ? source.path.substr(cut + 1) : std::string();
}

ErrorCode moveToTop(const Source& source, Trash& trash) {
  TopFolder top;
  ErrorCode error = findTopFolder(source.at.folder(), top);
  if (error != kSuccess) return sourceError(error);
  const std::string topPath = pathOfFolder(top.folder.get());
  const std::string path = pathBelow(top, topPath, source);
  if (path.empty()) return kNameTooLong;
  error = openTopTrash(top.folder.get(), topPath, trash);
  return error == kSuccess ? moveTo(trash, source, path) : error;
}

bool isAboutBin(ErrorCode code) {
  return (code & kShellErrorOnDestination) != 0 || code == kShellBinInSource ||
         code == kShellSourceInBin;
}

}  // namespace

ErrorCode RecycleObject(const ShownObject& object, Text& detail) {
  detail.clear();
  if (object.path == u"/") return kShellSourceIsRoot;
  const ObjectAt at(object);
  Source source{at, toBytes(object.path), {}};
  ErrorCode error = check(source);
  if (error != kSuccess) return error;
  Trash trash;
  error = openHomeTrash(source.device, trash);
  if (error == kSuccess) error = moveTo(trash, source, source.path);
  // Even on one device a rename does not lead from one mount to another.
  if (error == kNotSameDevice) error = moveToTop(source, trash);
  if (isAboutBin(error)) detail = fromBytes(trash.path);
  return error;
}

}  // namespace ombrelian::platform
