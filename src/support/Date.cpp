#include "support/Date.h"

#include <cmath>

namespace ombrelian {
namespace {

constexpr std::int64_t kDayZero = -25569;  // 30 December 1899, in days from 1 January 1970
constexpr int kSecondsPerDay = 86400;

}  // namespace

std::int64_t daysFromCivil(int year, int month, int day) {
  // Years begin in March here, so that the leap day is the last day of its year.
  const std::int64_t shifted = std::int64_t(year) - (month <= 2 ? 1 : 0);
  const std::int64_t era = (shifted >= 0 ? shifted : shifted - 399) / 400;
  const std::int64_t yearOfEra = shifted - era * 400;
  const int monthFromMarch = month > 2 ? month - 3 : month + 9;
  const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

Date toDate(const DateParts& parts) {
  const auto days = double(daysFromCivil(parts.year, parts.month, parts.day) - kDayZero);
  const double time =
      double(parts.hour * 3600 + parts.minute * 60 + parts.second) / double(kSecondsPerDay);
  return days < 0 ? days - time : days + time;
}

DateParts toParts(Date date) {
  const double whole = std::trunc(date);
  auto seconds = std::int64_t(std::llround(std::fabs(date - whole) * kSecondsPerDay));
  std::int64_t days = std::int64_t(whole) + kDayZero;
  if (seconds == kSecondsPerDay) {
    seconds = 0;
    ++days;
  }
  DateParts parts;
  parts.hour = int(seconds / 3600);
  parts.minute = int(seconds / 60 % 60);
  parts.second = int(seconds % 60);
  parts.weekday = int(((days + 4) % 7 + 7) % 7);
  const std::int64_t fromMarchZero = days + 719468;
  const std::int64_t era = (fromMarchZero >= 0 ? fromMarchZero : fromMarchZero - 146096) / 146097;
  const std::int64_t dayOfEra = fromMarchZero - era * 146097;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int monthFromMarch = int((5 * dayOfYear + 2) / 153);
  parts.day = int(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  parts.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  parts.year = int(yearOfEra + era * 400 + (parts.month <= 2 ? 1 : 0));
  return parts;
}

}  // namespace ombrelian
