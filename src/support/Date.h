#pragma once

#include <cstdint>

namespace ombrelian {

/// Local time as the number of days since 30 December 1899, with the time of day as the fraction; 0
/// means that there is no date. Before that day the whole part is negative and the fraction still
/// means the time of day, added away from 0, as is usual for this form of date.
using Date = double;

/// A point in time in the form of file systems: units of 100 nanoseconds since 1 January 1601, UTC;
/// 0 means that there is none.
using FileTime = std::int64_t;

inline constexpr FileTime kFileTimePerSecond = 10'000'000;

/// Seconds between 1 January 1601 and 1 January 1970.
inline constexpr std::int64_t kUnixEpochInFileSeconds = 11'644'473'600;

/// The parts of a date, always in the Gregorian calendar.
struct DateParts {
  int year = 0;
  int month = 0;    // 1 to 12
  int day = 0;      // 1 to 31
  int hour = 0;     // 0 to 23
  int minute = 0;   // 0 to 59
  int second = 0;   // 0 to 59
  int weekday = 0;  // 0 Sunday to 6 Saturday; not read by toDate
};

/// Days from 1 January 1970 to the given day.
std::int64_t daysFromCivil(int year, int month, int day);

Date toDate(const DateParts& parts);

/// The parts of `date`, rounded to the nearest second.
DateParts toParts(Date date);

/// Value for a time that does not fit into a file time. No calendar has this date.
inline constexpr FileTime kInvalidFileTime = INT64_MAX;

/// The file time of a Unix time stamp.
constexpr FileTime fileTimeFromUnix(std::int64_t seconds, std::uint32_t nanoseconds) {
  constexpr std::int64_t kLimit = 900'000'000'000;  // about 28,000 years in both directions
  if (seconds < -kLimit || seconds > kLimit) return kInvalidFileTime;
  return (seconds + kUnixEpochInFileSeconds) * kFileTimePerSecond + nanoseconds / 100;
}

}  // namespace ombrelian
