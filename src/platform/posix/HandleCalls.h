#pragma once

#include "platform/Files.h"
#include "platform/posix/PatientCalls.h"

namespace ombrelian::platform {

template <class Call>
ErrorCode FileHandle::ask(Call call) const {
  return askPatiently(
      slowMount_, [call, fd = int(handle_)] { return call(fd); }, kTimeout);
}

}  // namespace ombrelian::platform
