#pragma once

#include <cstdint>
#include <string>

#include "platform/posix/ReadAhead.h"

namespace ombrelian::platform {

/// Kind of the medium of a file system, as far as it matters for reading many folders. Later values
/// are slower: if a device consists of several media, the latest value counts.
enum class Medium { Memory, SolidState, Network, Spinning };

/// Medium of the block device that sysfs describes in `folder`. The device may be a partition, or
/// it may consist of other devices; then the slowest of them counts. Disks of a virtual machine
/// count as solid state, because the value that they report is a default that nobody chose. Unknown
/// devices count as solid state too.
Medium mediumOfBlockDevice(const std::string& folder);

/// Medium of the file system that contains the open folder on `device`.
Medium mediumOf(int folder, std::uint64_t device);

/// Plan for reading a source on this medium; `cores` is the number of processors.
ReadPlan planFor(Medium medium, unsigned cores);
ReadPlan planFor(int folder, std::uint64_t device);

/// Number of descriptors that this process may have. A lower limit of the process is raised as far
/// as the system allows it without rights and as a walk can use it.
std::size_t descriptorLimit();

/// Reduces a plan so that it needs at most `limit` descriptors with those of the rest of the
/// program.
void fitToDescriptors(ReadPlan& plan, std::size_t limit);

}  // namespace ombrelian::platform
