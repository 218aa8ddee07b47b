#include "format/Mask.h"

#include <cmath>
#include <limits>
#include <random>

#include "tests/testing/Testing.h"

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
  const auto whole = [](double value) { return formatNumber(u"##0", value); };
  const auto cents = [](double value) { return formatNumber(u"###,##0.00", value); };
  // 1.005 is, as a double, a little less, and negative values round away from zero too.
  EXPECT_EQ(testing::each({1.005, -1.005, 99.995, 0.049, 1e-300, 9007199254740993.0}, cents),
            u"1.01|-1.01|100.00|0.05|0.00|9,007,199,254,740,992.00");
  EXPECT_EQ(testing::each({0.5, 2.5, -0.4, 99.995, 9.2e18, std::nan(""), 1e300}, whole),
            u"1|3|0|100|9200000000000000000|0|18446744073709551615");
}

TEST(MaskTest, DividesExactly) {
  std::mt19937_64 random(20261122);
  for (int round = 0; round < 200000; ++round) {
    const int shift = int(random() % 5) * 10;
    auto value = std::int64_t(random()) >> (random() % 63);
    // Every fourth value lies on a tie: an odd multiple of a two-hundredth is a multiple of 1/8.
    if (round % 4 == 0 && shift > 3) value = (value >> 3 | 1) * (std::int64_t(1) << (shift - 3));
    // Once without decimals, once with two.
    for (const int unit : {1, 100}) {
      const Wide scaled = (value < 0 ? -Wide(value) : Wide(value)) * unit;
      const Wide divisor = Wide(1) << shift;
      const Wide twice = scaled % divisor * 2;
      for (const Ties ties : {Ties::AwayFromZero, Ties::ToEven}) {
        Wide quotient = scaled / divisor;
        const bool isUp = ties == Ties::AwayFromZero || quotient % 2 == 1;
        if (twice > divisor || (twice == divisor && isUp)) ++quotient;
        const Decimal result = divideByPowerOfTwo(value, shift, unit == 1 ? 0 : 2, ties);
        ASSERT_TRUE(Wide(result.whole) * unit + Wide(result.fraction) == quotient)
            << value << " >> " << shift;
        ASSERT_LT(result.fraction, std::uint64_t(unit));
        ASSERT_TRUE(quotient == 0 || result.negative == (value < 0));
      }
    }
  }
}

TEST(MaskTest, CellsOfNumbers) {
  const ScopedLocale locale("de_DE");
  const std::pair<TextView, TextView> cases[] = {
      {u"*###,###,##0.00* MB;;;", u"||0,40 MB|1.024,00 MB|1.234,50 MB"},
      {u"*###,##0*;;;", u"||0|1.024|1.235"},
      {u"*##0.00*%", u"-3,00%|0,00%|0,40%|1024,00%|1234,50%"},
      {u"*##0*%", u"-3%|0%|0%|1024%|1235%"},
      {u"no mask", u"||||"},
      {u"*##0", u"||||"},
      {u"", u"||||"},
  };
  for (const auto& [pattern, texts] : cases) {
    const CellMask mask(pattern);
    const auto cell = [&](double value) { return shown(mask, value); };
    const auto wholeCell = [&](double value) { return shown(mask, std::int64_t(value)); };
    EXPECT_FALSE(mask.isDate());
    EXPECT_EQ(testing::each({-3.0, 0.0, 0.4, 1024.0, 1234.5}, cell), texts) << toBytes(pattern);
    EXPECT_EQ(testing::each({-3.0, 0.0, 1024.0}, wholeCell),
              testing::each({-3.0, 0.0, 1024.0}, cell))
        << toBytes(pattern);
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
