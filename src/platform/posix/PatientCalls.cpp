#include "platform/posix/PatientCalls.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

#include "platform/posix/SignalsBlocked.h"

namespace ombrelian::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kInterval(30);   // time between two questions to the caller
constexpr std::chrono::milliseconds kLastCall(200);  // limit of runLast()

thread_local Patience* newest = nullptr;

/// The mounts that do not answer. Abandoned threads use it too, so it has no fixed owner.
struct SilentMounts {
  std::mutex mutex;
  std::multiset<std::string> points;  // once for each abandoned call

  bool contains(const std::string& point) {
    const std::lock_guard lock(mutex);
    return points.contains(point);
  }
  void add(const std::string& point) {
    const std::lock_guard lock(mutex);
    if (!point.empty()) points.insert(point);
  }
  void remove(const std::string& point) {
    const std::lock_guard lock(mutex);
    if (const auto at = points.find(point); at != points.end()) points.erase(at);
  }
};

const std::shared_ptr<SilentMounts>& silentMounts() {
  static const auto mounts = std::make_shared<SilentMounts>();
  return mounts;
}

}  // namespace

Patience::Patience(GoOn goOn) : goOn_(std::move(goOn)), older_(std::exchange(newest, this)) {}

Patience::~Patience() {
  Patience** place = &newest;
  while (*place != this)
    place = &(*place)->older_;
  *place = older_;
}

const Patience::GoOn* Patience::current() { return newest == nullptr ? nullptr : &newest->goOn_; }

/// Data that the caller and the thread share. They exist as long as either of them.
struct PatientCalls::State {
  explicit State(std::string point) : mount(std::move(point)) {}

  const std::string mount;
  const std::shared_ptr<SilentMounts> silent = silentMounts();
  std::mutex mutex;  // guards the members below
  std::condition_variable asked;
  std::condition_variable answered;
  std::function<void()> call;    // call that the thread has not taken yet
  std::exception_ptr exception;  // exception of the last call
  bool isRunning = false;        // a call has not returned yet
  bool isStarted = false;        // there is a thread
  bool isAbandoned = false;      // the caller gave up; only the caller uses it
  bool isSilent = false;         // the mount counts as one that does not answer
  bool isClosed = false;         // no further calls will come
};

PatientCalls::PatientCalls(std::string mount) : state_(std::make_shared<State>(std::move(mount))) {}

PatientCalls::~PatientCalls() {
  const std::lock_guard lock(state_->mutex);
  state_->isClosed = true;
  state_->asked.notify_one();
}

/// Gives the call to the thread, which is started for the first call.
void PatientCalls::begin(std::function<void()> call) {
  const std::lock_guard lock(state_->mutex);
  if (!state_->isStarted) {
    const SignalsBlocked signals;
    std::thread([state = state_] { work(*state); }).detach();
    state_->isStarted = true;
  }
  state_->call = std::move(call);
  state_->isRunning = true;
  state_->asked.notify_one();
}

/// Waits for the end of the call; false: the caller gave up.
bool PatientCalls::wait(const Patience::GoOn& goOn) {
  const Clock::time_point begin = Clock::now();
  std::unique_lock lock(state_->mutex);
  const auto isOver = [this] { return !state_->isRunning; };
  while (!state_->answered.wait_for(lock, kInterval, isOver)) {
    lock.unlock();
    const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    const bool goesOn = goOn(waited);
    lock.lock();
    if (goesOn || !state_->isRunning) continue;
    state_->isAbandoned = true;
    state_->isSilent = true;
    state_->silent->add(state_->mount);
    return false;
  }
  if (state_->exception != nullptr) std::rethrow_exception(state_->exception);
  return true;
}

bool PatientCalls::run(std::function<void()> call) {
  // Only this thread writes isAbandoned.
  state_->isAbandoned = state_->isAbandoned || state_->silent->contains(state_->mount);
  if (state_->isAbandoned) return false;
  begin(std::move(call));
  const Patience::GoOn* const goOn = Patience::current();
  return wait(goOn != nullptr ? *goOn : [](std::chrono::milliseconds) { return true; });
}

void PatientCalls::runLast(std::function<void()> call) {
  begin(std::move(call));
  if (!state_->isAbandoned) wait([](std::chrono::milliseconds time) { return time < kLastCall; });
}

void PatientCalls::work(State& state) {
  std::unique_lock lock(state.mutex);
  for (;;) {
    state.asked.wait(lock, [&] { return state.call != nullptr || state.isClosed; });
    if (state.call == nullptr) return;
    std::function<void()> call = std::exchange(state.call, nullptr);
    lock.unlock();
    std::exception_ptr exception;
    try {
      call();
    } catch (...) {
      exception = std::current_exception();
    }
    call = nullptr;  // if the caller gave up, this may end everything that the call owned
    lock.lock();
    state.exception = exception;
    state.isRunning = state.call != nullptr;
    if (state.isSilent && !state.isRunning) {
      state.isSilent = false;
      state.silent->remove(state.mount);
    }
    state.answered.notify_one();
  }
}

std::optional<std::string> patientMountOf(TextView path) {
  std::optional<std::string> mount;
  if (Patience::current() != nullptr) mount = slowMountOf(toBytes(path));
  return mount;
}

std::optional<std::string> patientMountAround(TextView path) {
  std::optional<std::string> mount = patientMountOf(path);
  if (!mount && Patience::current() != nullptr && isAnyMountSlow()) {
    mount = slowMountBelow(toBytes(path));
  }
  return mount;
}

}  // namespace ombrelian::platform
