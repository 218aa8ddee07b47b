#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace ombrelian::platform {

/// Does jobs in one thread of its own, in the order in which they were added. A job is a function
/// that takes its values with it and returns a value: it must not use the tree, a list or the
/// settings, which belong to the main thread. The thread starts with the first job.
class Worker {
 public:
  Worker() = default;
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  /// Drops the jobs that have not begun and waits for the one that runs.
  ~Worker();

  /// Adds a job. The result is its value, or the exception that escaped it. `ended` is called in
  /// the thread of the worker just before the result is there, and must not throw. If the system
  /// has no more threads, the job is done at once.
  template <class Job>
  std::future<std::invoke_result_t<Job&>> add(Job job, std::function<void()> ended = {}) {
    using Value = std::invoke_result_t<Job&>;
    auto task = std::make_shared<std::packaged_task<Value()>>(
        [job = std::move(job), ended = std::move(ended)]() mutable {
          const Ending ending{ended};
          return job();
        });
    std::future<Value> result = task->get_future();
    append([task] { (*task)(); });
    return result;
  }

  /// Drops the jobs that have not begun; nobody wants them any more. Their results are the
  /// exception std::future_error.
  void dropWaiting();

 private:
  /// Calls a function at the end of a scope.
  struct Ending {
    const std::function<void()>& call;
    ~Ending() {
      if (call) call();
    }
  };

  void append(std::function<void()> task);
  void work();

  std::mutex mutex_;  // guards the members below, except thread_
  std::condition_variable changed_;
  std::deque<std::function<void()>> waiting_;
  bool isStopping_ = false;
  std::thread thread_;
};

}  // namespace ombrelian::platform
