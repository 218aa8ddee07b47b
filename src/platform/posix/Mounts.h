#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/Text.h"

namespace ombrelian::platform {

/// One line of the kernel's table of mounts. Paths have the same bytes as on the disk.
struct Mount {
  std::uint64_t device = 0;
  std::string root;        // mounted folder of the file system; "/": the whole file system
  std::string mountPoint;  // absolute
  std::string type;        // such as "ext4"
  std::string source;      // device, or "server:/export"
};

/// The current table of mounts, in the order of the kernel; empty if it cannot be read, and `error`
/// is then the errno.
std::vector<Mount> readMounts(int* error = nullptr);

/// The mount at `mountPoint`, and the latest one if there are several; null: none.
const Mount* findMount(const std::vector<Mount>& mounts, const std::string& mountPoint);

/// The mount that contains the object at `path` (absolute): the one with the longest mount point;
/// null: none.
const Mount* findMountHolding(const std::vector<Mount>& mounts, const std::string& path);

/// Whether `folder` is `path` or a folder above it, by the text of the two absolute paths.
bool holds(std::string_view folder, std::string_view path);

/// The source of the mount. If only a folder of it is mounted, that folder follows in brackets.
std::string describeSource(const Mount& mount);

/// Whether the file system contains only objects that the kernel generates, such as proc.
bool isPseudoFileSystem(const std::string& type);

/// Whether the files of this file system are on another machine.
bool isNetworkFileSystem(const std::string& type);

}  // namespace ombrelian::platform
