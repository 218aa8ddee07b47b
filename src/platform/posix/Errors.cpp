#include "platform/posix/Errors.h"

#include <errno.h>
#include <string.h>

namespace ombrelian::platform {
namespace {

struct Pair {
  int error;
  ErrorCode code;
};

// If several errno values have the same code, the first one gives the text of that code.
constexpr Pair kPairs[] = {
    {ENOENT, kFileNotFound},
    {ENOTDIR, kNotADirectory},
    {EMFILE, kTooManyOpenFiles},
    {ENFILE, kTooManyOpenFiles},
    {EACCES, kAccessDenied},
    {EPERM, kAccessDenied},
    {EISDIR, kAccessDenied},
    {EBADF, kInvalidHandle},
    {ENOMEM, kNotEnoughMemory},
    {EXDEV, kNotSameDevice},
    {EROFS, kWriteProtect},
    {ENOMEDIUM, kNotReady},
    {ENXIO, kNotReady},
    {EBUSY, kSharingViolation},
    {ETXTBSY, kSharingViolation},
    {EAGAIN, kSharingViolation},
    {ENOSYS, kNotSupported},
    {EOPNOTSUPP, kNotSupported},
    {EHOSTDOWN, kNetworkPathNotFound},
    {EHOSTUNREACH, kNetworkPathNotFound},
    {ESTALE, kNetworkGone},
    {ENOTCONN, kNetworkGone},
    {ETIMEDOUT, kNetworkGone},
    {EINVAL, kInvalidParameter},
    {EPIPE, kBrokenPipe},
    {ENOSPC, kDiskFull},
    {EILSEQ, kInvalidName},
    {ENOTEMPTY, kDirectoryNotEmpty},
    {EEXIST, kAlreadyExists},
    {ENAMETOOLONG, kNameTooLong},
    {EFBIG, kFileTooLarge},
    {EIO, kInputOutputError},
    {ECANCELED, kCancelled},
    {EDQUOT, kQuotaExceeded},
    {ELOOP, kLinkLoop},
};

Text systemText(int error) {
  char buffer[256];
  return fromBytes(strerror_r(error, buffer, sizeof buffer));
}

}  // namespace

ErrorCode translateErrno(int error) {
  if (error == 0) return kSuccess;
  for (const Pair& pair : kPairs) {
    if (pair.error == error) return pair.code;
  }
  return kOtherSystemError + ErrorCode(error);
}

Text FormatMessageW(ErrorCode code) {
  if (code == kPathNotFound) return systemText(ENOENT);
  for (const Pair& pair : kPairs) {
    if (pair.code == code) return systemText(pair.error);
  }
  if ((code & kOtherSystemError) != 0) return systemText(int(code - kOtherSystemError));
  return {};
}

}  // namespace ombrelian::platform
