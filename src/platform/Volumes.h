#pragma once

#include <cstdint>
#include <vector>

#include "platform/SystemError.h"
#include "support/Text.h"

namespace ombrelian::platform {

inline constexpr int kDriveUnknown = 0;
inline constexpr int kDriveNoRoot = 1;  // nothing is mounted there
inline constexpr int kDriveRemovable = 2;
inline constexpr int kDriveFixed = 3;
inline constexpr int kDriveRemote = 4;
inline constexpr int kDriveCdRom = 5;
inline constexpr int kDriveRamDisk = 6;

/// Whether `path` is the root of a drive: a mount point of a real file system, or a drive letter.
/// Does not access the medium.
bool IsDriveRoot(TextView path);

/// Kind of the drive whose root is `root`, one of the constants above. Does not access the medium.
int GetDriveTypeW(TextView root);

/// Facts about the volume that contains `path`.
struct VolumeInformation {
  Text label;                // empty: none
  Text fileSystem;           // such as "ext4" or "NTFS"
  bool keepsOwners = false;  // false on FAT, exFAT and optical discs
};

/// Does not access the medium if `path` is the root of a drive.
ErrorCode GetVolumeInformationW(TextView path, VolumeInformation& information);

/// Roots of all drives, in the order of the system. Drives that do not answer are included.
std::vector<Text> GetLogicalDriveStringsW();

/// Every mount point of the system, each once, also those that are no drives.
std::vector<Text> AllMountPoints();

/// Where the device of the drive with this root is mounted too; does not access the medium.
std::vector<Text> OtherMountPoints(TextView root);

struct DiskSpace {
  std::int64_t freeBytes = 0;  // unused bytes, including those that only the superuser may fill
  std::int64_t totalBytes = 0;
  std::int64_t clusterBytes = 0;  // smallest number of bytes that a file uses
};

/// Answer of a drive, or the error if there is none.
struct DriveAnswer {
  ErrorCode error = kTimeout;
  DiskSpace space;
};

/// Asks the drives with these roots for their space, all at the same time, and waits at most
/// `milliseconds` for all of them together. A drive that does not answer gives kTimeout. While its
/// question is open, later calls neither ask it again nor wait for it. The answers are in the order
/// of `roots`. For one thread only.
std::vector<DriveAnswer> ProbeDrives(const std::vector<Text>& roots, unsigned milliseconds);

/// Network path of the files of the network drive with this root, such as "//server/share" or
/// "server:/export"; empty: it is not a network drive. Does not access the network.
Text WNetGetConnectionW(TextView root);

/// Root of the drive whose files are at the network path, without regard to final separators;
/// empty: there is none. Does not access the network.
Text FindNetworkDrive(TextView networkPath);

}  // namespace ombrelian::platform
