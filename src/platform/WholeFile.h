#pragma once

#include "platform/Files.h"
#include "support/Error.h"

namespace ombrelian::platform {

/// Reads the whole file `path`. After an error, `bytes` has what was read before it.
ErrorCode ReadWholeFile(TextView path, std::string& bytes);

/// Makes or replaces the file `path` with `bytes` in one step. A replaced file keeps its access
/// rights.
Failure ReplaceWholeFile(TextView path, std::string_view bytes);

}  // namespace ombrelian::platform
