#pragma once

#include <optional>
#include <string>

#include "platform/posix/Mounts.h"

namespace ombrelian::platform {

/// Whether calls on a mount of this type may never return, because another machine or a process of
/// a user answers them.
bool mayHang(const Mount& mount);

/// Whether there is any mount whose calls may never return.
bool isAnyMountSlow();

/// The mount point through which `path` leads first if calls on it may never return; none: all of
/// the path is local. Links are followed, but nothing behind the mount point is accessed.
std::optional<std::string> slowMountOf(const std::string& path);

/// The slow mount that contains the folder `path` or is below it, if there is exactly one; empty:
/// none, or it is not known which.
std::string slowMountAround(const std::string& path);

}  // namespace ombrelian::platform
