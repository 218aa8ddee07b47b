#pragma once

#include <cstdint>
#include <vector>

namespace ombrelian {

/// New upper bound of an array that grows by `factor`: the whole part of the product, but at least
/// `upperBound` + 1.
std::int32_t grownBound(std::int32_t upperBound, double factor);

/// Manages the slots 1, 2, 3, ... of an array of its owner. Freed slots are used again first, and
/// the last freed slot is the first, so that an array with many removals does not grow.
class CNode {
 public:
  /// Makes all slots 1 to `size` free; a size below 1 counts as 1.
  void Init(std::int32_t size, float growthFactor);

  /// Sets `index` to a free slot. If there is none, the range of slots grows.
  void Alloc(std::int32_t& index);

  /// Frees the slot `index`, which must be in use.
  void Free(std::int32_t index);

 private:
  void chain(std::int32_t first, std::int32_t last);

  std::vector<std::int32_t> FreeList;  // slot i: the free slot after i, 0 at the end; 0 unused
  std::int32_t FreeHead = 0;           // first free slot; 0: there is none
  float GrowthFactor = 1.5F;
};

}  // namespace ombrelian
