#pragma once

#include <vector>

#include "settings/Options.h"

namespace ombrelian {

/// The four lists of patterns that decide what a scan leaves out. A list that is off is empty.
struct WalkFilters {
  Text excludedFolders;
  Text includedFolders;
  Text includedFiles;
  Text excludedFiles;
};

/// One line for each filter that leaves something out: its caption and its patterns.
std::vector<Text> describeFilters(const WalkFilters& filters);

/// The filters that are on in the options.
WalkFilters walkFilters(const Options& options);

}  // namespace ombrelian
