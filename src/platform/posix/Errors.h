#pragma once

#include "platform/SystemError.h"

namespace ombrelian::platform {

/// The Windows error number for an errno value; the only place that knows both.
ErrorCode translateErrno(int error);

}  // namespace ombrelian::platform
