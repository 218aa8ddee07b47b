#pragma once

#include "platform/Deleting.h"
#include "support/Error.h"

namespace ombrelian {

// Deleting for good. What is not there counts as deleted; links are removed, never what they lead
// to; error texts name the path and the numbered system error.

/// `force`: also where the rights for it have to be had first.
Failure xDeleteFile_W(const platform::ShownObject& file, bool force);

}  // namespace ombrelian
