#pragma once

#include "support/Error.h"

namespace ombrelian {

/// The exact path of an object that a dialog of the toolkit named. Such a dialog shows a byte of a
/// name that is no UTF-8 as U+FFFD, and its path then leads nowhere. Each name in `path` (absolute)
/// that contains U+FFFD and does not exist is replaced by the only name in its folder that looks
/// the same. An error names the reason if there is none or more than one; a last name that looks
/// like no other is kept with `mayBeNew`, because it can be the name of a new file.
Result<Text> exactPath(TextView path, bool mayBeNew);

}  // namespace ombrelian
