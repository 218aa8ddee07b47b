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

/// Makes the filter of folders that are not scanned leave out the folder `path`, which must not
/// contain a comma. If the opposite filter was on, it is off then.
void excludeFolder(Options& options, TextView path);

/// The filters that are on in the options.
WalkFilters walkFilters(const Options& options);

}  // namespace ombrelian
