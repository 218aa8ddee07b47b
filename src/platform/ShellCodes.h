#pragma once

#include "platform/SystemError.h"

namespace ombrelian::platform {

// What the recycle bin answers where a code of the shell says it better than one of the system.
// Where both know a number the code of the shell is meant: 0xB7 is no kAlreadyExists there.

inline constexpr ErrorCode kShellSourceIsRoot = 0x74;
inline constexpr ErrorCode kShellBinInSource = 0x76;  // the object holds the bin
inline constexpr ErrorCode kShellSourceDenied =
    0x78;  // no right to take the object out of its folder
inline constexpr ErrorCode kShellSourceInBin = 0x7D;  // the object is in the bin already

}  // namespace ombrelian::platform
