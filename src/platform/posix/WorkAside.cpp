#include "platform/WorkAside.h"

#include <chrono>
#include <future>
#include <system_error>

namespace ombrelian::platform {
namespace {

constexpr std::chrono::milliseconds kPause(15);

std::future<void> begin(const std::function<void()>& work) {
  try {
    return std::async(std::launch::async, work);
  } catch (const std::system_error&) {
    return std::async(std::launch::deferred, work);
  }
}

}  // namespace

void WorkAside(const std::function<void()>& work, const std::function<void()>& serve) {
  if (!serve) return work();
  std::future<void> done = begin(work);
  while (done.wait_for(kPause) == std::future_status::timeout)
    serve();
  done.get();
}

}  // namespace ombrelian::platform
