#pragma once

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian {

/// Target of the reparse folder at `path`; `tag` is dwReserved0 of its find record. On failure it
/// is empty and `errorText` is set; `errorText` is empty if the target itself is an empty text.
Text xGetJunctionPath(TextView path, std::uint32_t tag, Text& errorText);

/// Number of names of the file: 0 if it has only one, or on failure (`errorText` then contains the
/// reason). `id`, if not null, receives the identity of the file if the file could be read.
std::int32_t xGetHardlinkCount(TextView path, Text* id, Text& errorText);

/// The same from a find record that already contains the number.
std::int32_t hardlinkCount(const platform::FindData& data);

/// Identity of a file as lists show it: low and high half of its index, signed, joined by "-".
Text hardlinkIdentity(const platform::FindData& data);

/// Account name of the owner of a file or folder; empty on failure.
Text GetFileOwnerW(TextView path);

}  // namespace ombrelian
