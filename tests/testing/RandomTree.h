#pragma once

#include "tests/testing/TestFolder.h"

namespace ombrelian::testing {

/// Fills the folder with all kinds of entries: files of all sizes, hardlinks, links to files, to
/// folders and to nothing, empty folders, a folder of thousands of entries, and a chain with more
/// levels than a walk keeps open. The same seed makes the same tree.
void makeRandomTree(const TestFolder& folder, unsigned seed);

}  // namespace ombrelian::testing
