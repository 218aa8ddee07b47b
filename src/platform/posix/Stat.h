#pragma once

#include <sys/stat.h>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// Fills a FindData for `name` below `folder`. `flags` are those of statx, with AT_SYMLINK_NOFOLLOW
/// to read a link itself. `parentDevice`, if not 0, is used to recognise mount points on kernels
/// that do not report them. Returns 0 or errno; with errno, `data` does not change.
int readFindData(int folder, const char* name, int flags, std::uint64_t parentDevice,
                 FindData& data);

/// Identity of an open object; returns 0 or errno.
int readIdentity(int fd, FileIdentity& identity);

/// Fills `data` with the best guess if only the kind of the entry is known (DT_DIR and so on of
/// dirent.h).
void fillFromKind(unsigned char kind, const char* name, FindData& data);

}  // namespace ombrelian::platform
