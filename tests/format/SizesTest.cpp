#include "format/Sizes.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>

#include "support/Translate.h"
#include "tests/testing/ScopedLocale.h"

namespace ombrelian {
namespace {

__extension__ using Wide = __int128;

constexpr std::int64_t kGB = 1 << 30;
constexpr std::int64_t kTB = kGB * 1024;

TEST(SizesTest, StatusTextInEveryFormat) {
  const struct {
    const char* locale;
    std::uint8_t format;
    std::int64_t size;
    bool withUnit, shortBytes;
    TextView text;
  } cases[] = {
      {"de_DE", 0, 1234567, true, false, u"1.234.567 Bytes"},
      {"de_DE", 0, 1234567, true, true, u"1.234.567 BS"},
      {"de_DE", 0, 1234567, false, true, u"1.234.567"},
      {"de_DE", 0, 0, true, false, u"0 Bytes"},
      {"de_DE", 1, 1536, true, false, u"1,50 KB"},
      {"de_DE", 2, 1536, false, false, u"0,00"},
      {"de_DE", 3, 5 * kGB / 2, true, true, u"2,50 GB"},
      {"de_DE", 4, 1024, false, false, u"1.024 Bytes"},
      {"de_DE", 4, 1024, false, true, u"1.024 BS"},
      {"de_DE", 4, 1025, false, false, u"1,00 KB"},
      {"de_DE", 4, 1048576, false, false, u"1.024,00 KB"},
      {"de_DE", 4, 1048577, false, false, u"1,00 MB"},
      {"de_DE", 4, 1047527424, true, false, u"999,00 MB"},
      {"de_DE", 4, 1047527425, true, false, u"0,98 GB"},
      {"de_DE", 5, kTB + kTB / 8, true, false, u"1,13 TB"},
      {"de_DE", 5, kTB, false, false, u"1,00"},
      {"de_DE", 6, kTB, true, false, u""},
      {"C", 1, 128, true, false, u"0.13 KB"},
      {"C", 1, -128, true, false, u"-0.13 KB"},
      {"C", 1, std::numeric_limits<std::int64_t>::max(), false, false, u"9,007,199,254,740,992.00"},
      {"fr_FR", 2, 1500000000, true, false, u"1\u202F430,51 MB"},
  };
  for (const auto& c : cases) {
    const ScopedLocale locale(c.locale);
    EXPECT_EQ(xFormatFileSize(c.format, c.size, c.withUnit, c.shortBytes), c.text)
        << int(c.format) << " " << c.size;
  }
}

TEST(SizesTest, AutomaticTextUpToTerabytes) {
  const ScopedLocale locale("en_US");
  const struct {
    std::int64_t size;
    TextView with, without;
  } cases[] = {
      {1024, u"1,024 Bytes", u"1,024"},  {1025, u"1.00 KB", u"1.00"},
      {1047527425, u"0.98 GB", u"0.98"}, {kTB, u"1,024.00 GB", u"1,024.00"},
      {kTB + 1, u"1.00 TB", u"1.00"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(xFormatFileSizeAuto(c.size, true), c.with);
    EXPECT_EQ(xFormatFileSizeAuto(c.size, false), c.without);
  }
}

TEST(SizesTest, PadsToTheWidthOfTheUnit) {
  const ScopedLocale locale("de_DE");
  const struct {
    std::uint8_t unit;
    bool withUnit, pad, withByteUnit;
    TextView text;
  } cases[] = {
      {0, true, false, true, u"1.073.741.824 Bytes"},
      {0, true, true, true, u"1.073.741.824 Bytes"},  // wider than its width stays whole
      {0, true, true, false, u"  1.073.741.824"},
      {0, false, true, true, u"  1.073.741.824"},
      {1, true, true, false, u"  1.048.576,00 KB"},
      {2, true, true, false, u"  1.024,00 MB"},
      {2, false, true, false, u"     1.024,00"},
      {3, true, true, false, u"  1,00 GB"},
      {3, true, false, true, u"1,00 GB"},
      {4, true, true, true, u""},
  };
  for (const auto& c : cases) {
    const SizeSettings settings{c.unit, false, false};
    EXPECT_EQ(FormatSize(settings, kGB, c.withUnit, c.pad, c.withByteUnit), c.text) << int(c.unit);
  }
}

TEST(SizesTest, TextForAlignedColumnsAndForExports) {
  const ScopedLocale locale("de_DE");
  const struct {
    std::int32_t format;
    std::int32_t width;
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
    TextView header, mask, field, driveHeader, driveField, percent;
  } cases[] = {
      {{0, true, false},
       u"Größe (Bytes)",
       u"*###,###,##0*;;;",
       u"size",
       u"Frei (Bytes)",
       u"SizeFreeBytes",
       u"*##0.00*%"},
      {{0, true, true},
       u"Größe",
       u"*###,###,##0* Bytes;;;",
       u"size",
       u"Frei",
       u"SizeFreeBytes",
       u"*##0.00*%"},
      {{1, false, false},
       u"Größe (KB)",
       u"*###,###,##0*;;;",
       u"sizeK",
       u"Frei (KB)",
       u"SizeFreeKB",
       u"*##0*%"},
      {{2, true, true},
       u"Größe",
       u"*###,###,##0.00* MB;;;",
       u"sizeM",
       u"Frei",
       u"SizeFreeMB",
       u"*##0.00*%"},
      {{3, true, false},
       u"Größe (GB)",
       u"*###,###,##0.00*;;;",
       u"sizeG",
       u"Frei (GB)",
       u"SizeFreeGB",
       u"*##0.00*%"},
      {{77, true, false},
       u"Größe (Bytes)",
       u"*###,###,##0*;;;",
       u"size",
       u"Frei (Bytes)",
       u"SizeFreeBytes",
       u"*##0.00*%"},
  };
  for (const auto& c : cases) {
    const SizeColumn column = sizeColumn(c.settings);
    EXPECT_EQ(column.header, c.header);
    EXPECT_EQ(column.mask, c.mask);
    EXPECT_EQ(column.field, c.field);
    const SizeColumn free = sizeColumn(c.settings, SizeKind::Free);
    EXPECT_EQ(free.header, c.driveHeader);
    EXPECT_EQ(free.field, c.driveField);
    EXPECT_EQ(free.mask, c.mask);
    EXPECT_EQ(percentMask(c.settings), c.percent);
  }
  const SizeColumn used = sizeColumn({2, false, false}, SizeKind::Used);
  EXPECT_EQ(used.header, u"Belegt (MB)");
  EXPECT_EQ(used.field, u"SizeUsedMB");
  const SizeColumn total = sizeColumn({2, false, false}, SizeKind::Total);
  EXPECT_EQ(total.header, u"Gesamt (MB)");
  EXPECT_EQ(total.field, u"SizeTotalMB");
}

class NumberedTexts : public LanguageTexts {
 public:
  Text text(int id) const override {
    const auto found = texts.find(id);
    return found == texts.end() ? Text() : found->second;
  }
  std::map<int, Text> texts;
};

TEST(SizesTest, UnitWordsAreTranslatedWhereTheyAreTexts) {
  const ScopedLocale locale("C");
  NumberedTexts texts;
  texts.texts = {{3516, u"grid"}, {3519, u"Size (%1)"}, {3888, u"Ko"}, {3887, u"octets"}};
  setLanguageTexts(&texts);
  EXPECT_EQ(xFormatFileSize(1, 1024, true, false), u"1.00 Ko");
  EXPECT_EQ(xFormatFileSize(0, 1, true, false), u"1 octets");
  EXPECT_EQ(xFormatFileSizeWithSpacer(1, 1024, 9, true, 0), u"     1 Ko");
  EXPECT_EQ(FormatSize({1, false, false}, 1024, true, false, true), u"1.00 KB");
  EXPECT_EQ(sizeColumn({1, false, false}).header, u"Size (grid)");
  setLanguageTexts(nullptr);
}

TEST(SizesTest, ValuesGoToTheEvenDigit) {
  EXPECT_EQ(sizeInUnit(128, kUnitKB), 0.12);
  EXPECT_EQ(sizeInUnit(384, kUnitKB), 0.38);
  EXPECT_EQ(sizeInUnit(1, kUnitGB), 0);
  EXPECT_EQ(sizeInUnit(1234, kUnitBytes), 1234);
  EXPECT_EQ(sizeInUnit(3 * kGB / 2, kUnitGB), 1.5);
  EXPECT_EQ(percentOf(0, 5), 0);
  EXPECT_EQ(percentOf(5, 0), 0);
  EXPECT_EQ(percentOf(1, 3), 33.33);
  EXPECT_EQ(percentOf(2, 3), 66.67);
  EXPECT_EQ(percentOf(1, 800), 0.12);  // 0.125
  EXPECT_EQ(percentOf(3, 800), 0.38);  // 0.375
  EXPECT_EQ(percentOf(7, 7), 100);
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
    if (part == 0 || whole == 0) continue;
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
