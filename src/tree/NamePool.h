#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "support/Text.h"

namespace ombrelian {

/// Stores names one after the other in large blocks that never move.
class NamePool {
 public:
  /// A copy of `name` that is valid and does not move until clear().
  TextView keep(TextView name) {
    if (name.size() > left_) startBlock(name.size());
    if (!name.empty()) std::memcpy(next_, name.data(), name.size() * sizeof(char16_t));
    const TextView kept(next_, name.size());
    next_ += name.size();
    left_ -= name.size();
    units_ += name.size();
    return kept;
  }

  /// Number of units of all stored names.
  std::size_t units() const { return units_; }

  void clear() {
    blocks_.clear();
    units_ = 0;
    next_ = nullptr;
    left_ = 0;
  }

 private:
  static constexpr std::size_t kBlockUnits = std::size_t(32) * 1024;

  void startBlock(std::size_t atLeast) {
    const std::size_t units = std::max(atLeast, kBlockUnits);
    blocks_.push_back(std::make_unique_for_overwrite<char16_t[]>(units));
    left_ = units;  // only now, as the line above may throw
    next_ = blocks_.back().get();
  }

  std::vector<std::unique_ptr<char16_t[]>> blocks_;
  char16_t* next_ = nullptr;
  std::size_t left_ = 0;  // number of free units from next_ on
  std::size_t units_ = 0;
};

}  // namespace ombrelian
