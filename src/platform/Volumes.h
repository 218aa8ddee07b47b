#pragma once

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

/// Whether `path` names a drive's root: a mount point of a real file system, or a drive letter.
/// Asks no medium.
bool IsDriveRoot(TextView path);

/// Kind of the drive whose root is `root`, one of the constants above. Asks no medium.
int GetDriveTypeW(TextView root);

/// What is known of the volume that holds `path`.
struct VolumeInformation {
  Text label;                // empty: none
  Text fileSystem;           // such as "ext4" or "NTFS"
  bool keepsOwners = false;  // false on FAT, exFAT and optical discs
};

ErrorCode GetVolumeInformationW(TextView path, VolumeInformation& information);

/// Roots of all drives, in the system's order.
std::vector<Text> GetLogicalDriveStringsW();

}  // namespace ombrelian::platform
