#include "platform/Locale.h"

#include <gtest/gtest.h>

#include "tests/testing/ScopedLocale.h"

namespace ombrelian::platform {
namespace {

TEST(LocaleTest, WritesNumbersAndDatesAsTheLocaleDoes) {
  const struct {
    const char* name;
    TextView decimal, group;
    int secondary, minimum;
    TextView shortDate, time, march, sunday;
  } cases[] = {
      {"C", u".", u",", 3, 1, u"yyyy-MM-dd", u"HH:mm:ss", u"March", u"Sun"},
      {"C.UTF-8", u".", u",", 3, 1, u"yyyy-MM-dd", u"HH:mm:ss", u"March", u"Sun"},
      {"POSIX", u".", u",", 3, 1, u"yyyy-MM-dd", u"HH:mm:ss", u"March", u"Sun"},
      {"xx_YY.UTF-8", u".", u",", 3, 1, u"M/d/yyyy", u"HH:mm:ss", u"March", u"Sun"},
      {"en_US.UTF-8", u".", u",", 3, 1, u"M/d/yyyy", u"h:mm:ss tt", u"March", u"Sun"},
      {"de_DE.UTF-8@euro", u",", u".", 3, 1, u"dd.MM.yyyy", u"HH:mm:ss", u"M\u00E4rz", u"So"},
      {"fr_FR", u",", u"\u202F", 3, 1, u"dd/MM/yyyy", u"HH:mm:ss", u"mars", u"dim."},
      {"fr_CA", u",", u"\u00A0", 3, 1, u"yyyy-MM-dd", u"HH \"h\" mm \"min\" ss \"s\"", u"mars",
       u"dim."},
      {"es_ES", u",", u".", 3, 2, u"d/M/yyyy", u"H:mm:ss", u"marzo", u"dom"},
      {"hi_IN", u".", u",", 2, 1, u"d/M/yyyy", u"h:mm:ss tt", u"\u092E\u093E\u0930\u094D\u091A",
       u"\u0930\u0935\u093F"},
      {"ko_KR", u".", u",", 3, 1, u"yyyy. M. d.", u"tt h:mm:ss", u"3\uC6D4", u"\uC77C"},
  };
  for (const auto& c : cases) {
    const ScopedLocale locale(c.name);
    const NumberSymbols& numbers = numberSymbols();
    EXPECT_EQ(numbers.decimal, c.decimal) << c.name;
    EXPECT_EQ(numbers.group, c.group) << c.name;
    EXPECT_EQ(numbers.primaryGroup, 3) << c.name;
    EXPECT_EQ(numbers.secondaryGroup, c.secondary) << c.name;
    EXPECT_EQ(numbers.minimumGrouping, c.minimum) << c.name;
    EXPECT_EQ(dateSymbols().shortDate, c.shortDate) << c.name;
    EXPECT_EQ(dateSymbols().time, c.time) << c.name;
    EXPECT_EQ(dateSymbols().longMonths[2], c.march) << c.name;
    EXPECT_EQ(dateSymbols().shortDays[0], c.sunday) << c.name;
    EXPECT_FALSE(dateSymbols().am.empty() || dateSymbols().pm.empty()) << c.name;
  }
}

TEST(LocaleTest, ReadsEachCategoryAndLetsTheGeneralOnesWin) {
  const ScopedLocale all("", "LC_ALL");
  const ScopedLocale lang("de_DE.UTF-8", "LANG");
  EXPECT_EQ(numberSymbols().decimal, u",");
  EXPECT_EQ(GetUserDefaultLangID(), 7);
  {
    const ScopedLocale numeric("en_US", "LC_NUMERIC");
    const ScopedLocale messages("fr_FR", "LC_MESSAGES");
    EXPECT_EQ(numberSymbols().decimal, u".");
    EXPECT_EQ(dateSymbols().shortDate, u"dd.MM.yyyy");
    EXPECT_EQ(GetUserDefaultLangID(), 12);
    const ScopedLocale over("sv_SE", "LC_ALL");
    EXPECT_EQ(numberSymbols().decimal, u",");
    EXPECT_EQ(GetUserDefaultLangID(), 29);
  }
  const ScopedLocale none("", "LANG");
  EXPECT_EQ(numberSymbols().decimal, u".");
  EXPECT_EQ(GetUserDefaultLangID(), 9);
  const ScopedLocale other("ja_JP.UTF-8", "LC_MESSAGES");
  EXPECT_EQ(GetUserDefaultLangID(), 0);
}

TEST(LocaleTest, FoldsCaseOfEveryScriptAndKeepsWhatIsNoText) {
  const struct {
    const char* name;
    TextView text, lower, upper;
  } cases[] = {
      {"C", u"Plain TXT", u"plain txt", u"PLAIN TXT"},
      {"C", u"\u00C4rger\u00DF", u"\u00E4rger\u00DF", u"\u00C4RGER\u00DF"},
      {"de_DE", u"\u0416\u03A9", u"\u0436\u03C9", u"\u0416\u03A9"},
      {"de_DE", u"A\xDC80\xDCFF", u"a\xDC80\xDCFF", u"A\xDC80\xDCFF"},
      {"tr_TR", u"Ii", u"\u0131i", u"I\u0130"},
      {"de_DE", u"Ii", u"ii", u"II"},
      {"de_DE", u"\U00010428", u"\U00010428", u"\U00010400"},
  };
  for (const auto& c : cases) {
    const ScopedLocale locale(c.name);
    EXPECT_EQ(localeTextRules().lower(c.text), c.lower) << toBytes(c.text);
    EXPECT_EQ(localeTextRules().upper(c.text), c.upper) << toBytes(c.text);
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

}  // namespace
}  // namespace ombrelian::platform
