#pragma once

#include <cstdint>

namespace ombrelian::testing {

/// Makes one allocation of this thread fail, the one with the given number, counted from 1.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::int64_t number);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// Whether the number of allocations was reached.
  bool hasFailed() const;
};

}  // namespace ombrelian::testing
