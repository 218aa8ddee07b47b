#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Volumes.h"

namespace ombrelian::platform {

/// Answer to the question about one mount.
struct DriveReport : DriveAnswer {
  bool isFolder = true;  // false: a single file is mounted there
};

/// Asks the system about the mount at `root`. Blocks as long as the device or the server behind it
/// blocks.
DriveReport askDrive(const std::string& root);

/// Asks drives questions that may never be answered. The questions run in threads, and a caller
/// waits only for a limited time. A thread ends when there are no more questions. A thread whose
/// drive does not answer remains blocked, and neither the prober nor the end of the process waits
/// for it.
class DriveProber {
 public:
  /// The question. Several threads may call it at the same time, also after the prober was
  /// destroyed.
  using Question = std::function<DriveReport(const std::string& root)>;

  /// Greatest number of threads. Further drives wait until a thread is free. If this number of
  /// drives never answers, the others are not asked.
  static constexpr unsigned kMostThreads = 32;

  explicit DriveProber(Question question);
  ~DriveProber();
  DriveProber(const DriveProber&) = delete;
  DriveProber& operator=(const DriveProber&) = delete;

  /// Asks about all roots and returns the answers that came within `limit`, in the order of the
  /// roots; kTimeout: no answer came. A root whose question from an earlier call is still open is
  /// not asked again, and the call does not wait for it. For one thread only.
  std::vector<DriveReport> ask(const std::vector<std::string>& roots,
                               std::chrono::milliseconds limit);

 private:
  struct State;

  static void work(State& state);
  void startThreads();

  const std::shared_ptr<State> state_;
};

}  // namespace ombrelian::platform
