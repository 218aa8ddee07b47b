#pragma once

#include "platform/SystemError.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// Account name for the owner number of a FindData; the number itself where no account has it. The
/// system is asked once for each number; the reference is valid until the end of the process.
const Text& LookupAccountName(std::uint32_t ownerId);

/// Name of the account that runs this process.
Text GetUserNameW();

/// Whether the account that runs this process may do everything on this machine.
bool IsNTAdmin();

}  // namespace ombrelian::platform
