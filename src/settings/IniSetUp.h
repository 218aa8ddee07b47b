#pragma once

#include "settings/z_INI.h"

namespace ombrelian {

/// Sees to it that there is a settings file with a byte order mark at `path`. A new one gets what
/// the older version's file at `oldPath`, which stays, says of the shell verb and the language. A
/// file without the mark gets it over its first two bytes: what such a file held came from another
/// encoding and is lost on purpose.
void prepareIniFile(TextView path, TextView oldPath);

/// Whether this is the user's first start, so that folders should get the shell verb; notes in the
/// file that they have it.
bool claimFirstStart(IniStore& file);

}  // namespace ombrelian
