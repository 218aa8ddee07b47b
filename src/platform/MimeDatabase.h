#pragma once

#include "support/Text.h"

namespace ombrelian::platform {

// Data from the system's database of file types for an extension (lower case, no dot). Each result
// is empty if there is no database, or if it does not contain the extension.

/// Name of the file type, in the language of messages or else in English.
Text GetFileTypeName(TextView extension);

/// The MIME type, such as "text/plain".
Text GetFileType(TextView extension);

/// Name of the program that opens such files, in the language of messages if it has such a name.
Text GetAssociatedProgram(TextView extension);

/// Name of the icon in icon themes.
Text GetFileTypeIcon(TextView extension);

}  // namespace ombrelian::platform
