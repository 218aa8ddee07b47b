#pragma once

#include <string>
#include <vector>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// Adds the open `folder` and all folders that contain it, up to the root, to the empty list
/// `folders`. Returns 0, or the errno that ended the way up.
int addFoldersUpwards(int folder, std::vector<FileIdentity>& folders);

/// Adds the folders that `path` leads through on its way to a folder, and the folders that really
/// contain that folder, up to the root. Links in the path make a difference between the two. The
/// folder itself is not among them. Returns 0, or the errno because of which folders are left out.
int foldersAbove(const std::string& path, std::vector<FileIdentity>& folders);

}  // namespace ombrelian::platform
