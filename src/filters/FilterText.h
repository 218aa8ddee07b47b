#pragma once

#include "support/Text.h"

namespace ombrelian {

/// Removes the blanks around the commas and at both ends of a list of patterns; blanks inside a
/// pattern stay.
Text tidyPatterns(TextView patterns);

}  // namespace ombrelian
