#pragma once

#include <cstdint>

namespace ombrelian::testing {

/// The threads whose allocations can fail.
enum class FailsIn { ThisThread, AnyThread, OtherThreads };

/// Makes allocations fail, beginning with the one with the given number, counted from 1 over the
/// chosen threads. Only one object may exist at a time.
class FailingAllocation {
 public:
  /// `times` is how many allocations fail one after the other.
  explicit FailingAllocation(std::int64_t number, FailsIn threads = FailsIn::ThisThread,
                             std::int64_t times = 1);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// Whether the number of allocations was reached.
  bool hasFailed() const;
};

}  // namespace ombrelian::testing
