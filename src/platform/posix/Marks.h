#pragma once

#include <string>

#include "platform/posix/Descriptor.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// Folder of this user for marks and sockets that end with the session; closed if there is none.
/// Nobody else may open it.
Descriptor runtimeFolder();

/// `name` as the name of a file.
std::string markName(TextView name);

/// The file of the mark `name`, which is made if it is missing; closed if there is no place for it.
Descriptor openMark(TextView name);

}  // namespace ombrelian::platform
