#pragma once

#include "tests/testing/TestFolder.h"

namespace ombrelian::testing {

/// Fills the folder with what a walk meets: files of all sizes, hardlinks, links to files, folders
/// and nowhere, empty folders, one of thousands of entries and a chain deeper than a walk keeps
/// folders open. The same seed makes the same tree.
void makeRandomTree(const TestFolder& folder, unsigned seed);

}  // namespace ombrelian::testing
