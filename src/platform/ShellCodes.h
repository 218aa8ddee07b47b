#pragma once

#include "platform/SystemError.h"

namespace ombrelian::platform {

// What the recycle bin answers where a code of the shell says it better than one of the system.
// Those of the shell come first where both know a number: 0xB7 is no kAlreadyExists there.

inline constexpr ErrorCode kShellSourceIsRoot = 0x74;
inline constexpr ErrorCode kShellBinInSource = 0x76;   // what should go holds the bin
inline constexpr ErrorCode kShellSourceDenied = 0x78;  // no right to take it from where it lies
inline constexpr ErrorCode kShellSourceInBin = 0x7D;   // it is where it should go

}  // namespace ombrelian::platform
