#pragma once

#include "support/Text.h"

namespace ombrelian {

// Letters by the rules of the user's locale; texts of ASCII alone need none.

Text lowerCase(TextView text);
Text upperCase(TextView text);

}  // namespace ombrelian
