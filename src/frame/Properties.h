#pragma once

#include <utility>
#include <vector>

#include "services/FileTypes.h"
#include "settings/Options.h"
#include "tree/FolderTree.h"

namespace ombrelian {

/// Captions and values of the properties of one object on the disk, read now. The sums of a folder
/// are those of its scan; a folder that no scan read has none. An object that cannot be read has
/// its path and the reason.
std::vector<std::pair<Text, Text>> propertiesOf(const Text& path, const FolderTree& tree,
                                                const Options& options, FileTypes& types);

}  // namespace ombrelian
