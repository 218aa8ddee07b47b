#include "platform/Time.h"

#include <time.h>

namespace ombrelian::platform {
namespace {

/// Floor of time / 10^7, which is also correct for times before 1601.
std::int64_t wholeSeconds(FileTime time) {
  const std::int64_t seconds = time / kFileTimePerSecond;
  return time % kFileTimePerSecond < 0 ? seconds - 1 : seconds;
}

bool toLocal(time_t seconds, DateParts& parts) {
  struct tm local;
  if (localtime_r(&seconds, &local) == nullptr) return false;
  parts.year = local.tm_year + 1900;
  parts.month = local.tm_mon + 1;
  parts.day = local.tm_mday;
  parts.hour = local.tm_hour;
  parts.minute = local.tm_min;
  parts.second = local.tm_sec < 60 ? local.tm_sec : 59;  // a date cannot contain a leap second
  parts.weekday = local.tm_wday;
  return true;
}

}  // namespace

bool FileTimeToLocalSystemTime(FileTime time, DateParts& parts) {
  if (time == 0 || time == kInvalidFileTime) return false;
  return toLocal(wholeSeconds(time) - kUnixEpochInFileSeconds, parts);
}

DateParts GetLocalTime() {
  DateParts parts;
  toLocal(time(nullptr), parts);
  return parts;
}

std::uint64_t GetTickCount() {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::uint64_t(now.tv_sec) * 1000 + std::uint64_t(now.tv_nsec) / 1'000'000;
}

void Sleep(std::uint32_t milliseconds) {
  struct timespec left = {time_t(milliseconds / 1000), long(milliseconds % 1000) * 1'000'000};
  while (nanosleep(&left, &left) != 0) {
  }
}

}  // namespace ombrelian::platform
