#pragma once

#include <cstdint>

namespace ombrelian {

/// The sum of two sizes, at most the largest number: sparse files can be larger together than any
/// disk.
constexpr std::int64_t addSizes(std::int64_t a, std::int64_t b) {
  constexpr std::int64_t kLargest = INT64_MAX;
  return b > 0 && a > kLargest - b ? kLargest : a + b;
}

/// Sums of a scan below one folder; copied by value.
struct ScanTotals {
  std::int64_t Size = 0;  // bytes, logical length
  std::int32_t Files = 0;
  std::int32_t Folders = 0;    // folders with a node
  std::int32_t Errors = 0;     // entries and listings that could not be read
  std::int32_t Hardlinks = 0;  // files with more than one name
  std::int32_t Junctions = 0;  // reparse folders

  ScanTotals& operator+=(const ScanTotals& other) {
    Size = addSizes(Size, other.Size);
    Files += other.Files;
    Folders += other.Folders;
    Errors += other.Errors;
    Hardlinks += other.Hardlinks;
    Junctions += other.Junctions;
    return *this;
  }

  bool operator==(const ScanTotals&) const = default;
};

}  // namespace ombrelian
