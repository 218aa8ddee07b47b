#pragma once

#include <fcntl.h>

#include "platform/Files.h"
#include "platform/posix/PatientCalls.h"

namespace ombrelian::platform {

template <class Call>
ErrorCode FileHandle::ask(Call call) const {
  return askPatiently(
      slowMount_, [call, fd = int(handle_)] { return call(fd); }, kTimeout);
}

/// The flags of open() for a disposition of CreateFileW.
inline int openFlags(int disposition) {
  switch (disposition) {
    case kCreateNew:
      return O_WRONLY | O_CREAT | O_EXCL;
    case kOpenAppend:
      return O_WRONLY | O_CREAT | O_APPEND;
    case kOpenExisting:
      return O_RDWR;
    default:
      return O_RDONLY;
  }
}

}  // namespace ombrelian::platform
