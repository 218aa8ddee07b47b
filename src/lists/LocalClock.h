#pragma once

#include <array>

#include "support/Date.h"

namespace ombrelian {

/// Local time of file times in whole seconds since 30 December 1899; 0: none. The files of a walk
/// share few quarters of an hour, within which no time zone changes its distance from UTC.
class LocalClock {
 public:
  std::int64_t seconds(FileTime time);

  /// What seconds() gave, if it is above 0, as a date.
  static Date dateFromSeconds(std::int64_t seconds);

  /// What seconds() gives at the most, or with `atMost` false at the least; asks nobody.
  static std::int64_t bound(FileTime time, bool atMost);

 private:
  struct Quarter {
    std::int64_t number = INT64_MIN;  // number of the quarter of an hour in UTC
    std::int64_t offset = 0;          // seconds to add
  };

  static std::int64_t converted(FileTime time);

  std::array<Quarter, 256> quarters_;
};

}  // namespace ombrelian
