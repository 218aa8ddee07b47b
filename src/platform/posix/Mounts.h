#pragma once

#include <string>
#include <vector>

#include "support/Text.h"

namespace ombrelian::platform {

/// One line of the kernel's table of mounts. Texts are bytes as on the disk.
struct Mount {
  std::uint64_t device = 0;
  std::string root;        // folder of the file system that is mounted; "/" for all of it
  std::string mountPoint;  // absolute
  std::string type;        // such as "ext4"
  std::string source;      // device, or "server:/export"
};

/// The present table, in the kernel's order; empty where it cannot be read.
std::vector<Mount> readMounts();

/// The mount at `mountPoint`, the latest if several lie there; null: none.
const Mount* findMount(const std::vector<Mount>& mounts, const std::string& mountPoint);

/// The mount that holds the object at `path` (absolute) by the longest mount point; null: none.
const Mount* findMountHolding(const std::vector<Mount>& mounts, const std::string& path);

/// Source and, where not all of it is mounted, the folder of it in brackets.
std::string describeSource(const Mount& mount);

/// Whether the file system holds only what the kernel makes up, such as proc.
bool isPseudoFileSystem(const std::string& type);

/// Whether its files lie on another machine.
bool isNetworkFileSystem(const std::string& type);

}  // namespace ombrelian::platform
