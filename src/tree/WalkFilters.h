#pragma once

#include "support/Text.h"

namespace ombrelian {

/// The four lists of patterns that decide what a scan leaves out. A list that is off is empty.
struct WalkFilters {
  Text excludedFolders;
  Text includedFolders;
  Text includedFiles;
  Text excludedFiles;
};

}  // namespace ombrelian
