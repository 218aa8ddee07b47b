#pragma once

#include <cstdint>
#include <vector>

namespace ombrelian {

/// The upper bound of an array that grows from `upperBound` by `factor`: the whole part of the
/// product, but always at least one more than before.
std::int32_t grownBound(std::int32_t upperBound, double factor);

/// Hands out the slots 1, 2, 3, ... of an array that its owner keeps. Slots that came back are
/// handed out first, the last one first, so that an array with many removals does not grow.
class CNode {
 public:
  /// All slots 1 to `size` free; a size below 1 counts as 1.
  void Init(std::int32_t size, float growthFactor);

  /// Takes a free slot, growing the range of slots when there is none left.
  void Alloc(std::int32_t& index);

  /// Gives back `index`, which must be in use.
  void Free(std::int32_t index);

 private:
  void chain(std::int32_t first, std::int32_t last);

  std::vector<std::int32_t> FreeList;  // slot i: the free slot after i, 0 at the end; 0 unused
  std::int32_t FreeHead = 0;           // 0: none is left
  float GrowthFactor = 1.5F;
};

}  // namespace ombrelian
