#pragma once

#include <cstdint>

#include "support/Error.h"

namespace ombrelian::platform {

/// A Windows error number on every system; each back end has one function that translates its own
/// numbers.
using ErrorCode = std::uint32_t;

inline constexpr ErrorCode kSuccess = 0;
inline constexpr ErrorCode kFileNotFound = 2;
inline constexpr ErrorCode kPathNotFound = 3;
inline constexpr ErrorCode kTooManyOpenFiles = 4;
inline constexpr ErrorCode kAccessDenied = 5;
inline constexpr ErrorCode kInvalidHandle = 6;
inline constexpr ErrorCode kNotEnoughMemory = 8;
inline constexpr ErrorCode kIsMountPoint = 16;  // a mount point cannot be removed
inline constexpr ErrorCode kNotSameDevice = 17;
inline constexpr ErrorCode kWriteProtect = 19;
inline constexpr ErrorCode kNotReady = 21;
inline constexpr ErrorCode kGeneralFailure = 31;
inline constexpr ErrorCode kSharingViolation = 32;
inline constexpr ErrorCode kNotSupported = 50;
inline constexpr ErrorCode kNetworkPathNotFound = 53;
inline constexpr ErrorCode kNetworkGone = 64;
inline constexpr ErrorCode kInvalidParameter = 87;
inline constexpr ErrorCode kBrokenPipe = 109;
inline constexpr ErrorCode kDiskFull = 112;
inline constexpr ErrorCode kInvalidName = 123;
inline constexpr ErrorCode kDirectoryNotEmpty = 145;
inline constexpr ErrorCode kAlreadyExists = 183;
inline constexpr ErrorCode kNameTooLong = 206;
inline constexpr ErrorCode kFileTooLarge = 223;
inline constexpr ErrorCode kNotADirectory = 267;
inline constexpr ErrorCode kUntrustedLink = 448;  // a link of somebody whom this process does not
                                                  // trust
inline constexpr ErrorCode kObjectReplaced =
    1006;  // another object is in the place of the wanted one
inline constexpr ErrorCode kInputOutputError = 1117;
inline constexpr ErrorCode kCancelled = 1223;
inline constexpr ErrorCode kQuotaExceeded = 1295;
inline constexpr ErrorCode kNotOwnFile =
    1307;                                    // what is there is not an ordinary file of this user
inline constexpr ErrorCode kTimeout = 1460;  // no answer within the time limit
inline constexpr ErrorCode kLinkLoop = 1921;
/// Added to an error number of another system that no Windows error number fits, so that its text
/// is not lost. Windows leaves this bit to programs.
inline constexpr ErrorCode kOtherSystemError = ErrorCode(1) << 29;

/// True for the two codes that mean that no object of this name exists.
constexpr bool isMissing(ErrorCode code) { return code == kFileNotFound || code == kPathNotFound; }

/// The system's own text for `code`; empty if there is none. The text never ends in a line break.
Text FormatMessageW(ErrorCode code);

}  // namespace ombrelian::platform

namespace ombrelian {

/// Text of a system error. If `addNumber`, the number is in front, as in "#5 - ...".
Text xGetErrorText(bool addNumber, platform::ErrorCode code);

/// An Error with the number `code` and the text of that error without its number.
Error systemError(platform::ErrorCode code, TextView source);

}  // namespace ombrelian
