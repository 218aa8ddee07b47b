// Tests of the worker: order, values, exceptions, and jobs that nobody wants.

#include "platform/Worker.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>

namespace ombrelian::platform {
namespace {

TEST(WorkerTest, JobsAreDoneInOrderInAnotherThreadAndTheirEndIsReported) {
  std::string order;  // the results are taken after the jobs, so nothing else guards it
  Worker worker;
  const auto add = [&](char name) {
    return worker.add(
        [&order, name] {
          order += name;
          return std::pair(name, std::this_thread::get_id());
        },
        [&order] { order += '.'; });
  };
  auto first = add('a');
  auto second = add('b');
  auto failing =
      worker.add([]() -> int { throw std::runtime_error("why"); }, [&order] { order += '!'; });
  auto last = add('c');
  const auto [name, thread] = last.get();
  EXPECT_EQ(name, 'c');
  EXPECT_NE(thread, std::this_thread::get_id());
  EXPECT_EQ(first.get().second, second.get().second);
  EXPECT_THROW(failing.get(), std::runtime_error);
  EXPECT_EQ(order, "a.b.!c.");
}

TEST(WorkerTest, JobsThatHaveNotBegunCanBeDroppedAndTheOneThatRunsIsWaitedFor) {
  std::promise<void> begun, released;
  std::future<int> running, dropped;
  {
    Worker worker;
    running = worker.add([&] {
      begun.set_value();
      released.get_future().wait();
      return 1;
    });
    dropped = worker.add([] { return 2; });
    begun.get_future().wait();
    worker.dropWaiting();
    EXPECT_THROW(dropped.get(), std::future_error);
    EXPECT_EQ(running.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    released.set_value();
  }
  EXPECT_EQ(running.get(), 1);
}

}  // namespace
}  // namespace ombrelian::platform
