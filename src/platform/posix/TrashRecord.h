#pragma once

#include <string>
#include <string_view>

#include "support/Date.h"

namespace ombrelian::platform {

/// Ends the name of a record in the "info" folder of a bin.
inline constexpr std::string_view kTrashInfoEnding = ".trashinfo";

/// The `number`th name, from 1, under which an object called `name` may lie in a bin. Long ones are
/// shortened between two characters, so that the record's name is no longer than a name may be.
std::string trashName(std::string_view name, std::uint64_t number);

/// Content of the record of an object that lay at `path` and was removed at `when`, local time.
std::string trashRecord(std::string_view path, const DateParts& when);

}  // namespace ombrelian::platform
