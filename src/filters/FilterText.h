#pragma once

#include "support/Text.h"
#include "support/TextRules.h"

namespace ombrelian {

/// Removes the blanks around the commas and at both ends of a list of patterns; blanks inside a
/// pattern stay.
Text tidyPatterns(TextView patterns);

/// What a person should know of a list of patterns; empty: nothing. `needsAll`: only what matches
/// all patterns passes.
Text patternHint(TextView patterns, bool needsAll, const TextRules& rules);

}  // namespace ombrelian
