#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

namespace ombrelian::testing {

/// Runs `body` in a process that has mounts of its own. If the user must not mount, the test is
/// skipped.
template <class Body>
void runWithOwnMounts(Body body) {
  constexpr int kNotAllowed = 77;
  const pid_t child = fork();
  if (child == 0) {
    const bool isAllowed =
        unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    if (isAllowed) body();
    _exit(!isAllowed ? kNotAllowed : ::testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kNotAllowed) GTEST_SKIP() << "this user may not mount";
  EXPECT_EQ(WEXITSTATUS(status), 0) << "see the failures above";
}

/// Mounts the folder `what` at `where`; empty: a new file system in memory.
inline void mountAt(const std::string& where, const std::string& what = {}) {
  ASSERT_EQ(what.empty() ? mount("none", where.c_str(), "tmpfs", 0, nullptr)
                         : mount(what.c_str(), where.c_str(), nullptr, MS_BIND, nullptr),
            0);
}

}  // namespace ombrelian::testing
