#pragma once

#include <cstdint>

namespace ombrelian {

/// Local time as a count of days since 30 December 1899, the time of day as fraction; 0 means that
/// there is no date. Times before that day count days downwards and the time of day upwards, away
/// from 0, as this form of date always did.
using Date = double;

/// A point in time as file systems keep it: units of 100 nanoseconds since 1 January 1601, UTC;
/// 0 means that there is none.
using FileTime = std::int64_t;

inline constexpr FileTime kFileTimePerSecond = 10'000'000;

/// Seconds between 1 January 1601 and 1 January 1970.
inline constexpr std::int64_t kUnixEpochInFileSeconds = 11'644'473'600;

/// A date taken apart; the calendar is the Gregorian one throughout.
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

/// What stands for a time that file times cannot hold; no calendar has it.
inline constexpr FileTime kInvalidFileTime = INT64_MAX;

/// The file time of a Unix time stamp.
constexpr FileTime fileTimeFromUnix(std::int64_t seconds, std::uint32_t nanoseconds) {
  constexpr std::int64_t kLimit = 900'000'000'000;  // some 28,000 years, either way
  if (seconds < -kLimit || seconds > kLimit) return kInvalidFileTime;
  return (seconds + kUnixEpochInFileSeconds) * kFileTimePerSecond + nanoseconds / 100;
}

}  // namespace ombrelian
