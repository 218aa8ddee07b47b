#pragma once

#include <optional>

#include "platform/Removal.h"

namespace ombrelian::platform {

/// Gives an object another name in its folder, with the same care as a removal: kObjectReplaced
/// means that another object is at the path now, or that a folder on the way became a link.
/// `replaced` is the object with the new name that may be replaced; none: nothing is replaced, and
/// kAlreadyExists means that the name is taken.
ErrorCode RenameObject(const ShownObject& object, TextView name,
                       const std::optional<FileIdentity>& replaced);

}  // namespace ombrelian::platform
