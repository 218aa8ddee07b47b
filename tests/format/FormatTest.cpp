// Dates, tooltips, attributes and texts for RTF.
#include "format/Attributes.h"
#include "format/DatePattern.h"
#include "format/RtfText.h"
#include "format/ToolTips.h"
#include "platform/FindData.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

using testing::each;
using testing::fields;

const Date kMorning = toDate({2026, 3, 5, 0, 4, 9});
const Date kAfternoon = toDate({2026, 11, 22, 15, 7, 30});

TEST(DatePatternTest, WritesEveryPatternThatIsOffered) {
  const struct {
    const char* locale;
    TextView pattern, morning, afternoon;
  } cases[] = {
      {"de_DE", u"dd.MM.yyyy hh:nn:ss", u"05.03.2026 00:04:09", u"22.11.2026 15:07:30"},
      {"de_DE", u"dd. mmm yyyy hh:nn:ss", u"05. Mär 2026 00:04:09", u"22. Nov 2026 15:07:30"},
      {"C", u"yyyy-mm-dd hh:nn:ss", u"2026-03-05 00:04:09", u"2026-11-22 15:07:30"},
      {"de_DE", u"MM/dd/yyyy h:n:s AM/PM", u"03/05/2026 12:4:9 AM", u"11/22/2026 3:7:30 PM"},
      {"C", u"dd-mmm-yyyy h:n:s am/pm", u"05-Mar-2026 12:4:9 am", u"22-Nov-2026 3:7:30 pm"},
      {"en_US", u"M/d/yyyy h:mm:ss tt", u"3/5/2026 12:04:09 AM", u"11/22/2026 3:07:30 PM"},
      {"C", u"HH.mm.ss dd.MM.yy", u"00.04.09 05.03.26", u"15.07.30 22.11.26"},
      {"C", u"DDDD, D MMMM YYYY", u"Thursday, 5 March 2026", u"Sunday, 22 November 2026"},
      {"fr_FR", u"ddd d mmmm yyyy", u"jeu. 5 mars 2026", u"dim. 22 novembre 2026"},
      {"C", u"HH \"h\" mm 'min' ss \\s", u"00 h 04 min 09 s", u"15 h 07 min 30 s"},
      {"C", u"yyyy \"up", u"2026 \"up", u"2026 \"up"},
      {"C", u"d\\", u"5", u"22"},
      {"C", u"hh mmm", u"00 Mar", u"15 Nov"},  // a name of a month is never a minute
      {"ko_KR", u"tt h:mm", u"\uC624\uC804 12:04", u"\uC624\uD6C4 3:07"},
  };
  for (const auto& c : cases) {
    const ScopedLocale locale(c.locale);
    EXPECT_EQ(DatePattern(c.pattern).format(kMorning), c.morning) << toBytes(c.pattern);
    EXPECT_EQ(DatePattern(c.pattern).format(kAfternoon), c.afternoon) << toBytes(c.pattern);
  }
}

TEST(DatePatternTest, TheHoursOfAClockOfTwelve) {
  const ScopedLocale locale("C");
  const auto told = [](int hour) {
    return DatePattern(u"h AM/PM").format(toDate({2026, 1, 1, hour}));
  };
  EXPECT_EQ(each({0, 1, 11, 12, 13}, told), u"12 AM|1 AM|11 AM|12 PM|1 PM");
}

TEST(DatePatternTest, DefaultsComeFromTheLocaleWithoutItsAmPm) {
  const auto told = [](const char* name) {
    const ScopedLocale locale(name);
    const Text pattern = defaultDateFormat();
    return pattern + u"|" + DatePattern(pattern).format(kAfternoon);
  };
  EXPECT_EQ(told("C"), u"yyyy-MM-dd HH:mm:ss|2026-11-22 15:07:30");
  EXPECT_EQ(told("en_US"), u"M/d/yyyy h:mm:ss|11/22/2026 15:07:30");
  EXPECT_EQ(told("bg_BG"), u"d.MM.yyyy \"г\". H:mm:ss \"ч\".|22.11.2026 г. 15:07:30 ч.");
}

TEST(DatePatternTest, GeneralDateLeavesOutWhatIsZero) {
  const auto told = [](const char* name) {
    const ScopedLocale locale(name);
    return each({kAfternoon, toDate({2026, 11, 22}), 0.5, 0.0}, formatGeneralDate);
  };
  EXPECT_EQ(told("de_DE"), u"22.11.2026 15:07:30|22.11.2026|12:00:00|");
  EXPECT_EQ(told("en_US"), u"11/22/2026 3:07:30 PM|11/22/2026|12:00:00 PM|");
  EXPECT_EQ(told("C"), u"2026-11-22 15:07:30|2026-11-22|12:00:00|");
}

TEST(DatePatternTest, SpansOfTime) {
  EXPECT_EQ(each({0, 3599, 86399, 90061, 360'000, -5}, formatTimeSpan),
            u"00:00:00|00:59:59|23:59:59|25:01:01|100:00:00|00:00:00");
}

TEST(ToolTipsTest, ASizeInAllUnits) {
  const ScopedLocale locale("de_DE");
  EXPECT_EQ(FormatToolTipText_Size(1234), u"1.234,00 Bytes\r\n1,21 KB\r\n0,00 MB\r\n0,00 GB");
  EXPECT_EQ(FormatToolTipText_Size(128).substr(14, 7), u"0,12 KB");  // the value that the row shows
  EXPECT_EQ(FormatToolTipText_Size(std::nullopt), u"");
}

TEST(ToolTipsTest, ADriveWithAndWithoutSizes) {
  const ScopedLocale locale("de_DE");
  DriveToolTipValues drive{u"System (/)", 1 << 30,  1 << 20, std::int64_t(1) << 41,
                           u"ext4",       u"lokal", u"4 KB"};
  EXPECT_EQ(FormatToolTipText_DriveSize(drive, DriveSizeKind::Free),
            u"Freier Speicherplatz\r\n1.048.576,00 Bytes\r\n1.024,00 KB\r\n1,00 MB\r\n0,00 GB");
  EXPECT_TRUE(FormatToolTipText_DriveSize(drive, DriveSizeKind::Used)
                  .starts_with(u"Belegter Speicherplatz\r\n1.073.741.824,00"));
  EXPECT_TRUE(FormatToolTipText_DriveSize(drive, DriveSizeKind::Total)
                  .starts_with(u"Gesamtgröße\r\n2.199."));
  EXPECT_EQ(FormatToolTipText_DriveInfo(drive),
            u"Belegter Speicherplatz: 1,00 GB\r\nFreier Speicherplatz: 1.024,00 KB\r\n"
            u"Gesamtgröße: 2,00 TB\r\nDateisystem: ext4\r\nLaufwerkstyp: lokal\r\n"
            u"Clustergröße: 4 KB");
  drive.total.reset();
  EXPECT_EQ(FormatToolTipText_DriveSize(drive, DriveSizeKind::Free), u"");
  EXPECT_EQ(FormatToolTipText_DriveInfo(drive),
            u"Name: System (/)\r\nDateisystem: ext4\r\nLaufwerkstyp: lokal\r\n"
            u"Clustergröße: 4 KB");
}

TEST(AttributesTest, LettersComeInTheirFixedOrder) {
  const auto plain = [](std::uint32_t bits) { return xFormatFileAttribute(bits, false, u" "); };
  const auto inBrackets = [](std::uint32_t bits) { return xFormatFileAttribute(bits, true, u" "); };
  const std::uint32_t folder = platform::kAttributeDirectory;
  EXPECT_EQ(each({kAttributesInvalid, 0U, 0x7FFFFFFFU, 0x21U, 0x400U, 0x200U, 0x2000U}, plain),
            u"||ASHRELTCOIP|AR|L|P|I");
  EXPECT_EQ(each({kAttributesInvalid, 0U, folder | 0x80 | 0x40, folder | 2}, inBrackets),
            u"||| <H>");
  EXPECT_EQ(FormatToolTipText_Attribute(u"AxRa"), u"A: Archiv\r\nR: Schreibgeschützt");
  EXPECT_EQ(FormatToolTipText_Attribute(u"<>"), u"");
}

TEST(RtfTextTest, EscapesEveryUnit) {
  const auto plain = [](TextView text) { return GetRtfUnicodeEscapedString2(text, false); };
  EXPECT_EQ(each(fields(u"A\t\x0F|ä|\u20AC|\U0001F600"), plain),
            u"\\'41\\tab \\'0F|\\'E4|\\uc1\\u8364?|\\uc1\\u-10179?\\uc1\\u-8704?");
  EXPECT_EQ(GetRtfUnicodeEscapedString2(u"", true), u"{\\rtf1}");
  EXPECT_EQ(GetRtfUnicodeEscapedString2(u"x", true), u"{\\rtf1\\'78}");
}

}  // namespace
}  // namespace ombrelian
