#pragma once

#include <cstdint>
#include <string>

#include "platform/posix/ReadAhead.h"

namespace ombrelian::platform {

/// What the files of a file system lie on, as far as it matters for reading many folders. The later
/// ones set the pace where several make one device.
enum class Medium { Memory, SolidState, Network, Spinning };

/// What the block device lies on that sysfs describes in `folder`, which may stand for a partition
/// or for a device that is put together from others; then the slowest of those counts. Disks of a
/// virtual machine count as solid: what they say of themselves is a default that nobody chose.
/// Unknown devices do too.
Medium mediumOfBlockDevice(const std::string& folder);

/// What the file system of the open folder, on `device`, lies on.
Medium mediumOf(int folder, std::uint64_t device);

/// How to read a source on such a medium; `cores` is the number of processors.
ReadPlan planFor(Medium medium, unsigned cores);
ReadPlan planFor(int folder, std::uint64_t device);

}  // namespace ombrelian::platform
