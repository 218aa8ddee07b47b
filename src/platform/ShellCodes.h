#pragma once

#include "platform/SystemError.h"

namespace ombrelian::platform {

// Error codes of the recycle bin. They are used where a code of the shell is more exact than a code
// of the system. If both have the same number, the code of the shell is meant: 0xB7 is not
// kAlreadyExists there.

inline constexpr ErrorCode kShellSourceIsRoot = 0x74;
inline constexpr ErrorCode kShellBinInSource = 0x76;  // the object contains the bin
inline constexpr ErrorCode kShellSourceDenied =
    0x78;  // no right to move the object out of its folder
inline constexpr ErrorCode kShellSourceInBin = 0x7D;  // the object is already in the bin

}  // namespace ombrelian::platform
