#pragma once

#include <optional>
#include <string>

#include "platform/posix/Mounts.h"

namespace ombrelian::platform {

/// Whether calls on a mount of this type may never return, because another machine or a process of
/// a user answers them.
bool mayHang(const Mount& mount);

/// Whether there is a mount whose calls may never return, except for mounts of the system and of
/// the desktop that hold no files of their own. Walks do not enter these.
bool isAnyMountSlow();

/// The mount point through which `path` leads first if calls on it may never return; none: all of
/// the path is local. Links are followed, but nothing behind the mount point is accessed.
std::optional<std::string> slowMountOf(const std::string& path);

/// The only slow mount below the folder `path`; empty: there is none or more than one.
std::string slowMountBelow(const std::string& path);

}  // namespace ombrelian::platform
