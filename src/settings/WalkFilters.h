#pragma once

#include "settings/Options.h"

namespace ombrelian {

/// The four lists of patterns that decide what a scan leaves out. A list that is off is empty.
struct WalkFilters {
  Text excludedFolders;
  Text includedFolders;
  Text includedFiles;
  Text excludedFiles;
};

/// The filters that are on in the options.
WalkFilters walkFilters(const Options& options);

}  // namespace ombrelian
