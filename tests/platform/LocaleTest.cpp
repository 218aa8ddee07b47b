// Texts that depend on the locale and the zone: formats, names of types, local times.
#include "platform/Locale.h"

#include <filesystem>

#include "format/DatePattern.h"
#include "platform/MimeDatabase.h"
#include "platform/Time.h"
#include "tests/testing/ScopedVariable.h"
#include "tests/testing/ScopedZone.h"
#include "tests/testing/TestFolder.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

TEST(LocaleTest, WritesNumbersAndDatesAsTheLocaleDoes) {
  // Decimal sign, grouping sign, sizes of the groups, digits before the first separator,
  // short date, time, March, Sunday.
  const std::pair<const char*, TextView> cases[] = {
      {"C.UTF-8", u".|,|3|3|1|yyyy-MM-dd|HH:mm:ss|March|Sun"},
      {"POSIX", u".|,|3|3|1|yyyy-MM-dd|HH:mm:ss|March|Sun"},
      {"xx_YY.UTF-8", u".|,|3|3|1|M/d/yyyy|HH:mm:ss|March|Sun"},
      {"en_US.UTF-8", u".|,|3|3|1|M/d/yyyy|h:mm:ss tt|March|Sun"},
      {"unconfigured", u".|,|3|3|1|M/d/yyyy|h:mm:ss tt|March|Sun"},
      {"/usr/lib/locale/de_DE", u".|,|3|3|1|M/d/yyyy|h:mm:ss tt|March|Sun"},
      {"de_DE.UTF-8@euro", u",|.|3|3|1|dd.MM.yyyy|HH:mm:ss|März|So"},
      {"fr_CA", u",|\u00A0|3|3|1|yyyy-MM-dd|HH \"h\" mm \"min\" ss \"s\"|mars|dim."},
      {"es_ES", u",|.|3|3|2|d/M/yyyy|H:mm:ss|marzo|dom"},
      {"hi_IN", u".|,|3|2|1|d/M/yyyy|h:mm:ss tt|मार्च|रवि"},
      {"ko_KR", u".|,|3|3|1|yyyy. M. d.|tt h:mm:ss|3월|일"},
  };
  for (const auto& [name, expected] : cases) {
    const ScopedLocale locale(name);
    const NumberSymbols& numbers = numberSymbols();
    const DateSymbols& dates = dateSymbols();
    const std::vector<Text> told = {numbers.decimal,
                                    numbers.group,
                                    toText(numbers.primaryGroup),
                                    toText(numbers.secondaryGroup),
                                    toText(numbers.minimumGrouping),
                                    dates.shortDate,
                                    dates.time,
                                    dates.longMonths[2],
                                    dates.shortDays[0]};
    EXPECT_EQ(told, testing::fields(expected)) << name;
    EXPECT_FALSE(dates.am.empty() || dates.pm.empty()) << name;
  }
}

TEST(LocaleTest, NamesTheLocaleThatIsNotKnown) {
  const std::pair<const char*, TextView> cases[] = {{"C", u""},
                                                    {"de_AT.UTF-8@euro", u""},
                                                    {"sr_Latn_RS", u""},
                                                    {"xx_YY", u"xx_YY"},
                                                    {"unconfigured", u"unconfigured"}};
  for (const auto& [name, unknown] : cases) {
    const ScopedLocale locale(name);
    EXPECT_EQ(UnknownLocaleName(), unknown);
  }
}

TEST(LocaleTest, ReadsEachCategoryAndLetsTheGeneralOnesWin) {
  const auto told = [] {
    return numberSymbols().decimal + u" " + dateSymbols().shortDate + u" " +
           toText(GetUserDefaultLangID());
  };
  const ScopedLocale all("", "LC_ALL");
  const ScopedLocale lang("de_DE.UTF-8", "LANG");
  EXPECT_EQ(told(), u", dd.MM.yyyy 7");
  {
    const ScopedLocale numeric("en_US", "LC_NUMERIC");
    const ScopedLocale messages("fr_FR", "LC_MESSAGES");
    EXPECT_EQ(told(), u". dd.MM.yyyy 12");
    const ScopedLocale over("sv_SE", "LC_ALL");
    EXPECT_EQ(told(), u", yyyy-MM-dd 29");
    const testing::ScopedVariable preferred("LANGUAGE", "ja:it_IT:de");
    EXPECT_EQ(told(), u", yyyy-MM-dd 16") << "the first language that is known";
  }
  const ScopedLocale none("", "LANG");
  const testing::ScopedVariable ignored("LANGUAGE", "de");
  EXPECT_EQ(told(), u". yyyy-MM-dd 9");
  const ScopedLocale other("ja_JP.UTF-8", "LC_MESSAGES");
  EXPECT_EQ(told(), u". yyyy-MM-dd 0");
}

TEST(LocaleTest, FoldsCaseOfEveryScriptAndKeepsWhatIsNoText) {
  const struct {
    std::vector<const char*> names;
    TextView text, lower, upper;
  } cases[] = {
      {{"C", "de_DE"}, u"Plain Ii TXT", u"plain ii txt", u"PLAIN II TXT"},
      {{"C", "de_DE"},
       u"Äß ЖΩ \xDC80\xDCFF \U00010428I",
       u"äß жω \xDC80\xDCFF \U00010428i",
       u"Äß ЖΩ \xDC80\xDCFF \U00010400I"},
      {{"tr_TR", "az_AZ"}, u"IiAa", u"\u0131iaa", u"I\u0130AA"},
      {{"tr_TR", "az_AZ"}, u"ÄIi\u0130\u0131Ж", u"ä\u0131ii\u0131ж", u"ÄI\u0130\u0130IЖ"},
  };
  for (const auto& c : cases) {
    for (const char* const name : c.names) {
      const ScopedLocale locale(name);
      EXPECT_EQ(localeTextRules().lower(c.text), c.lower) << name;
      EXPECT_EQ(localeTextRules().upper(c.text), c.upper) << name;
    }
  }
}

TEST(LocaleTest, OrdersAsTheLocaleDoes) {
  const struct {
    const char* name;
    TextView a, b;
    bool binary;
    int sign;
  } cases[] = {
      {"C", u"a", u"B", false, -1},           {"C", u"a", u"B", true, 1},
      {"C", u"abc", u"ABC", false, 0},        {"C", u"abc", u"ABC", true, 1},
      {"de_DE", u"\u00E4", u"z", false, -1},  {"sv_SE", u"\u00E4", u"z", false, 1},
      {"de_DE", u"a", u"\u00E4", false, -1},  {"de_DE", u"\u00E4", u"\u00C4", false, 0},
      {"C", u"\xDC80", u"\xDC81", false, -1}, {"C", u"", u"a", false, -1},
  };
  for (const auto& c : cases) {
    const ScopedLocale locale(c.name);
    const int order = localeTextRules().compare(c.a, c.b, c.binary);
    EXPECT_EQ((order > 0) - (order < 0), c.sign) << c.name << toBytes(c.a) << toBytes(c.b);
  }
}

TEST(FileTypesTest, TheDatabaseNamesTypesByExtension) {
  if (!std::filesystem::exists("/usr/share/mime/globs2")) GTEST_SKIP() << "no database here";
  EXPECT_EQ(GetFileTypeIcon(u"txt"), u"text-plain");
  EXPECT_EQ(GetFileTypeIcon(u"tar.gz"), u"application-x-compressed-tar");
  // The names are defined by the database; each language must have one.
  const auto nameIn = [](const char* language) {
    const ScopedLocale locale(language);
    return GetFileTypeName(u"txt");
  };
  EXPECT_FALSE(nameIn("C").empty());
  EXPECT_FALSE(nameIn("de_DE.UTF-8").empty());
  EXPECT_NE(nameIn("C"), nameIn("de_DE.UTF-8"));
}

TEST(FileTypesTest, AProgramIsTheOneThatTheUserChoseElseOneThatIsInstalled) {
  if (!std::filesystem::exists("/usr/share/mime/globs2")) GTEST_SKIP() << "no database here";
  const testing::TestFolder home;
  const testing::ScopedVariable config("XDG_CONFIG_HOME", home.path("config"));
  const testing::ScopedVariable data("XDG_DATA_HOME", home.path());
  home.write("applications/a.desktop", "[Desktop Entry]\nName=Editor\nName[de]=Schreiber\n");
  home.write("applications/b.desktop", "[Desktop Entry]\nName=Other\n[Action]\nName=New\n");
  home.write("applications/mimeinfo.cache", "[MIME Cache]\ntext/plain=gone.desktop;a.desktop;\n");
  const ScopedLocale locale("de_DE.UTF-8");
  EXPECT_EQ(GetAssociatedProgram(u"txt"), u"Schreiber");
  EXPECT_EQ(GetAssociatedProgram(u"py"), u"Schreiber") << "a kind of plain text";
  EXPECT_EQ(GetAssociatedProgram(u"no such type"), u"");
  const testing::ScopedVariable none("XDG_CONFIG_HOME", home.path("chosen"));
  home.write("chosen/mimeapps.list", "[Default Applications]\ntext/plain=b.desktop\n");
  EXPECT_EQ(GetAssociatedProgram(u"txt"), u"Other");
}

TEST(FileTypesTest, WhatNobodyKnowsIsEmpty) {
  for (const TextView extension : {u"", u"no such type", u"../../../etc/passwd", u"*", u"\xDCFF"}) {
    EXPECT_EQ(GetFileTypeName(extension), u"");
    EXPECT_EQ(GetFileTypeIcon(extension), u"");
  }
}

TEST(TimeTest, FileDatesAroundTheChangesOfTheClock) {
  const testing::ScopedZone zone{"CET-1CEST,M3.5.0,M10.5.0/3"};
  const std::pair<std::int64_t, TextView> cases[] = {
      {1792888200, u"2026-10-25 02:30:00"},  // first occurrence
      {1792891800, u"2026-10-25 02:30:00"},  // second occurrence, an hour later
      {1792895400, u"2026-10-25 03:30:00"},
      {1774745999, u"2026-03-29 01:59:59"},
      {1774746000, u"2026-03-29 03:00:00"},  // the hour before this was skipped
      {-1, u"1970-01-01 00:59:59"},
      {-11644473601, u"1601-01-01 00:59:59"},  // before the first file time
  };
  for (const auto& [unixTime, local] : cases) {
    DateParts parts;
    ASSERT_TRUE(FileTimeToLocalSystemTime(fileTimeFromUnix(unixTime, 999'999'999), parts));
    EXPECT_EQ(DatePattern(u"yyyy-mm-dd hh:nn:ss").format(toDate(parts)), local) << unixTime;
  }
  DateParts untouched{1, 2, 3};
  EXPECT_FALSE(FileTimeToLocalSystemTime(0, untouched));
  EXPECT_FALSE(FileTimeToLocalSystemTime(kInvalidFileTime, untouched));
  EXPECT_EQ(untouched.day, 3);
}

}  // namespace
}  // namespace ombrelian::platform
