#pragma once

#include "platform/Files.h"
#include "support/Error.h"

namespace ombrelian::platform {

/// Reads the whole file `path`. After an error, `bytes` has what was read before it.
ErrorCode ReadWholeFile(TextView path, std::string& bytes);

/// The same for a file of the program itself, see OpenOwnFile.
ErrorCode ReadOwnFile(TextView path, std::string& bytes);

/// Makes or replaces a file of the program itself with `bytes` in one step. Only its owner may open
/// it.
Failure ReplaceOwnFile(TextView path, std::string_view bytes);

/// Appends `bytes` to a log of the program, see OpenOwnFile. If the log has `limit` bytes or more,
/// it is renamed to `path` + ".old" before, in place of an older one, and a new one begins; 0: no
/// limit.
ErrorCode AppendToLog(TextView path, std::string_view bytes, std::uint64_t limit);

}  // namespace ombrelian::platform
