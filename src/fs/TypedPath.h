#pragma once

#include "support/Text.h"

namespace ombrelian {

/// The folder that a person means by a typed or pasted text: absolute and normal. The text may have
/// blanks or quotation marks around it, begin with "~" for the home folder, or be a "file://"
/// address; a folder with exactly the typed name comes first. For a file it is the folder of the
/// file. Empty if the text has only blanks.
Text typedPath(TextView typed);

}  // namespace ombrelian
