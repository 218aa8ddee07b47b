#pragma once

#include <cstdint>

namespace ombrelian::testing {

/// While it lives, one allocation of this thread fails: the one with that number, counted from 1.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::int64_t number);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// Whether there were so many allocations.
  bool hasFailed() const;
};

}  // namespace ombrelian::testing
