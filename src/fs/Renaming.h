#pragma once

#include "support/Text.h"

namespace ombrelian {

/// Gives the object at `path` (absolute, without final separator) another name in its folder, and
/// replaces an object that has this name. A name that would lead to another folder, or that is
/// another name of the same file, is refused. Returns the error text; empty: the object was
/// renamed.
Text renameInFolder(TextView path, TextView name);

/// Whether another folder has the path `target`; a rename never replaces a folder.
bool isAnotherFolder(TextView path, TextView target);

}  // namespace ombrelian
