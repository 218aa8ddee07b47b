#include "platform/Time.h"

#include <gtest/gtest.h>

#include <time.h>
#include "tests/testing/ScopedZone.h"

#include "format/DatePattern.h"

namespace ombrelian::platform {
namespace {

TEST(TimeTest, FileDatesAroundTheChangesOfTheClock) {
  const testing::ScopedZone zone{"CET-1CEST,M3.5.0,M10.5.0/3"};
  const struct {
    std::int64_t unixTime;
    TextView local;
  } cases[] = {
      {1792888200, u"2026-10-25 02:30:00"},  // the first time
      {1792891800, u"2026-10-25 02:30:00"},  // an hour later the same once more
      {1792895400, u"2026-10-25 03:30:00"},
      {1774745999, u"2026-03-29 01:59:59"},
      {1774746000, u"2026-03-29 03:00:00"},  // what is between them was skipped
      {-1, u"1970-01-01 00:59:59"},
      {-11644473601, u"1601-01-01 00:59:59"},  // before the first file time
  };
  for (const auto& c : cases) {
    DateParts parts;
    ASSERT_TRUE(FileTimeToLocalSystemTime(fileTimeFromUnix(c.unixTime, 999'999'999), parts));
    EXPECT_EQ(DatePattern(u"yyyy-mm-dd hh:nn:ss").format(toDate(parts)), c.local) << c.unixTime;
  }
  DateParts untouched{1, 2, 3};
  EXPECT_FALSE(FileTimeToLocalSystemTime(0, untouched));
  EXPECT_FALSE(FileTimeToLocalSystemTime(kInvalidFileTime, untouched));
  EXPECT_EQ(untouched.day, 3);
}

}  // namespace
}  // namespace ombrelian::platform
