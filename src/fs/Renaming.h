#pragma once

#include "support/Text.h"

namespace ombrelian {

/// Gives the object at `path` (absolute, without final separator) another name in its folder, and
/// replaces an object that has that name. A name that would lead elsewhere, or that is another name
/// of the same file, is refused. Returns the error text; empty: the object has the name.
Text renameInFolder(TextView path, TextView name);

}  // namespace ombrelian
