#include "lists/LocalClock.h"

#include "platform/Time.h"

namespace ombrelian {
namespace {

constexpr std::int64_t kSecondsPerDay = 86'400;
constexpr std::int64_t kDaysTo1970 = 25'569;  // days from 30 December 1899 to 1 January 1970

}  // namespace

std::int64_t LocalClock::converted(FileTime time) {
  DateParts parts;
  if (!platform::FileTimeToLocalSystemTime(time, parts)) return 0;
  const std::int64_t days = daysFromCivil(parts.year, parts.month, parts.day) + kDaysTo1970;
  return ((days * 24 + parts.hour) * 60 + parts.minute) * 60 + parts.second;
}

std::int64_t LocalClock::seconds(FileTime time) {
  // Before 1980, some zones changed their offset at other minutes than quarters of an hour.
  constexpr FileTime kYear1980 =
      (kUnixEpochInFileSeconds + 3652 * kSecondsPerDay) * kFileTimePerSecond;
  if (time < kYear1980 || time == kInvalidFileTime) return converted(time);
  const std::int64_t second = time / kFileTimePerSecond;
  const std::int64_t number = second / 900;
  Quarter& quarter = quarters_[std::size_t(number) % quarters_.size()];
  if (quarter.number != number) {
    const std::int64_t local = converted(time);
    if (local == 0) return 0;
    quarter = {number, local - second};
  }
  return second + quarter.offset;
}

std::int64_t LocalClock::bound(FileTime time, bool atMost) {
  constexpr std::int64_t kMostFromUtc = kSecondsPerDay;  // no zone is farther from UTC
  if (time == 0 || time == kInvalidFileTime) return 0;
  const std::int64_t utc =
      time / kFileTimePerSecond - kUnixEpochInFileSeconds + kDaysTo1970 * kSecondsPerDay;
  return atMost ? utc + kMostFromUtc : utc - kMostFromUtc;
}

Date LocalClock::dateFromSeconds(std::int64_t seconds) {
  const std::int64_t days = seconds / kSecondsPerDay;
  return double(days) + double(seconds % kSecondsPerDay) / double(kSecondsPerDay);
}

}  // namespace ombrelian
