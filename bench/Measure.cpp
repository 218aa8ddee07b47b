// measure RESULT OUTPUT COMMAND...: runs a command with its output in the file OUTPUT, and writes
// its exit status (128 plus the number of a signal that ended it), seconds of wall clock, seconds
// of CPU and peak resident KiB into the file RESULT. The kernel includes the memory of the parent
// in the peak of a new process, so the parent has to be as small as this program.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>

namespace {

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Starts the command. Returns 0, or the number of the system error.
int start(char** command, const char* output, pid_t& child) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_TRUNC,
                                   0644);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  const int error = posix_spawnp(&child, command[0], &actions, nullptr, command, environ);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: measure RESULT OUTPUT COMMAND...\n");
    return 2;
  }
  const auto begin = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (const int error = start(argv + 3, argv[2], child); error != 0) {
    std::fprintf(stderr, "%s: %s\n", argv[3], std::strerror(error));
    return 1;
  }
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child) {
    std::perror("wait4");
    return 1;
  }
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;

  std::FILE* result = std::fopen(argv[1], "w");
  if (!result) {
    std::perror(argv[1]);
    return 1;
  }
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  std::fprintf(result, "%d %.6f %.6f %ld\n", code, wall.count(),
               seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss);
  return std::fclose(result) == 0 ? 0 : 1;
}
