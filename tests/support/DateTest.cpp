#include "support/Date.h"

#include <gtest/gtest.h>

namespace ombrelian {
namespace {

TEST(DateTest, KnownDays) {
  EXPECT_EQ(toDate({1899, 12, 30}), 0.0);
  EXPECT_EQ(toDate({1899, 12, 29, 6}), -1.25);
  EXPECT_EQ(toDate({1970, 1, 1}), 25569.0);
  EXPECT_EQ(toDate({2000, 2, 29, 12}), 36585.5);
}

TEST(DateTest, EverySecondOfABorderComesBack) {
  for (const int year : {1601, 1899, 1900, 2000, 2024, 2100, 9999}) {
    for (int second = 0; second < 86400; second += 7) {
      const DateParts parts{year, 2, 28, second / 3600, second / 60 % 60, second % 60};
      const DateParts back = toParts(toDate(parts));
      ASSERT_EQ(back.year, parts.year);
      ASSERT_EQ(back.month, 2);
      ASSERT_EQ(back.day, 28);
      ASSERT_EQ(back.hour * 3600 + back.minute * 60 + back.second, second);
    }
  }
  EXPECT_EQ(toParts(toDate({2026, 11, 22})).weekday, 0);
}

}  // namespace
}  // namespace ombrelian
