#include "platform/Volumes.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cstdio>

#include "platform/Files.h"
#include "platform/posix/CMemory.h"
#include "platform/posix/DriveProber.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Mounts.h"

namespace ombrelian::platform {
namespace {

std::string normalRoot(TextView root) {
  std::string bytes = toBytes(root);
  while (bytes.size() > 1 && bytes.back() == '/')
    bytes.pop_back();
  return bytes;
}

/// Value of a flag file of the block device or, for a partition, of its disk.
bool blockFlag(std::uint64_t device, const char* flag) {
  const std::string base =
      "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device)) + "/";
  for (const char* const where : {"", "../"}) {
    const CFile file = openForReading((base + where + flag).c_str());
    if (file != nullptr) return std::fgetc(file.get()) == '1';
  }
  return false;
}

bool isOptical(const std::string& type) { return type == "iso9660" || type == "udf"; }

bool keepsOwners(const std::string& type) {
  const std::string_view without[] = {"vfat", "msdos", "exfat", "iso9660", "udf"};
  return std::find(std::begin(without), std::end(without), type) == std::end(without);
}

/// Decodes a label. udev writes characters that a file name should not contain as \xHH.
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

/// Label of the device: the name of the link to it in the folder by-label.
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

DriveProber& drives() {
  static DriveProber prober(askDrive);
  return prober;
}

/// Whether the mount belongs to the running system: memory in which the system keeps its state.
bool isOfSystem(const Mount& mount) {
  if (mount.type != "tmpfs" && mount.type != "ramfs" && mount.type != "devtmpfs") return false;
  const std::string_view places[] = {"/sys", "/proc", "/dev", "/run"};
  return std::any_of(std::begin(places), std::end(places),
                     [&](std::string_view place) { return holds(place, mount.mountPoint); });
}

/// Whether the mount can be a drive: a whole file system of a suitable type can, a mounted part of
/// one cannot.
bool canBeDrive(const Mount& mount) {
  return mount.root == "/" && !isPseudoFileSystem(mount.type) && !isOfSystem(mount);
}

/// Whether the report of a mount allows a drive there. A mount is not a drive if it is hidden by
/// another mount or by a folder without access, or if it is a single file, as in containers. A
/// network drive that denies access is still a drive, and so is a mount that does not answer.
bool isDrive(const Mount& mount, const DriveReport& told) {
  if (told.error == kAccessDenied) return isNetworkFileSystem(mount.type);
  return told.isFolder && !isMissing(told.error);
}

Text withoutFinalSlash(TextView path) {
  while (path.size() > 1 && path.back() == u'/')
    path.remove_suffix(1);
  return Text(path);
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
  if (mount == nullptr) return normalRoot(root) == "/" ? kDriveFixed : kDriveNoRoot;
  if (isPseudoFileSystem(mount->type)) return kDriveUnknown;
  if (isNetworkFileSystem(mount->type)) return kDriveRemote;
  if (isOptical(mount->type)) return kDriveCdRom;
  if (mount->type == "tmpfs" || mount->type == "ramfs") return kDriveRamDisk;
  return blockFlag(mount->device, "removable") ? kDriveRemovable : kDriveFixed;
}

ErrorCode GetVolumeInformationW(TextView path, VolumeInformation& information) {
  const std::vector<Mount> mounts = readMounts();
  const Mount* mount = findMount(mounts, normalRoot(path));
  if (mount == nullptr) {
    FindData data;
    const ErrorCode error = GetFileInformation(path, data);
    if (error != kSuccess) return error;
    const Text resolved = GetFinalPathNameW(path);
    mount = findMountHolding(mounts, toBytes(resolved.empty() ? path : resolved));
  }
  if (mount == nullptr) {
    // If the root was changed (chroot), its own mount is not in the table. The file system of a
    // running system keeps owners.
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
  constexpr std::chrono::milliseconds kLimit(300);
  std::vector<Mount> mounts = readMounts();
  std::erase_if(mounts, [](const Mount& mount) { return !canBeDrive(mount); });
  std::vector<std::string> points(mounts.size());
  std::transform(mounts.begin(), mounts.end(), points.begin(),
                 [](const Mount& mount) { return mount.mountPoint; });
  const std::vector<DriveReport> told = drives().ask(points, kLimit);
  std::vector<const Mount*> found;  // one for each device: the mount with the shortest path
  for (std::size_t i = 0; i < mounts.size(); ++i) {
    const Mount& mount = mounts[i];
    if (!isDrive(mount, told[i])) continue;
    const auto same = std::find_if(found.begin(), found.end(), [&](const Mount* known) {
      return known->device == mount.device || known->mountPoint == mount.mountPoint;
    });
    if (same == found.end()) {
      found.push_back(&mount);
    } else if (mount.mountPoint.size() < (*same)->mountPoint.size()) {
      *same = &mount;
    }
  }
  std::vector<Text> roots(found.size());
  std::transform(found.begin(), found.end(), roots.begin(),
                 [](const Mount* mount) { return fromBytes(mount->mountPoint); });
  // If the root was changed (chroot), its own mount may be missing from the table, or may be only a
  // part of a file system.
  if (std::find(roots.begin(), roots.end(), u"/") == roots.end()) roots.insert(roots.begin(), u"/");
  return roots;
}

std::vector<Text> AllMountPoints() {
  std::vector<Text> points;
  for (const Mount& mount : readMounts()) {
    Text point = fromBytes(mount.mountPoint);
    if (std::find(points.begin(), points.end(), point) == points.end())
      points.push_back(std::move(point));
  }
  return points;
}

std::vector<Text> OtherMountPoints(TextView root) {
  const std::vector<Mount> mounts = readMounts();
  const Mount* const shown = findMount(mounts, normalRoot(root));
  std::vector<Text> others;
  if (shown == nullptr) return others;
  for (const Mount& mount : mounts) {
    if (mount.device == shown->device && mount.mountPoint != shown->mountPoint)
      others.push_back(fromBytes(mount.mountPoint));
  }
  return others;
}

std::vector<DriveAnswer> ProbeDrives(const std::vector<Text>& roots, unsigned milliseconds) {
  std::vector<std::string> points(roots.size());
  std::transform(roots.begin(), roots.end(), points.begin(), normalRoot);
  const std::vector<DriveReport> told =
      drives().ask(points, std::chrono::milliseconds(milliseconds));
  return {told.begin(), told.end()};
}

Text WNetGetConnectionW(TextView root) {
  const std::vector<Mount> mounts = readMounts();
  const Mount* const mount = findMount(mounts, normalRoot(root));
  const bool isRemote = mount != nullptr && isNetworkFileSystem(mount->type);
  return isRemote ? fromBytes(mount->source) : Text();
}

Text FindNetworkDrive(TextView networkPath) {
  const Text wanted = withoutFinalSlash(networkPath);
  for (const Mount& mount : readMounts()) {
    if (!isNetworkFileSystem(mount.type)) continue;
    if (withoutFinalSlash(fromBytes(mount.source)) == wanted) return fromBytes(mount.mountPoint);
  }
  return {};
}

}  // namespace ombrelian::platform
