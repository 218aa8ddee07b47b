#include "platform/Worker.h"

#include <system_error>

#include "platform/Process.h"

namespace ombrelian::platform {

Worker::~Worker() {
  if (!thread_.joinable()) return;
  dropWaiting();
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void Worker::append(std::function<void()> task) {
  if (!thread_.joinable()) {
    try {
      thread_ = StartThread([this] { work(); });
    } catch (const std::system_error&) {
      return task();
    }
  }
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(task));
  }
  changed_.notify_one();
}

void Worker::dropWaiting() {
  std::deque<std::function<void()>> dropped;  // destroyed after the lock
  const std::lock_guard lock(mutex_);
  dropped.swap(waiting_);
}

void Worker::work() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isStopping_ || !waiting_.empty(); });
    if (waiting_.empty()) return;
    std::function<void()> task = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    task();
    task = nullptr;  // the values of the job are destroyed without the lock
    lock.lock();
  }
}

}  // namespace ombrelian::platform
