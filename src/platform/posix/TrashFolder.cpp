#include "platform/posix/TrashFolder.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>

#include <algorithm>
#include <string_view>

#include "platform/Removal.h"
#include "platform/posix/Errors.h"
#include "platform/posix/FoldersAbove.h"
#include "platform/posix/Home.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

constexpr int kPathOnly = O_PATH | O_DIRECTORY | O_CLOEXEC;
constexpr mode_t kOwnersOnly = 0700;

ErrorCode binError(int error) { return kShellErrorOnDestination | translateErrno(error); }

/// One folder on the path from a folder up to the root.
struct Level {
  Descriptor folder;
  FileIdentity identity;
  bool isMountRoot = false;  // also false on kernels that do not report it
};

/// Opens `name` below `folder` as a level. Returns 0 or errno.
int openLevel(int folder, const char* name, Level& level) {
  level.folder = Descriptor(openat(folder, name, kPathOnly));
  if (!level.folder) return errno;
  FindData data;
  const int error = readFindData(level.folder.get(), "", AT_EMPTY_PATH, 0, data);
  level.identity = data.identity;
  level.isMountRoot = data.dwReserved0 == kTagMountPoint;
  return error;
}

/// Folder for the data that all programs store for this user, without final separator; empty: none.
std::string dataFolder() { return userFolder("XDG_DATA_HOME", "/.local/share"); }

bool isOn(int folder, std::uint64_t device) {
  FileIdentity identity;
  return readIdentity(folder, identity) == 0 && identity.device == device;
}

/// Opens the folder `path`. Missing folders are made, but only on the file system `device`.
ErrorCode openDataFolder(std::string_view path, std::uint64_t device, Descriptor& folder) {
  folder = Descriptor(open("/", kPathOnly));
  while (folder) {
    const std::string step = takeComponent(path);
    if (step.empty()) return kSuccess;
    Descriptor next(openat(folder.get(), step.c_str(), kPathOnly));
    if (!next && errno == ENOENT) {
      if (!isOn(folder.get(), device)) return kNotSameDevice;
      const bool isMade = mkdirat(folder.get(), step.c_str(), kOwnersOnly) == 0;
      if (!isMade && errno != EEXIST) return binError(errno);
      next = Descriptor(openat(folder.get(), step.c_str(), kPathOnly));
    }
    if (!next) return binError(errno);
    folder = std::move(next);
  }
  return binError(errno);
}

/// Opens a folder of a bin and makes it if it is missing. A link, a folder of another user and a
/// folder in which others may write are refused.
ErrorCode openOwn(int parent, const std::string& name, Descriptor& folder) {
  constexpr int kFlags = kPathOnly | O_NOFOLLOW;
  folder = Descriptor(openat(parent, name.c_str(), kFlags));
  if (!folder && errno == ENOENT) {
    if (mkdirat(parent, name.c_str(), kOwnersOnly) != 0 && errno != EEXIST) return binError(errno);
    folder = Descriptor(openat(parent, name.c_str(), kFlags));
  }
  struct stat told;
  if (!folder || fstat(folder.get(), &told) != 0) return binError(errno);
  const bool isPrivate = told.st_uid == geteuid() && (told.st_mode & (S_IWGRP | S_IWOTH)) == 0;
  return isPrivate ? kSuccess : binError(EACCES);
}

/// The same as openOwn for a folder in which objects or records are made.
ErrorCode openWritable(int parent, const std::string& name, Descriptor& folder) {
  const ErrorCode error = openOwn(parent, name, folder);
  if (error != kSuccess) return error;
  const int answer = faccessat(parent, name.c_str(), W_OK | X_OK, AT_EACCESS);
  return answer == 0 ? kSuccess : binError(errno);
}

ErrorCode openTrash(int parent, const std::string& name, Trash& trash) {
  ErrorCode error = openOwn(parent, name, trash.folder);
  if (error == kSuccess) error = openWritable(trash.folder.get(), "files", trash.files);
  if (error == kSuccess) error = openWritable(trash.folder.get(), "info", trash.info);
  return error;
}

/// Opens ".Trash" if it is safe: its sticky bit ensures that no user can change the folder of
/// another user. Otherwise the result is empty.
Descriptor openSharedTrash(int top) {
  Descriptor shared(openat(top, ".Trash", kPathOnly | O_NOFOLLOW));
  struct stat told;
  const bool isSafe = shared && fstat(shared.get(), &told) == 0 && (told.st_mode & S_ISVTX) != 0;
  return isSafe ? std::move(shared) : Descriptor();
}

}  // namespace

ErrorCode openHomeTrash(std::uint64_t device, Trash& trash) {
  const std::string data = dataFolder();
  if (data.empty()) return kNotSameDevice;
  trash.path = data + "/Trash";
  Descriptor folder;
  if (const ErrorCode error = openDataFolder(data, device, folder); error != kSuccess) return error;
  if (!isOn(folder.get(), device)) return kNotSameDevice;
  return openTrash(folder.get(), "Trash", trash);
}

ErrorCode openTopTrash(int top, const std::string& topPath, Trash& trash) {
  const std::string prefix = topPath.ends_with('/') ? topPath : topPath + "/";
  const std::string user = std::to_string(geteuid());
  if (const Descriptor shared = openSharedTrash(top)) {
    trash.path = prefix + ".Trash/" + user;
    if (openTrash(shared.get(), user, trash) == kSuccess) return kSuccess;
  }
  trash.path = prefix + ".Trash-" + user;
  return openTrash(top, ".Trash-" + user, trash);
}

ErrorCode findTopFolder(int folder, TopFolder& top) {
  Level level;
  int error = openLevel(folder, ".", level);
  while (error == 0 && !level.isMountRoot) {
    Level above;
    error = openLevel(level.folder.get(), "..", above);
    const bool isRoot = above.identity == level.identity;
    if (isRoot || above.identity.device != level.identity.device) break;
    level = std::move(above);
    ++top.levels;
  }
  if (error != 0) return translateErrno(error);
  top.folder = std::move(level.folder);
  return kSuccess;
}

ErrorCode liesIn(int folder, const FileIdentity& wanted, bool& result) {
  std::vector<FileIdentity> folders;
  const int error = addFoldersUpwards(folder, folders);
  result = std::find(folders.begin(), folders.end(), wanted) != folders.end();
  return result ? kSuccess : translateErrno(error);
}

std::string pathOfFolder(int folder) {
  const std::string link = "/proc/self/fd/" + std::to_string(folder);
  std::string path(PATH_MAX, '\0');
  const ssize_t size = readlink(link.c_str(), path.data(), path.size());
  if (size <= 0 || path.front() != '/') return {};
  path.resize(std::size_t(size));
  return path;
}

}  // namespace ombrelian::platform
