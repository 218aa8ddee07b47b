#pragma once

#include "settings/z_INI.h"

namespace ombrelian {

/// Ensures that there is a settings file with a byte order mark at `path`. A new file gets the
/// values for the shell verb and the language from the file of the older version at `oldPath`,
/// which remains. In a file without the mark, the mark overwrites the first two bytes: the content
/// has another encoding and is lost on purpose.
void prepareIniFile(TextView path, TextView oldPath);

/// Whether this is the user's first start, so that folders should get the shell verb. Stores in the
/// file that they have it.
bool claimFirstStart(IniStore& file);

}  // namespace ombrelian
