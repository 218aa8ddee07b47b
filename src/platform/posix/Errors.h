#pragma once

#include "platform/SystemError.h"

namespace ombrelian::platform {

/// The Windows error number for an errno value. No other function translates between the two.
ErrorCode translateErrno(int error);

}  // namespace ombrelian::platform
