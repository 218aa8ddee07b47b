#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

namespace ombrelian {

/// A growable array of plain records that never moves a record. Growing makes no copy, so there are
/// never two copies in memory, and a reference stays valid while other records are added.
template <class Record>
class SegmentedArray {
  static_assert(std::is_trivially_destructible_v<Record>);

 public:
  std::uint32_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  Record& operator[](std::uint32_t index) {
    return (*segments_[index >> kSegmentBits])[index & kSegmentMask];
  }
  const Record& operator[](std::uint32_t index) const {
    return (*segments_[index >> kSegmentBits])[index & kSegmentMask];
  }

  /// Appends an empty record and returns its index. Throws std::bad_alloc, also when no index is
  /// left.
  std::uint32_t add() {
    if (size_ == UINT32_MAX) throw std::bad_alloc();
    if (size_ >> kSegmentBits == segments_.size()) {
      segments_.push_back(std::make_unique<Segment>());
    }
    return size_++;
  }

  /// Removes all records and frees their memory.
  void clear() {
    segments_.clear();
    size_ = 0;
  }

 private:
  static constexpr unsigned kSegmentBits = 12;
  static constexpr std::uint32_t kSegmentMask = (1U << kSegmentBits) - 1;
  using Segment = std::array<Record, std::size_t(1) << kSegmentBits>;

  std::vector<std::unique_ptr<Segment>> segments_;
  std::uint32_t size_ = 0;
};

}  // namespace ombrelian
