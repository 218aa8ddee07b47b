#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/Patience.h"
#include "platform/SystemError.h"
#include "platform/posix/SlowMounts.h"

namespace ombrelian::platform {

/// Runs calls that may never return in a thread of its own, one after the other, while this thread
/// waits as long as its Patience allows. If it gives up, the thread is abandoned with everything
/// that the call owns, and the mount counts as one that does not answer until the call returns.
/// Nobody waits for an abandoned thread, not even the end of the process.
///
/// All members are for the thread with the Patience.
class PatientCalls {
 public:
  /// `mount` is the mount point that the calls access; empty: it is not known.
  explicit PatientCalls(std::string mount);
  ~PatientCalls();
  PatientCalls(const PatientCalls&) = delete;
  PatientCalls& operator=(const PatientCalls&) = delete;

  /// Runs `call` and passes its exception on. False: the mount does not answer; the call was not
  /// begun, or it is still running. `call` therefore has to own all its data together with the
  /// caller, who must not use these data any more. Every later call returns false at once.
  bool run(std::function<void()> call);

  /// Runs `call` after all others, even if the mount does not answer, and waits for its end only
  /// for a moment, in which nobody is asked.
  void runLast(std::function<void()> call);

 private:
  struct State;

  static void work(State& state);
  void begin(std::function<void()> call);
  bool wait(const Patience::GoOn& goOn);

  std::shared_ptr<State> state_;
};

/// Result of `call`, which accesses `mount` and owns its data; `silent` if the mount does not
/// answer. Without a mount, `call` is run directly.
template <class Call, class Result = std::invoke_result_t<Call&>>
Result askPatiently(const std::optional<std::string>& mount, Call call, Result silent) {
  if (!mount) return call();
  const auto shared = std::make_shared<Call>(std::move(call));
  const auto answer = std::make_shared<std::optional<Result>>();
  PatientCalls calls(*mount);
  const bool isAnswered = calls.run([shared, answer] { answer->emplace((*shared)()); });
  return isAnswered ? std::move(**answer) : std::move(silent);
}

/// The slow mount of `path` if this thread waits with limited patience.
std::optional<std::string> patientMountOf(TextView path);

/// The mount point for calls on everything below `path`, if this thread waits with limited patience
/// and the calls could come to a slow mount; empty: it is not known to which.
std::optional<std::string> patientMountAround(TextView path);

}  // namespace ombrelian::platform
