#include "platform/Volumes.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cstdio>

#include "platform/Files.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PathAt.h"

namespace ombrelian::platform {
namespace {

std::string normalRoot(TextView root) {
  std::string bytes = toBytes(root);
  while (bytes.size() > 1 && bytes.back() == '/')
    bytes.pop_back();
  return bytes;
}

/// A flag file of the block device or, for a partition, of the disk that it lies on.
bool blockFlag(std::uint64_t device, const char* flag) {
  const std::string base =
      "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device)) + "/";
  for (const char* const where : {"", "../"}) {
    FILE* const file = std::fopen((base + where + flag).c_str(), "re");
    if (file == nullptr) continue;
    const int value = std::fgetc(file);
    std::fclose(file);
    return value == '1';
  }
  return false;
}

bool isOptical(const std::string& type) { return type == "iso9660" || type == "udf"; }

bool keepsOwners(const std::string& type) {
  const std::string_view without[] = {"vfat", "msdos", "exfat", "iso9660", "udf"};
  return std::find(std::begin(without), std::end(without), type) == std::end(without);
}

/// udev writes a character of a label that a file name should not hold as \xHH.
std::string decodeLabel(const char* name) {
  std::string label;
  for (const char* at = name; *at != '\0'; ++at) {
    unsigned code = 0;
    if (at[0] == '\\' && at[1] == 'x' && std::sscanf(at + 2, "%2x", &code) == 1) {
      label.push_back(char(code));
      at += 3;
    } else {
      label.push_back(*at);
    }
  }
  return label;
}

/// The name of the link to the device among the links by label.
Text labelOf(std::uint64_t device) {
  DIR* const links = opendir("/dev/disk/by-label");
  if (links == nullptr) return {};
  Text label;
  while (const dirent* const link = readdir(links)) {
    struct stat told;
    if (fstatat(dirfd(links), link->d_name, &told, 0) == 0 && S_ISBLK(told.st_mode) &&
        told.st_rdev == device) {
      label = fromBytes(decodeLabel(link->d_name));
    }
  }
  closedir(links);
  return label;
}

bool isRealDrive(const Mount& mount) {
  // A mounted single file, as containers have them, is no drive.
  struct stat told;
  return !isPseudoFileSystem(mount.type) &&
         (isNetworkFileSystem(mount.type) ||
          (stat(mount.mountPoint.c_str(), &told) == 0 && S_ISDIR(told.st_mode)));
}

}  // namespace

bool IsDriveRoot(TextView path) {
  if (path == u"/") return true;
  const std::vector<Mount> mounts = readMounts();
  const Mount* const mount = findMount(mounts, normalRoot(path));
  return mount != nullptr && !isPseudoFileSystem(mount->type) && mount->root == "/";
}

int GetDriveTypeW(TextView root) {
  const std::vector<Mount> mounts = readMounts();
  const Mount* const mount = findMount(mounts, normalRoot(root));
  if (mount == nullptr) return kDriveNoRoot;
  if (isPseudoFileSystem(mount->type)) return kDriveUnknown;
  if (isNetworkFileSystem(mount->type)) return kDriveRemote;
  if (isOptical(mount->type)) return kDriveCdRom;
  if (mount->type == "tmpfs" || mount->type == "ramfs") return kDriveRamDisk;
  return blockFlag(mount->device, "removable") ? kDriveRemovable : kDriveFixed;
}

ErrorCode GetVolumeInformationW(TextView path, VolumeInformation& information) {
  FindData data;
  const ErrorCode error = GetFileInformation(path, data);
  if (error != kSuccess) return error;
  const std::vector<Mount> mounts = readMounts();
  const Text resolved = GetFinalPathNameW(path);
  const Mount* mount = findMountHolding(mounts, toBytes(resolved.empty() ? path : resolved));
  if (mount == nullptr) {
    // A changed root hides its own mount; what a system runs on keeps owners.
    information.fileSystem = u"?";
    information.keepsOwners = true;
    return kSuccess;
  }
  information.fileSystem = fromBytes(mount->type);
  information.keepsOwners = keepsOwners(mount->type);
  information.label = labelOf(mount->device);
  return kSuccess;
}

std::vector<Text> GetLogicalDriveStringsW() {
  std::vector<Text> roots;
  std::vector<Mount> mounts = readMounts();
  for (const Mount& mount : mounts) {
    if (mount.root != "/" || !isRealDrive(mount)) continue;
    const Text root = fromBytes(mount.mountPoint);
    if (std::find(roots.begin(), roots.end(), root) == roots.end()) roots.push_back(root);
  }
  return roots;
}

}  // namespace ombrelian::platform
