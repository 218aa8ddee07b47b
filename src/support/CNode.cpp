#include "support/CNode.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ombrelian {

std::int32_t grownBound(std::int32_t upperBound, double factor) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max() - 2;
  const double grown = std::floor(double(upperBound) * factor);
  if (grown >= double(kMost)) return kMost;
  // With a small bound or a factor of 1 or less, there must still be room for one more.
  if (!(grown > double(upperBound))) return upperBound + 1;
  return std::int32_t(grown);
}

void CNode::Init(std::int32_t size, float growthFactor) {
  size = std::max(size, 1);
  GrowthFactor = growthFactor;
  FreeList.assign(std::size_t(size) + 1, 0);
  chain(1, size);
  FreeHead = 1;
}

void CNode::Alloc(std::int32_t& index) {
  if (FreeHead == 0) {
    const auto last = std::int32_t(FreeList.size() - 1);
    const std::int32_t newLast = grownBound(last, double(GrowthFactor));
    FreeList.resize(std::size_t(newLast) + 1);
    chain(last + 1, newLast);
    FreeHead = last + 1;
  }
  index = FreeHead;
  FreeHead = FreeList[index];
}

void CNode::Free(std::int32_t index) {
  FreeList[index] = FreeHead;
  FreeHead = index;
}

void CNode::chain(std::int32_t first, std::int32_t last) {
  for (std::int32_t i = first; i < last; ++i) {
    FreeList[i] = i + 1;
  }
  FreeList[last] = 0;
}

}  // namespace ombrelian
