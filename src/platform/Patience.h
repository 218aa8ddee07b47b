#pragma once

#include <chrono>
#include <functional>

#include "support/Text.h"

namespace ombrelian::platform {

/// Limits how long this thread waits for a file system whose server may have stopped answering: one
/// in a network, or one that a process provides. While an object of this class exists, every call
/// of this thread on such a file system asks `goOn` about every 30 ms; if the answer is false, the
/// call fails with kTimeout, although the system may still be working on it. Without an object, and
/// on local file systems, calls take as long as the system needs.
///
/// The newest object is in force. It must be destroyed by the thread that made it.
class Patience {
 public:
  /// `waited` is the time since the call began.
  using GoOn = std::function<bool(std::chrono::milliseconds waited)>;

  /// The time that is long enough for a single question.
  static constexpr std::chrono::milliseconds kForOneQuestion{5000};

  explicit Patience(GoOn goOn);
  ~Patience();
  Patience(const Patience&) = delete;
  Patience& operator=(const Patience&) = delete;

  /// The question of the newest object of this thread; null: there is no object.
  static const GoOn* current();

 private:
  const GoOn goOn_;
  Patience* older_;
};

/// Whether the object at `path` is on a file system whose calls may never return. Does not access
/// that file system.
bool MayNotAnswer(TextView path);

}  // namespace ombrelian::platform
