#pragma once

#include <gtest/gtest.h>

#include "frame/SilentRun.h"

namespace ombrelian::testing {

/// Result of a run without a window.
struct Outcome {
  int status = -1;
  std::string output;
  std::string errors;
};

/// Starts `runner` (such as runSilently) in a session of its own and keeps its output.
inline Outcome runOnConsole(int (*runner)(const CommandLine&, Session&, Console&),
                            const std::vector<Text>& arguments) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  Outcome result;
  {
    Console console;
    Session session;
    result.status = runner(parseArguments(arguments), session, console);
  }
  result.output = ::testing::internal::GetCapturedStdout();
  result.errors = ::testing::internal::GetCapturedStderr();
  return result;
}

}  // namespace ombrelian::testing
