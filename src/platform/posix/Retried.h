#pragma once

#include <errno.h>

namespace ombrelian::platform {

/// Result of the system call `call`, which is repeated while a signal interrupts it, as network and
/// FUSE file systems may report it. A server that reports nothing else is believed in the end.
template <class Call>
auto retried(Call call) -> decltype(call()) {
  constexpr int kMostRetries = 1000;
  auto result = call();
  for (int i = 0; result < 0 && errno == EINTR && i < kMostRetries; ++i)
    result = call();
  return result;
}

}  // namespace ombrelian::platform
