#pragma once

#include <array>
#include <vector>

#include "support/CStringCollection.h"

namespace ombrelian {

/// Sums of sizes and counts for each key (owner or extension), which grow with every file of a
/// walk. Slots are numbered from 1 in the order of the first use of their keys.
class SumTable {
 public:
  /// `compareMode` is that of CStringCollection.
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

  /// Slot of a recent key, so that few files need a search in the tree. A wrong guess is recognised
  /// by its key.
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
