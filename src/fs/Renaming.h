#pragma once

#include "platform/Removal.h"

namespace ombrelian {

/// Gives an object another name in its folder, and replaces an object that has this name. A name
/// that would lead to another folder, or that is another name of the same file, is refused, and so
/// is an object that is not the shown one. Returns the error text; empty: the object was renamed.
Text renameInFolder(const platform::ShownObject& object, TextView name);

/// Whether another folder has the path `target`; a rename never replaces a folder.
bool isAnotherFolder(TextView path, TextView target);

}  // namespace ombrelian
