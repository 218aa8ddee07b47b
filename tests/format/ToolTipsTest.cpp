#include "format/ToolTips.h"

#include "format/Attributes.h"
#include "format/RtfText.h"
#include "platform/FindData.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

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
  EXPECT_EQ(
      testing::each({kAttributesInvalid, 0U, 0x7FFFFFFFU, 0x21U, 0x400U, 0x200U, 0x2000U}, plain),
      u"||ASHRELTCOIP|AR|L|P|I");
  EXPECT_EQ(testing::each({kAttributesInvalid, 0U, folder | 0x80 | 0x40, folder | 2}, inBrackets),
            u"||| <H>");
}

TEST(AttributesTest, EachKnownLetterGetsALine) {
  EXPECT_EQ(FormatToolTipText_Attribute(u"AxRa"), u"A: Archiv\r\nR: Schreibgeschützt");
  EXPECT_EQ(FormatToolTipText_Attribute(u"<>"), u"");
}

TEST(RtfTextTest, EscapesEveryUnit) {
  const auto plain = [](TextView text) { return GetRtfUnicodeEscapedString2(text, false); };
  EXPECT_EQ(testing::each(testing::fields(u"A\t|ä|\u20AC|\U0001F600"), plain),
            u"\\'41\\'9|\\'E4|\\uc1\\u8364?|\\uc1\\u-10179?\\uc1\\u-8704?");
  EXPECT_EQ(GetRtfUnicodeEscapedString2(u"", true), u"{\\rtf1}");
  EXPECT_EQ(GetRtfUnicodeEscapedString2(u"x", true), u"{\\rtf1\\'78}");
}

}  // namespace
}  // namespace ombrelian
