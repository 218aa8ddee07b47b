#pragma once

#include <string>
#include <vector>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// The folders that `path` leads through on its way to the open object `folder`, and the folders
/// that really contain it, up to the root. Links in the path make a difference between the two.
/// The object itself is not among them. Folders that cannot be opened are left out.
std::vector<FileIdentity> foldersAbove(const std::string& path, int folder);

}  // namespace ombrelian::platform
