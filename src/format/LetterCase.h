#pragma once

#include "support/Text.h"

namespace ombrelian {

// Upper and lower case by the rules of the user's locale. Texts that are only ASCII do not need
// these rules.

Text lowerCase(TextView text);
Text upperCase(TextView text);

}  // namespace ombrelian
