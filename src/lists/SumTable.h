#pragma once

#include <array>
#include <vector>

#include "support/CStringCollection.h"

namespace ombrelian {

/// Sums of sizes and counts by key, added to for every file of a walk: the owners, or the
/// extensions. Slots count from 1 in the order in which keys came first.
class SumTable {
 public:
  /// `compareMode` as CStringCollection has it.
  explicit SumTable(std::int32_t compareMode);

  void clear();

  void add(TextView key, std::int64_t size, std::int32_t files, std::int32_t folders);

  std::int32_t count() const { return keys_.Count(); }
  TextView key(std::int32_t slot) const { return *keys_.Key(slot); }
  std::int64_t size(std::int32_t slot) const { return sizes_[std::size_t(slot)]; }
  std::int32_t files(std::int32_t slot) const { return files_[std::size_t(slot)]; }
  std::int32_t folders(std::int32_t slot) const { return folders_[std::size_t(slot)]; }

 private:
  static constexpr std::int32_t kGrowth = 100;

  /// Where a key of a short while ago is, so that few files ask the tree. Wrong guesses are seen
  /// by the key.
  struct Guess {
    Text key;
    std::int32_t slot = 0;
  };

  std::int32_t slotOf(TextView key);
  void grow(std::int32_t slot);

  CStringCollection keys_;
  std::vector<std::int64_t> sizes_;  // bytes
  std::vector<std::int32_t> files_;
  std::vector<std::int32_t> folders_;
  std::array<Guess, 256> guesses_;
};

}  // namespace ombrelian
