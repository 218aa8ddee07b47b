#pragma once

#include <string>

#include "platform/FindData.h"
#include "platform/posix/Descriptor.h"

namespace ombrelian::platform {

/// A recycle bin in the common format of all desktops (freedesktop.org Trash 1.0): the objects are
/// in "files", and the records with their old paths are in "info". The folders of the bin are
/// opened with O_PATH and belong to this user.
struct Trash {
  std::string path;  // path for messages; also set if there is no bin
  Descriptor folder;
  Descriptor files;
  Descriptor info;
};

// All errors of a bin are returned with kShellErrorOnDestination.

/// Opens the bin in this user's home and makes it if it is missing. kNotSameDevice: the home is not
/// on the file system `device`, and nothing was made there, or there is no home.
ErrorCode openHomeTrash(std::uint64_t device, Trash& trash);

/// Opens this user's bin in the top folder of a file system and makes it if it is missing. It is
/// below ".Trash" if an administrator made that folder safe to share, else its name is ".Trash-"
/// and the number of the user.
ErrorCode openTopTrash(int top, const std::string& topPath, Trash& trash);

/// The uppermost folder that an object can be renamed to.
struct TopFolder {
  Descriptor folder;
  std::size_t levels = 0;  // how many ".." lead from the start folder to this one
};

/// Finds the mount point of the file system that contains the open `folder`, upwards from there. A
/// subvolume that is not mounted counts as a file system of its own.
ErrorCode findTopFolder(int folder, TopFolder& top);

/// Whether the open `folder` is `wanted` or is below it.
ErrorCode liesIn(int folder, const FileIdentity& wanted, bool& result);

/// Path of an open folder, without links; empty if the system does not report it, as for paths
/// longer than PATH_MAX.
std::string pathOfFolder(int folder);

}  // namespace ombrelian::platform
