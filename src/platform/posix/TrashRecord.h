#pragma once

#include <string>
#include <string_view>

#include "support/Date.h"

namespace ombrelian::platform {

/// Ending of the names of records in the "info" folder of a bin.
inline constexpr std::string_view kTrashInfoEnding = ".trashinfo";

/// The name that is tried as number `number`, from 1, for an object called `name` in a bin. Long
/// names are shortened between two characters, so that the name of the record is not too long for a
/// file system.
std::string trashName(std::string_view name, std::uint64_t number);

/// Content of the record of an object that was at `path` and was removed at `when`, in local time.
std::string trashRecord(std::string_view path, const DateParts& when);

}  // namespace ombrelian::platform
