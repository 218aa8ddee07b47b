#pragma once

#include <QElapsedTimer>
#include <cstdint>

namespace ombrelian::ui {

struct MatchCount {
  std::uint64_t count = 0;
  bool isAll = true;  // false: there was no time to count all
};

/// Counts matches for a limited time.
class MatchCounter {
 public:
  explicit MatchCounter(int milliseconds) : limit_(milliseconds) { timer_.start(); }

  /// Whether to continue. It looks at the clock only from time to time.
  bool hasTime() {
    constexpr std::uint64_t kSteps = 1024;
    if (++steps_ % kSteps == 0 && timer_.elapsed() > limit_) result_.isAll = false;
    return result_.isAll;
  }

  void add(bool isMatch) { result_.count += isMatch ? 1 : 0; }
  MatchCount result() const { return result_; }

 private:
  const int limit_;
  QElapsedTimer timer_;
  std::uint64_t steps_ = 0;
  MatchCount result_;
};

}  // namespace ombrelian::ui
