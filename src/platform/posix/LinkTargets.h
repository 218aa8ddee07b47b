#pragma once

#include <string>

#include "platform/SystemError.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// Text of the symbolic link `name` below `folder`, of any length; empty on failure.
Text linkText(int folder, const char* name, ErrorCode& error);

/// What is mounted at `mountPoint` (absolute); empty on failure.
Text mountedSource(std::string mountPoint, ErrorCode& error);

}  // namespace ombrelian::platform
