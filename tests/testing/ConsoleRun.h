#pragma once

#include <gtest/gtest.h>

#include "frame/SilentRun.h"

namespace ombrelian::testing {

/// What a run without a window left behind.
struct Outcome {
  int status = -1;
  std::string output;
  std::string errors;
};

/// A run in a session of its own by `runner`, runSilently or its like; what it prints is kept.
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
