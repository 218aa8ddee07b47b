#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

namespace ombrelian::testing {

/// Runs `body` in a process of its own, which ends with its result. Returns the status of waitpid.
inline int statusOfChild(const std::function<int()>& body) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

}  // namespace ombrelian::testing
