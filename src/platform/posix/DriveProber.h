#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Volumes.h"

namespace ombrelian::platform {

/// The questions about one mount.
struct DriveReport : DriveAnswer {
  bool isFolder = true;  // false: a single file is mounted there
};

/// What the system says of the mount at `root`. Blocks as long as what lies behind it does.
DriveReport askDrive(const std::string& root);

/// Asks drives questions that may never be answered, in threads that nobody waits for longer than
/// he likes. A thread lasts as long as there are questions; one whose drive does not answer stays
/// with it, and neither the prober nor the end of the process waits for it.
class DriveProber {
 public:
  /// May be called by several threads at once, and after the prober is gone.
  using Question = std::function<DriveReport(const std::string& root)>;

  /// More drives than that are asked one after the other; so many that never answer stop the rest.
  static constexpr unsigned kMostThreads = 32;

  explicit DriveProber(Question question);
  ~DriveProber();
  DriveProber(const DriveProber&) = delete;
  DriveProber& operator=(const DriveProber&) = delete;

  /// Asks about all roots and returns what was answered within `limit`, in their order; kTimeout
  /// where nothing was. A root whose question of an earlier call is still open is not asked again,
  /// nor waited for. For one thread only.
  std::vector<DriveReport> ask(const std::vector<std::string>& roots,
                               std::chrono::milliseconds limit);

 private:
  struct State;

  static void work(State& state);
  void startThreads();

  const std::shared_ptr<State> state_;
};

}  // namespace ombrelian::platform
