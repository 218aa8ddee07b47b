#include "platform/posix/Home.h"

#include <errno.h>
#include <fcntl.h>
#include <pwd.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "platform/Process.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/Stat.h"
#include "platform/posix/TrashFolder.h"

namespace ombrelian::platform {
namespace {

constexpr int kFolderOnly = O_PATH | O_DIRECTORY | O_CLOEXEC;
constexpr const char* kFolderVariables[] = {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                                            "XDG_RUNTIME_DIR"};

/// The folder `path`, or the nearest folder above it that exists.
Descriptor openNearest(std::string path) {
  Descriptor folder;
  for (;;) {
    folder = Descriptor(open(path.empty() ? "/" : path.c_str(), kFolderOnly));
    if (folder || path.empty()) return folder;
    path.resize(path.rfind('/'));
  }
}

/// Whether a user other than the administrator may make or replace objects in the folder. In a
/// sticky folder he may not replace those of others, which is enough if `isOnTheWay`.
bool isOpenToOthers(const struct stat& folder, uid_t root, bool isOnTheWay) {
  // In a container the root may belong to an account that the container does not know.
  if (folder.st_uid != 0 && folder.st_uid != root) return true;
  const bool mayOthersWrite =
      (folder.st_mode & S_IWOTH) != 0 || ((folder.st_mode & S_IWGRP) != 0 && folder.st_gid != 0);
  return mayOthersWrite && !(isOnTheWay && (folder.st_mode & S_ISVTX) != 0);
}

/// Whether a user other than the administrator could put something else at `path`, or into the
/// folder there, because of the folders on the way.
bool isControlledByOthers(const std::string& path) {
  struct stat root;
  struct stat told;
  Descriptor folder = openNearest(path);
  if (!folder || stat("/", &root) != 0) return true;
  for (bool isOnTheWay = false; fstat(folder.get(), &told) == 0; isOnTheWay = true) {
    if (isOpenToOthers(told, root.st_uid, isOnTheWay)) return true;
    if (told.st_ino == root.st_ino && told.st_dev == root.st_dev) return false;
    Descriptor above(openat(folder.get(), "..", kFolderOnly));
    if (!above) return true;
    folder = std::move(above);
  }
  return true;
}

bool isUsable(const std::string& path) {
  return path.starts_with('/') && (geteuid() != 0 || !isControlledByOthers(path));
}

std::string withoutFinalSeparator(std::string path) {
  while (path.size() > 1 && path.ends_with('/'))
    path.pop_back();
  return path;
}

}  // namespace

std::string environmentVariable(const char* name) {
  const char* const value = getenv(name);
  return value != nullptr ? value : "";
}

std::string accountHome() {
  std::vector<char> buffer(1024);
  struct passwd entry;
  struct passwd* found = nullptr;
  while (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE)
    buffer.resize(buffer.size() * 2);
  const std::string home = found != nullptr ? found->pw_dir : "";
  return home.starts_with('/') ? withoutFinalSeparator(home) : std::string();
}

std::string homeFolder() {
  const std::string home = environmentVariable("HOME");
  return isUsable(home) ? withoutFinalSeparator(home) : accountHome();
}

std::string userFolder(const char* name, const char* inHome) {
  const std::string folder = environmentVariable(name);
  if (isUsable(folder)) return withoutFinalSeparator(folder);
  const std::string home = homeFolder();
  if (home.empty()) return {};
  return home == "/" ? inHome : home + inHome;
}

bool isInHome(int folder) {
  const std::string path = accountHome();
  const Descriptor home(path.empty() ? -1 : open(path.c_str(), kFolderOnly));
  FileIdentity identity;
  bool result = false;
  return home && readIdentity(home.get(), identity) == 0 &&
         liesIn(folder, identity, result) == kSuccess && result;
}

std::vector<UnusedFolder> GetUnusedFolders() {
  std::vector<UnusedFolder> unused;
  for (const char* const name : kFolderVariables) {
    const std::string folder = environmentVariable(name);
    if (!folder.empty() && !isUsable(folder))
      unused.push_back({fromBytes(name), fromBytes(folder), folder.starts_with('/')});
  }
  return unused;
}

}  // namespace ombrelian::platform
