#include "format/ToolTips.h"

#include <gtest/gtest.h>

#include "platform/FindData.h"

#include "format/Attributes.h"
#include "tests/testing/ScopedLocale.h"

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
  const struct {
    std::uint32_t attributes;
    bool brackets;
    TextView text;
  } cases[] = {
      {kAttributesInvalid, false, u""},
      {kAttributesInvalid, true, u""},
      {0, false, u""},
      {0, true, u""},
      {platform::kAttributeDirectory | 0x80 | 0x40, true, u""},
      {0x7FFFFFFF, false, u"ASHRELTCOIP"},
      {platform::kAttributeReadOnly | platform::kAttributeArchive, false, u"AR"},
      {platform::kAttributeHidden | platform::kAttributeDirectory, true, u" <H>"},
      {0x400, false, u"L"},
      {0x200, false, u"P"},
      {0x2000, false, u"I"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(xFormatFileAttribute(c.attributes, c.brackets, u" "), c.text) << c.attributes;
  }
}

TEST(AttributesTest, EachKnownLetterGetsALine) {
  EXPECT_EQ(FormatToolTipText_Attribute(u"AxRa"), u"A: Archiv\r\nR: Schreibgeschützt");
  EXPECT_EQ(FormatToolTipText_Attribute(u"<>"), u"");
}

}  // namespace
}  // namespace ombrelian
