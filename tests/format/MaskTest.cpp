#include "format/Mask.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/testing/ScopedLocale.h"

namespace ombrelian {
namespace {

__extension__ using Wide = __int128;

constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

template <class Value>
Text shown(const CellMask& mask, Value value) {
  Text out;
  mask.append(value, out);
  return out;
}

TEST(MaskTest, WritesWholeNumbersInTheLocalesNotation) {
  const struct {
    const char* locale;
    TextView pattern;
    std::int64_t value;
    TextView text;
  } cases[] = {
      {"C", u"###,###,##0", 1234567, u"1,234,567"},
      {"C", u"###,##0", kLargest, u"9,223,372,036,854,775,807"},
      {"C", u"###,##0", kSmallest, u"-9,223,372,036,854,775,808"},
      {"C", u"########0", 1234567, u"1234567"},
      {"C", u"##0", 0, u"0"},
      {"C", u"###", 0, u""},
      {"C", u"000", 7, u"007"},
      {"C", u"###,##0", 999, u"999"},
      {"C", u"#####0.00", -5, u"-5.00"},
      {"de_DE", u"###,###,##0.00", 1234, u"1.234,00"},
      {"fr_FR", u"###,###,##0", 1234567, u"1\u202F234\u202F567"},
      {"es_ES", u"###,##0", 1234, u"1234"},
      {"es_ES", u"###,##0", 12345, u"12.345"},
      {"hi_IN", u"###,##0", 123456789, u"12,34,56,789"},
      {"de_CH", u"###,##0.00", 1000, u"1\u2019000.00"},
  };
  for (const auto& c : cases) {
    const ScopedLocale locale(c.locale);
    EXPECT_EQ(formatNumber(c.pattern, c.value), c.text) << c.locale << c.value;
  }
}

TEST(MaskTest, RoundsFractionsAsTheyPrint) {
  const ScopedLocale locale("C");
  const struct {
    TextView pattern;
    double value;
    TextView text;
  } cases[] = {
      {u"##0.00", 1.005, u"1.01"},    // as a double a little less
      {u"##0.00", -1.005, u"-1.01"},  // away from zero
      {u"##0", 0.5, u"1"},
      {u"##0", 2.5, u"3"},
      {u"##0", -0.4, u"0"},
      {u"##0", 99.995, u"100"},
      {u"##0.00", 99.995, u"100.00"},
      {u"##0.00", 0.049, u"0.05"},
      {u"##0.00", 1e-300, u"0.00"},
      {u"###,##0.00", 9007199254740993.0, u"9,007,199,254,740,992.00"},
      {u"##0", 9.2e18, u"9200000000000000000"},
      {u"##0", std::nan(""), u"0"},
      {u"##0", 1e300, u"18446744073709551615"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(formatNumber(c.pattern, c.value), c.text) << c.value;
  }
}

/// The quotient times 100, rounded, by plain wide arithmetic.
Wide hundredths(std::int64_t value, int shift, Ties ties) {
  const bool negative = value < 0;
  const Wide scaled = (negative ? -Wide(value) : Wide(value)) * 100;
  const Wide divisor = Wide(1) << shift;
  Wide quotient = scaled / divisor;
  const Wide twice = scaled % divisor * 2;
  const bool up =
      twice > divisor || (twice == divisor && (ties == Ties::AwayFromZero || quotient % 2 == 1));
  quotient += up ? 1 : 0;
  return negative ? -quotient : quotient;
}

TEST(MaskTest, DividesExactly) {
  std::mt19937_64 random(20261122);
  for (int round = 0; round < 200000; ++round) {
    const int shift = int(random() % 5) * 10;
    auto value = std::int64_t(random()) >> (random() % 63);
    // Every fourth value lies on a tie: an odd multiple of a two-hundredth is a multiple of 1/8.
    if (round % 4 == 0 && shift > 3) value = (value >> 3 | 1) * (std::int64_t(1) << (shift - 3));
    for (const Ties ties : {Ties::AwayFromZero, Ties::ToEven}) {
      const Decimal result = divideByPowerOfTwo(value, shift, 2, ties);
      const Wide back = Wide(result.whole) * 100 + Wide(result.fraction);
      ASSERT_TRUE((result.negative ? -back : back) == hundredths(value, shift, ties))
          << value << " >> " << shift;
      ASSERT_LT(result.fraction, 100u);
    }
  }
}

TEST(MaskTest, RoundsTiesAsAsked) {
  const struct {
    std::int64_t value;  // eighths of a kilobyte are 0.125, 0.375, ...
    std::uint64_t away, even;
  } cases[] = {{128, 13, 12}, {384, 38, 38}, {640, 63, 62}, {896, 88, 88}, {127, 12, 12}};
  for (const auto& c : cases) {
    EXPECT_EQ(divideByPowerOfTwo(c.value, 10, 2, Ties::AwayFromZero).fraction, c.away);
    EXPECT_EQ(divideByPowerOfTwo(c.value, 10, 2, Ties::ToEven).fraction, c.even);
    EXPECT_EQ(divideByPowerOfTwo(-c.value, 10, 2, Ties::AwayFromZero).fraction, c.away);
  }
  EXPECT_EQ(divideByPowerOfTwo(1536, 10, 0, Ties::ToEven).whole, 2u);
  EXPECT_EQ(divideByPowerOfTwo(2560, 10, 0, Ties::ToEven).whole, 2u);
  EXPECT_EQ(divideByPowerOfTwo(2560, 10, 0, Ties::AwayFromZero).whole, 3u);
}

TEST(MaskTest, CellsOfNumbers) {
  const ScopedLocale locale("de_DE");
  const struct {
    TextView mask;
    double value;
    TextView text;
  } cases[] = {
      {u"*###,###,##0.00* MB;;;", 1234.5, u"1.234,50 MB"},
      {u"*###,###,##0.00* MB;;;", 0, u""},
      {u"*###,###,##0.00* MB;;;", -3, u""},
      {u"*###,##0*;;;", 1024, u"1.024"},
      {u"*##0.00*%", 0, u"0,00%"},
      {u"*##0*%", 0, u"0%"},
      {u"*##0*%", 12.5, u"13%"},
      {u"*##0*%", -1, u"-1%"},
      {u"no mask", 5, u""},
      {u"*##0", 5, u""},
      {u"", 5, u""},
  };
  for (const auto& c : cases) {
    const CellMask mask(c.mask);
    EXPECT_EQ(shown(mask, c.value), c.text) << toBytes(c.mask);
    EXPECT_FALSE(mask.isDate());
    if (c.value == double(std::int64_t(c.value))) {
      EXPECT_EQ(shown(mask, std::int64_t(c.value)), c.text) << toBytes(c.mask);
    }
  }
  EXPECT_EQ(shown(CellMask(u"*##0*;;;"), (std::int64_t(1) << 53) + 1), u"9007199254740993");
}

TEST(MaskTest, CellsOfDates) {
  const ScopedLocale locale("C");
  const CellMask mask(u"*dd.MM.yyyy hh:nn*;;;");
  EXPECT_TRUE(mask.isDate());
  EXPECT_EQ(shown(mask, toDate({2026, 11, 22, 9, 5})), u"22.11.2026 09:05");
  EXPECT_EQ(shown(mask, 0.0), u"");
  EXPECT_EQ(shown(mask, toDate({1899, 12, 29})), u"");
  EXPECT_EQ(shown(mask, std::numeric_limits<double>::infinity()), u"");
}

}  // namespace
}  // namespace ombrelian
