// Masks of cells and texts of sizes.
#include <cmath>
#include <limits>
#include <random>

#include "format/Mask.h"
#include "format/Sizes.h"
#include "tests/testing/FewTexts.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

using testing::each;

__extension__ using Wide = __int128;

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
      {"C", u"###,##0", INT64_MAX, u"9,223,372,036,854,775,807"},
      {"C", u"###,##0", INT64_MIN, u"-9,223,372,036,854,775,808"},
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
  // As a double, 1.005 is a little less. Negative values are rounded away from zero too.
  EXPECT_EQ(each({1.005, -1.005, 99.995, 0.049, 1e-300, 9007199254740993.0}, cents),
            u"1.01|-1.01|100.00|0.05|0.00|9,007,199,254,740,992.00");
  EXPECT_EQ(each({0.5, 2.5, -0.4, 99.995, 9.2e18, std::nan(""), 1e300}, whole),
            u"1|3|0|100|9200000000000000000|0|18446744073709551615");
}

TEST(MaskTest, DividesExactly) {
  std::mt19937_64 random(20261122);
  for (int round = 0; round < 200000; ++round) {
    const int shift = int(random() % 5) * 10;
    auto value = std::int64_t(random()) >> (random() % 63);
    // Every fourth value is a tie: an odd multiple of 1/200 is a multiple of 1/8.
    if (round % 4 == 0 && shift > 3) value = (value >> 3 | 1) * (std::int64_t(1) << (shift - 3));
    // The units stand for no decimals and two decimals.
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
  };
  for (const auto& [pattern, texts] : cases) {
    const CellMask mask(pattern);
    const auto cell = [&](double value) { return shown(mask, value); };
    const auto wholeCell = [&](double value) { return shown(mask, std::int64_t(value)); };
    EXPECT_FALSE(mask.isDate());
    EXPECT_EQ(each({-3.0, 0.0, 0.4, 1024.0, 1234.5}, cell), texts) << toBytes(pattern);
    EXPECT_EQ(each({-3.0, 0.0, 1024.0}, wholeCell), each({-3.0, 0.0, 1024.0}, cell))
        << toBytes(pattern);
  }
  EXPECT_EQ(shown(CellMask(u"*##0*;;;"), (std::int64_t(1) << 53) + 1), u"9007199254740993");
}

TEST(MaskTest, CellsOfDates) {
  const ScopedLocale locale("C");
  const CellMask mask(u"*dd.MM.yyyy hh:nn*;;;");
  EXPECT_TRUE(mask.isDate());
  const auto cell = [&](Date date) { return shown(mask, date); };
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(each({toDate({2026, 11, 22, 9, 5}), 0.0, toDate({1899, 12, 29}), infinity}, cell),
            u"22.11.2026 09:05|||");
}

constexpr std::int64_t kGB = 1 << 30;
constexpr std::int64_t kTB = kGB * 1024;

TEST(SizesTest, StatusTextInEveryFormat) {
  const ScopedLocale locale("de_DE");
  const struct {
    std::int64_t size;
    bool withUnit, shortBytes;
    TextView texts;  // texts of the sizes, one for each format
  } cases[] = {
      {1234567, true, false, u"1.234.567 Bytes|1.205,63 KB|1,18 MB|0,00 GB|1,18 MB|0,00 TB|"},
      {1234567, false, true, u"1.234.567|1.205,63|1,18|0,00|1,18 MB|0,00|"},
      {1000, true, true, u"1.000 BS|0,98 KB|0,00 MB|0,00 GB|1.000 BS|0,00 TB|"},
      {1000, false, false, u"1.000|0,98|0,00|0,00|1.000 Bytes|0,00|"},
      {-128, true, false, u"-128 Bytes|-0,13 KB|0,00 MB|0,00 GB|-128 Bytes|0,00 TB|"},
      {kTB + kTB / 8, true, false,
       u"1.236.950.581.248 Bytes|1.207.959.552,00 KB|1.179.648,00 MB|1.152,00 GB|1.152,00 GB|"
       u"1,13 TB|"},
  };
  for (const auto& c : cases) {
    const auto told = [&](int format) {
      return xFormatFileSize(std::uint8_t(format), c.size, c.withUnit, c.shortBytes);
    };
    EXPECT_EQ(each({0, 1, 2, 3, 4, 5, 6}, told), c.texts) << c.size;
  }
  EXPECT_EQ(xFormatFileSize(1, INT64_MAX, false, false), u"9.007.199.254.740.992,00");
}

TEST(SizesTest, AutomaticUnits) {
  const ScopedLocale locale("en_US");
  const std::vector<std::int64_t> sizes = {1024,       1025,       1048576, 1048577,
                                           1047527424, 1047527425, kTB,     kTB + 1};
  const auto status = [](std::int64_t size) { return xFormatFileSize(4, size, true, false); };
  const auto with = [](std::int64_t size) { return xFormatFileSizeAuto(size, true); };
  const auto without = [](std::int64_t size) { return xFormatFileSizeAuto(size, false); };
  EXPECT_EQ(each(sizes, status),
            u"1,024 Bytes|1.00 KB|1,024.00 KB|1.00 MB|999.00 MB|0.98 GB|1,024.00 GB|1,024.00 GB");
  EXPECT_EQ(each(sizes, with),
            u"1,024 Bytes|1.00 KB|1,024.00 KB|1.00 MB|999.00 MB|0.98 GB|1,024.00 GB|1.00 TB");
  EXPECT_EQ(each(sizes, without), u"1,024|1.00|1,024.00|1.00|999.00|0.98|1,024.00|1.00");
}

TEST(SizesTest, FittingUnitsHaveThreeDigits) {
  const ScopedLocale locale("de_DE");
  const std::vector<std::int64_t> sizes = {0,         999,      1000,      5120,
                                           102'348,   102'349,  -5,        1'023'487,
                                           1'023'488, 95563022, INT64_MAX, 3 * kGB / 2};
  EXPECT_EQ(
      each(sizes, [](std::int64_t size) { return FormatSize({6}, size, true, true, true); }),
      u"0 B|999 B|1,0 KB|5,0 KB|99,9 KB|100 KB|-5 B|999 KB|1,0 MB|91,1 MB|8.388.608 TB|1,5 GB");
}

TEST(SizesTest, PadsToTheWidthOfTheUnit) {
  const ScopedLocale locale("de_DE");
  const auto text = [](std::uint8_t unit, bool withUnit, bool pad, bool withByteUnit) {
    return FormatSize({unit, false, false}, kGB, withUnit, pad, withByteUnit);
  };
  EXPECT_EQ(text(0, true, false, true), u"1.073.741.824 Bytes");
  EXPECT_EQ(text(0, true, true, true), u"1.073.741.824 Bytes") << "wider than its width";
  EXPECT_EQ(text(0, true, true, false), u"  1.073.741.824");
  EXPECT_EQ(text(0, false, true, true), u"  1.073.741.824");
  EXPECT_EQ(text(1, true, true, false), u"  1.048.576,00 KB");
  EXPECT_EQ(text(2, true, true, false), u"  1.024,00 MB");
  EXPECT_EQ(text(2, false, true, false), u"     1.024,00");
  EXPECT_EQ(text(3, true, true, false), u"  1,00 GB");
  EXPECT_EQ(text(3, true, false, true), u"1,00 GB");
  EXPECT_EQ(text(4, true, true, true), u"");
}

TEST(SizesTest, TextForAlignedColumnsAndForExports) {
  const ScopedLocale locale("de_DE");
  const struct {
    std::int32_t format, width;
    bool withUnit, decimals;
    TextView aligned, exported;
  } cases[] = {
      {0, 16, true, true, u"1.610.612.737 Bytes", u"1610612737"},
      {0, 16, false, true, u"   1.610.612.737", u"1610612737"},
      {1, 0, true, true, u"1.572.864,00 KB", u"1572864,00"},
      {2, 0, true, false, u"1.536 MB", u"1536"},
      {3, 10, true, false, u"      2 GB", u"2"},
      {3, 0, true, true, u"1,50 GB", u"1,50"},
      {5, 0, true, true, u"0,00 TB", u"0,00"},
      {4, 3, true, true, u"   ", u""},
      {9, 0, true, true, u"", u""},
  };
  constexpr std::int64_t kSize = kGB + kGB / 2 + 1;
  for (const auto& c : cases) {
    EXPECT_EQ(xFormatFileSizeWithSpacer(c.format, kSize, c.width, c.withUnit, c.decimals),
              c.aligned);
    const SizeSettings settings{std::uint8_t(c.format), c.decimals, true};
    EXPECT_EQ(FormatFileSizeSave(settings, kSize), c.exported) << c.format;
  }
  EXPECT_EQ(xFormatFileSizeWithSpacer(12.5, 5), u"   13");
}

TEST(SizesTest, ColumnsFollowTheSettingsOfTheirList) {
  const struct {
    SizeSettings settings;
    TextView told;
  } cases[] = {
      {{0, true, false},
       u"Größe (Bytes) size Frei (Bytes) SizeFreeBytes *###,###,##0*;;; *##0.00*%"},
      {{0, true, true}, u"Größe size Frei SizeFreeBytes *###,###,##0* Bytes;;; *##0.00*%"},
      {{1, false, false}, u"Größe (KB) sizeK Frei (KB) SizeFreeKB *###,###,##0*;;; *##0*%"},
      {{2, true, true}, u"Größe sizeM Frei SizeFreeMB *###,###,##0.00* MB;;; *##0.00*%"},
      {{3, true, false}, u"Größe (GB) sizeG Frei (GB) SizeFreeGB *###,###,##0.00*;;; *##0.00*%"},
      {{6, true, false}, u"Größe size Frei SizeFreeBytes  *##0.00*%"},
      {{5, true, false},
       u"Größe (Bytes) size Frei (Bytes) SizeFreeBytes *###,###,##0*;;; *##0.00*%"},
  };
  const auto told = [](const SizeColumn& column) {
    return Text(column.header) + u" " + Text(column.field) + u" ";
  };
  for (const auto& c : cases) {
    const SizeColumn size = sizeColumn(c.settings);
    const SizeColumn free = sizeColumn(c.settings, SizeKind::Free);
    const Text masks = Text(size.mask) + u" " + Text(percentMask(c.settings));
    EXPECT_EQ(told(size) + told(free) + masks, c.told);
    EXPECT_EQ(free.mask, size.mask);
  }
  EXPECT_EQ(told(sizeColumn({2, false, false}, SizeKind::Used)), u"Belegt (MB) SizeUsedMB ");
  EXPECT_EQ(told(sizeColumn({2, false, false}, SizeKind::Total)), u"Gesamt (MB) SizeTotalMB ");
}

TEST(SizesTest, UnitWordsAreTranslatedWhereTheyAreTexts) {
  const ScopedLocale locale("C");
  const testing::FewTexts texts(
      {{3516, u"grid"}, {3519, u"Size (%1)"}, {3888, u"Ko"}, {3887, u"octets"}});
  EXPECT_EQ(xFormatFileSize(1, 1024, true, false), u"1.00 Ko");
  EXPECT_EQ(xFormatFileSize(0, 1, true, false), u"1 octets");
  EXPECT_EQ(xFormatFileSizeWithSpacer(1, 1024, 9, true, 0), u"     1 Ko");
  EXPECT_EQ(FormatSize({1, false, false}, 1024, true, false, true), u"1.00 KB");
  EXPECT_EQ(sizeColumn({1, false, false}).header, u"Size (grid)");
}

TEST(SizesTest, ValuesGoToTheEvenDigit) {
  EXPECT_EQ(sizeInUnit(128, kUnitKB), 0.12);
  EXPECT_EQ(sizeInUnit(384, kUnitKB), 0.38);
  EXPECT_EQ(sizeInUnit(1, kUnitGB), 0);
  EXPECT_EQ(sizeInUnit(1234, kUnitBytes), 1234);
  EXPECT_EQ(sizeInUnit(3 * kGB / 2, kUnitGB), 1.5);
  EXPECT_TRUE(percentOf(0, 5) == 0 && percentOf(5, 0) == 0);
}

TEST(SizesTest, SharesAreExactForSizesOfAnyWidth) {
  std::mt19937_64 random(20261122);
  for (int round = 0; round < 100000; ++round) {
    auto whole = std::int64_t(random() >> 1) >> (random() % 62);
    auto part = std::int64_t(random() >> 1) % (whole + 1);
    if (round % 3 == 0) {  // a tie: a share in 20000 parts that is odd
      const std::int64_t step = whole / 20000;
      whole = step * 20000;
      part = step * ((part % 20000) | 1);
    }
    if (whole == 0) continue;
    const Wide scaled = Wide(part) * 10000;
    Wide hundredths = scaled / whole;
    const Wide twice = scaled % whole * 2;
    if (twice > whole || (twice == whole && hundredths % 2 == 1)) ++hundredths;
    ASSERT_EQ(percentOf(part, whole), double(std::int64_t(hundredths)) / 100)
        << part << "/" << whole;
  }
}

}  // namespace
}  // namespace ombrelian
