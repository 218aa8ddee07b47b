#pragma once

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian {

/// Where the reparse folder at `path` leads; `tag` is dwReserved0 of its find record. Empty on
/// failure, with `errorText` set; a target that is an empty text has none.
Text xGetJunctionPath(TextView path, std::uint32_t tag, Text& errorText);

/// Number of names of the file: 0 if it has one only, or on failure (`errorText` then says why).
/// `id`, if not null, receives the file's identity whenever the file could be asked.
std::int32_t xGetHardlinkCount(TextView path, Text* id, Text& errorText);

/// The same from a find record that already tells it.
std::int32_t hardlinkCount(const platform::FindData& data);

/// Identity of a file as lists show it: low and high half of its index, signed, joined by "-".
Text hardlinkIdentity(const platform::FindData& data);

/// Account name of the owner of a file or folder; empty on failure.
Text GetFileOwnerW(TextView path);

}  // namespace ombrelian
