#include "platform/WorkAside.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace ombrelian::platform {
namespace {

TEST(WorkAsideTest, ServesOnThisThreadUntilTheWorkIsDone) {
  std::atomic<int> served = 0;
  std::thread::id worker;
  WorkAside(
      [&] {
        worker = std::this_thread::get_id();
        while (served < 3)
          std::this_thread::yield();
      },
      [&, here = std::this_thread::get_id()] {
        EXPECT_EQ(std::this_thread::get_id(), here);
        ++served;
      });
  EXPECT_GE(served, 3);
  EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(WorkAsideTest, WhatTheWorkThrowsComesOutHere) {
  const auto fail = [] { throw std::runtime_error("lost"); };
  EXPECT_THROW(WorkAside(fail, [] {}), std::runtime_error);
  EXPECT_THROW(WorkAside(fail, {}), std::runtime_error);
}

}  // namespace
}  // namespace ombrelian::platform
