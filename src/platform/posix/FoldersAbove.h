#pragma once

#include <string>
#include <vector>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// Adds the open `folder` and all folders that contain it, up to the root, to the empty list
/// `folders`. Returns 0, or the errno that ended the way up.
int addFoldersUpwards(int folder, std::vector<FileIdentity>& folders);

/// The folders that `path` leads through on its way to a folder, and the folders that really
/// contain that folder, up to the root. Links in the path make a difference between the two. The
/// folder itself is not among them. Folders that cannot be opened are left out.
std::vector<FileIdentity> foldersAbove(const std::string& path);

}  // namespace ombrelian::platform
