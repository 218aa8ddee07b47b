#pragma once

#include <array>

#include "support/Date.h"

namespace ombrelian {

/// Converts file times to local time in whole seconds since 30 December 1899; 0: none. It keeps the
/// offset for each quarter of an hour, because the files of a walk share few of them and no time
/// zone changes its offset within one.
class LocalClock {
 public:
  std::int64_t seconds(FileTime time);

  /// The date for a value of seconds() that is above 0.
  static Date dateFromSeconds(std::int64_t seconds);

  /// The greatest possible value of seconds(), or the smallest if `atMost` is false, without a
  /// system call.
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
