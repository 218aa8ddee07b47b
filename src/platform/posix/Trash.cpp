#include "platform/Removal.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <algorithm>
#include <string_view>

#include "platform/ShellCodes.h"
#include "platform/Time.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/ObjectAt.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/PatientCalls.h"
#include "platform/posix/Stat.h"
#include "platform/posix/TrashFolder.h"
#include "platform/posix/TrashRecord.h"

namespace ombrelian::platform {
namespace {

constexpr ErrorCode kNameIsTaken = kShellErrorOnDestination | kAlreadyExists;

// The first kCountedNames names have the numbers from 1 on. The numbers of further names come from
// the clock, so that a bin with thousands of objects of one name is not slower than other bins.
constexpr int kCountedNames = 32;
constexpr int kMaxNames = 64;

/// The object to move, after the check that it is the shown object.
struct Source {
  const ObjectAt& at;
  const std::string path;  // absolute
  FindData data;
  std::uint64_t device = 0;  // device of the folder that holds the object
};

ErrorCode sourceError(ErrorCode code) { return code == kAccessDenied ? kShellSourceDenied : code; }

ErrorCode binError(int error) { return kShellErrorOnDestination | translateErrno(error); }

bool isRealFolder(const FindData& data) { return data.isFolder() && !data.isReparse(); }

/// Whether something is mounted in the folder `source`. The mount would move with the folder, and
/// its files would be removed when the bin is emptied. Also false for a folder so deep that its
/// mounts cannot be found by path.
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

/// Refuses to move the bin into itself, or an object of the bin into the bin again.
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

/// Writes all of `bytes` and closes `file`; returns 0 or errno.
int writeAndClose(Descriptor file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t size = write(file.get(), bytes.data(), bytes.size());
    if (size < 0 && errno != EINTR) return errno;
    if (size > 0) bytes.remove_prefix(std::size_t(size));
  }
  return close(file.release()) == 0 ? 0 : errno;
}

/// Makes the record `name`, which also reserves the name of the object. Returns 0, or errno if no
/// record was made.
int makeRecord(int info, const std::string& name, std::string_view content) {
  constexpr mode_t kOwnersOnly = 0600;
  constexpr int kNew = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  Descriptor file(openat(info, name.c_str(), kNew, kOwnersOnly));
  if (!file) return errno;
  const int error = writeAndClose(std::move(file), content);
  if (error != 0) unlinkat(info, name.c_str(), 0);
  return error;
}

/// Moves the object back, unless another object is in the old place now or the file system does not
/// support RENAME_NOREPLACE.
bool moveBack(const ObjectAt& at, int files, const char* name) {
  return renameat2(files, name, at.folder(), at.name(), RENAME_NOREPLACE) == 0;
}

/// Error of a failed rename; it shows whether the object or the bin is the cause.
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
    case ENOENT: {  // the object is gone; if it still exists, the bin is gone
      FindData data;
      const ErrorCode now = source.at.read(data);
      return now == kSuccess ? binError(error) : sourceError(now);
    }
    default:
      return sourceError(translateErrno(error));
  }
}

/// Whether the object in the bin is certainly not the object that was to be moved.
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
  // Every program that uses the bin makes the record first, and the record is ours, so no program
  // takes the name meanwhile.
  error = renameToNew(source.at.folder(), source.at.name(), trash.files.get(), name.c_str());
  const bool isWrong = error == 0 && isAnother(source, trash, name);
  if (error == 0 && !isWrong) return kSuccess;
  const bool isStillIn = isWrong && !moveBack(source.at, trash.files.get(), name.c_str());
  if (!isStillIn) unlinkat(trash.info.get(), recordName.c_str(), 0);
  return isWrong ? kObjectReplaced : moveError(source, error);
}

/// Moves the object into this bin; `path` is the path for the record.
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

/// Position of the separator before the last `count` components of the absolute `path`; npos: it
/// has fewer components.
std::size_t beginOfLast(std::string_view path, std::size_t count) {
  std::size_t begin = path.size();
  for (; count > 0; --count) {
    if (begin == 0) return std::string_view::npos;
    begin = path.rfind('/', begin - 1);
  }
  return begin;
}

bool isFolderAt(const std::string& path, int folder) {
  const PathAt at(path);
  if (at.error() != 0) return false;
  const Descriptor opened(openat(at.folder(), at.name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  FileIdentity there;
  FileIdentity wanted;
  return opened && readIdentity(opened.get(), there) == 0 && readIdentity(folder, wanted) == 0 &&
         there == wanted;
}

/// Path of the object below the folder `top`. Empty: the path cannot be found, because it is too
/// long for the kernel to report and a link in the shown path leads past `top`.
std::string pathBelow(const TopFolder& top, const std::string& topPath, const Source& source) {
  const std::string folder = pathOfFolder(source.at.folder());
  if (!folder.empty() && !topPath.empty()) {
    const std::string path = folder + "/" + source.at.name();
    return path.substr(path.find_first_not_of('/', topPath.size()));
  }
  const std::size_t begin = beginOfLast(source.path, top.levels + 1);
  if (begin == std::string::npos) return {};
  const std::string above = begin == 0 ? "/" : source.path.substr(0, begin);
  return isFolderAt(above, top.folder.get()) ? source.path.substr(begin + 1) : std::string();
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

ErrorCode recycle(const ShownObject& object, Text& detail) {
  const ObjectAt at(object);
  Source source{at, toBytes(object.path), {}};
  ErrorCode error = check(source);
  if (error != kSuccess) return error;
  Trash trash;
  error = openHomeTrash(source.device, trash);
  if (error == kSuccess) error = moveTo(trash, source, source.path);
  // A rename cannot cross from one mount to another, even on the same device.
  if (error == kNotSameDevice) error = moveToTop(source, trash);
  if (isAboutBin(error)) detail = fromBytes(trash.path);
  return error;
}

}  // namespace

ErrorCode RecycleObject(const ShownObject& object, Text& detail) {
  detail.clear();
  if (object.path == u"/") return kShellSourceIsRoot;
  // The object or the bin can be on a slow mount.
  const std::optional<std::string> mount = patientMountAround(object.path);
  using Answer = std::pair<ErrorCode, Text>;
  const auto move = [object] {
    Answer answer;
    answer.first = recycle(object, answer.second);
    return answer;
  };
  Answer answer = askPatiently(mount, move, Answer(kTimeout, Text()));
  detail = std::move(answer.second);
  return answer.first;
}

}  // namespace ombrelian::platform
