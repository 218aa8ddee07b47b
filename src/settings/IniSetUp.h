#pragma once

#include "settings/z_INI.h"

namespace ombrelian {

/// Ensures that there is a settings file with a byte order mark at `path`. A new file gets the
/// values for the shell verb and the language from the file of the older version at `oldPath`,
/// which remains. A file without the mark is copied to `path` + ".bak"; then its text, which should
/// be UTF-8, is written with the mark. Returns the path of that copy; empty: none was made.
Text prepareIniFile(const Text& path, TextView oldPath);

/// Whether this is the user's first start, so that folders should get the shell verb. Stores in the
/// file that they have it.
bool claimFirstStart(IniStore& file);

}  // namespace ombrelian
