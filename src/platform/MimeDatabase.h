#pragma once

#include "support/Text.h"

namespace ombrelian::platform {

// What the system's database of file types tells of an extension (lower case, no dot). All is empty
// where there is no database, or it does not know the extension.

/// Name of the kind of file, in the language of messages or else in English.
Text GetFileTypeName(TextView extension);

/// Name of the icon in icon themes.
Text GetFileTypeIcon(TextView extension);

}  // namespace ombrelian::platform
