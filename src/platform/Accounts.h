#pragma once

#include "platform/SystemError.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// Account name of the owner number of a FindData; empty where no account has it. Each number is
/// asked for once a run; the reference holds until the end of the process.
const Text& LookupAccountName(std::uint32_t ownerId);

/// Name of the account that runs this process.
Text GetUserNameW();

/// Whether it may do everything on this machine.
bool IsNTAdmin();

}  // namespace ombrelian::platform
