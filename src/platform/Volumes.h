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

/// Asks no medium if `path` is a drive's root.
ErrorCode GetVolumeInformationW(TextView path, VolumeInformation& information);

/// Roots of all drives, in the system's order. A drive that does not answer is one of them.
std::vector<Text> GetLogicalDriveStringsW();

struct DiskSpace {
  std::int64_t freeBytes = 0;  // bytes in no use, also those that only the superuser may fill
  std::int64_t totalBytes = 0;
  std::int64_t clusterBytes = 0;  // bytes that a file takes at least
};

/// What a drive said, or why it said nothing.
struct DriveAnswer {
  ErrorCode error = kTimeout;
  DiskSpace space;
};

/// Asks the drives with these roots for their space, all at once, and waits `milliseconds` at the
/// most for all of them together. One that says nothing gives kTimeout; while its question is open
/// it is not asked again and, in later calls, not waited for. The answers come in the order of
/// `roots`. For one thread only.
std::vector<DriveAnswer> ProbeDrives(const std::vector<Text>& roots, unsigned milliseconds);

/// Where the network drive with that root has its files, such as "//server/share" or
/// "server:/export"; empty: it is no network drive. Asks nobody.
Text WNetGetConnectionW(TextView root);

/// Root of the drive that has its files at the network path, final separators aside; empty: there
/// is none. Asks nobody.
Text FindNetworkDrive(TextView networkPath);

}  // namespace ombrelian::platform
