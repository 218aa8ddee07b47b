#pragma once

#include "support/Text.h"

namespace ombrelian {

/// A text for a terminal: U+FFFD instead of each character that the terminal would execute, or that
/// changes the direction of the text after it. Line feeds and tabs stay.
Text forTerminal(TextView text);

}  // namespace ombrelian
