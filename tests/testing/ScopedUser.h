#pragma once

#include <unistd.h>

namespace ombrelian::testing {

/// Takes the rights of the administrator from a test during its life, so that missing rights have
/// an effect. An ordinary user is not changed.
class ScopedUser {
 public:
  ScopedUser() {
    if (wasRoot_ && (setegid(kNobody) != 0 || seteuid(kNobody) != 0)) _exit(99);
  }
  ~ScopedUser() {
    if (wasRoot_ && (seteuid(0) != 0 || setegid(0) != 0)) _exit(99);
  }
  ScopedUser(const ScopedUser&) = delete;
  ScopedUser& operator=(const ScopedUser&) = delete;

 private:
  static constexpr unsigned kNobody = 65534;
  const bool wasRoot_ = geteuid() == 0;
};

}  // namespace ombrelian::testing
