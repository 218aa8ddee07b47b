#pragma once

#include <sys/stat.h>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// Asks for all that a FindData holds about `name` below `folder`. `flags` as statx takes them,
/// with AT_SYMLINK_NOFOLLOW where a link counts itself. `parentDevice`, if not 0, tells mount
/// points apart on kernels that do not say. Returns 0 or errno; then `data` is untouched.
int readFindData(int folder, const char* name, int flags, std::uint64_t parentDevice,
                 FindData& data);

/// Identity of an open object; returns 0 or errno.
int readIdentity(int fd, FileIdentity& identity);

/// The best guess where only the kind of the entry is known (DT_DIR and so on of dirent.h).
void fillFromKind(unsigned char kind, const char* name, FindData& data);

}  // namespace ombrelian::platform
