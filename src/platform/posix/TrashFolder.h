#pragma once

#include <string>

#include "platform/FindData.h"
#include "platform/posix/Descriptor.h"

namespace ombrelian::platform {

/// A recycle bin as all desktops share it (freedesktop.org Trash 1.0): objects lie in "files", and
/// where they came from stands in "info". Its folders are open with O_PATH and belong to this user.
struct Trash {
  std::string path;  // path for messages; also set if there is no bin
  Descriptor folder;
  Descriptor files;
  Descriptor info;
};

// Whatever stands in the way of a bin comes back with kShellErrorOnDestination.

/// The bin in this user's home, made if missing. kNotSameDevice: it does not lie on the file system
/// `device`, so that nothing was made, or there is no home.
ErrorCode openHomeTrash(std::uint64_t device, Trash& trash);

/// This user's bin in the top folder of a file system: below ".Trash" if an administrator made that
/// safe to share, else ".Trash-" and the user's number, made if missing.
ErrorCode openTopTrash(int top, const std::string& topPath, Trash& trash);

/// The uppermost folder that an object can be renamed to.
struct TopFolder {
  Descriptor folder;
  std::size_t levels = 0;  // how many ".." lead from the start folder to this one
};

/// Goes up from the open `folder` to where its file system is mounted. A subvolume that nobody
/// mounted counts as one of its own.
ErrorCode findTopFolder(int folder, TopFolder& top);

/// Whether the open `folder` is `wanted` or lies below it.
ErrorCode liesIn(int folder, const FileIdentity& wanted, bool& result);

/// Path of an open folder, without links; empty where the system does not tell it, as for those
/// beyond PATH_MAX.
std::string pathOfFolder(int folder);

}  // namespace ombrelian::platform
