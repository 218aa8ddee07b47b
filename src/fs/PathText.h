#pragma once

#include "platform/Files.h"
#include "support/Text.h"

namespace ombrelian {

// Functions for the text of paths; none of them reads the disk. `separator` chooses the rules: "\"
// for Windows, "/" for POSIX. There are two differences: with "/" nothing is trimmed, because names
// may end with blanks, and the root "/" keeps its separator.

/// The form of a path for a platform call: on Windows with the prefix that removes the length limit
/// (a path that already has it gets a second one), elsewhere the path itself.
Text LongPathPrefix(TextView path, char16_t separator = platform::kNativeSeparator);

/// The part before the first NUL.
TextView xCutAtNull(TextView text);

/// The text before the last separator, without it; empty if there is none.
TextView xGetPath(TextView path, char16_t separator = platform::kNativeSeparator);

/// The text after the last separator; the whole text if there is none.
TextView xGetFileName(TextView path, char16_t separator = platform::kNativeSeparator);

/// The text after the last ".", as typed; empty if there is none, or if the name begins with its
/// only dot. Give it a name, not a path.
TextView xGetExtension(TextView name);

/// xGetFileName, cut before its last ".".
TextView xGetFileNameWithoutExtension(TextView path,
                                      char16_t separator = platform::kNativeSeparator);

/// Adds a final separator unless there is one, and returns `path`.
Text& xAddBackslash(Text& path, char16_t separator = platform::kNativeSeparator);

/// The same on a copy; an empty path stays empty.
Text xGetPathWithBackslash(TextView path, char16_t separator = platform::kNativeSeparator);

/// `path` without a final separator.
Text xRemoveBackslash(TextView path, char16_t separator = platform::kNativeSeparator);

/// Whether the path does not depend on the current folder.
bool isAbsolute(TextView path, char16_t separator = platform::kNativeSeparator);

/// Appends `name` to `path` with one separator between them.
Text& appendName(Text& path, TextView name, char16_t separator = platform::kNativeSeparator);

}  // namespace ombrelian
