// Tests of texts, dates and translated texts.
#include <random>

#include "support/Date.h"
#include "tests/testing/FewTexts.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

TEST(TextTest, DecodesWellFormedAndEscapesTheRest) {
  const std::pair<const char*, const char16_t*> cases[] = {
      {"gr\xC3\xBC\xC3\x9F", u"gr\u00FC\u00DF"},
      {"\xE2\x82\xAC", u"\u20AC"},
      {"\xF0\x9F\x98\x80", u"\U0001F600"},
      {"\xFF\x80", u"\xDCFF\xDC80"},                      // bytes that UTF-8 never has
      {"\xC3", u"\xDCC3"},                                // an incomplete sequence
      {"\xC0\xAF", u"\xDCC0\xDCAF"},                      // longer than necessary
      {"\xED\xB2\x80", u"\xDCED\xDCB2\xDC80"},            // a surrogate in UTF-8
      {"\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},  // beyond U+10FFFF
      {"\xE2\x82x", u"\xDCE2\xDC82x"},
  };
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(fromBytes(bytes), text) << bytes;
    EXPECT_EQ(toBytes(text), bytes);
  }
}

TEST(TextTest, AnyBytesComeBack) {
  std::mt19937 random(20261122);
  // Bytes that start, continue or break sequences, so that all limits occur often.
  const unsigned char pool[] = {'a',  '/',  0x7F, 0x80, 0xA0, 0xBF, 0xC2, 0xC3, 0xDF, 0xE0,
                                0xED, 0xEF, 0xB2, 0x9F, 0x90, 0xF0, 0xF4, 0xF5, 0xFE, 0xFF};
  for (int round = 0; round < 20000; ++round) {
    std::string bytes(random() % 12, '\0');
    for (char& byte : bytes)
      byte = char(pool[random() % sizeof pool]);
    ASSERT_EQ(toBytes(fromBytes(bytes)), bytes);
  }
}

TEST(TextTest, ParsesWholeNumbersOnly) {
  std::int64_t value = 7;
  EXPECT_TRUE(parseNumber(u"-42", value));
  EXPECT_EQ(value, -42);
  for (const TextView text : {u"", u"4x", u" 4", u"99999999999999999999", u"\u0664"})
    EXPECT_FALSE(parseNumber(text, value));
  EXPECT_EQ(value, -42);
}

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
      ASSERT_TRUE(back.year == year && back.month == 2 && back.day == 28) << year;
      ASSERT_EQ(back.hour * 3600 + back.minute * 60 + back.second, second);
    }
  }
  EXPECT_EQ(toParts(toDate({2026, 11, 22})).weekday, 0);
}

TEST(TranslateTest, TheGermanTextStandsInForAMissingOne) {
  const testing::FewTexts texts({{5, u"Cancel"}, {6, u""}, {0, u"zero"}, {-1, u"minus"}});
  EXPECT_EQ(TL(5, u"Abbrechen"), u"Cancel");
  EXPECT_EQ(TL(6, u"Weiter"), u"Weiter");
  EXPECT_EQ(TL(7, u"Zurück"), u"Zurück");
  EXPECT_EQ(TL(0, u"Null%!%1", {u"0"}), u"Null\r\n0");
  EXPECT_EQ(TL(-1, u"Minus"), u"Minus");
}

TEST(TranslateTest, ReplacesPlaceholdersOneAfterTheOther) {
  const testing::FewTexts texts({{1, u"%2 of %1%!%2"}, {2, u"%1 %2"}, {3, u"%1%10"}});
  EXPECT_EQ(TL(1, u"%1 von %2", {u"a", u"b"}), u"b of a\r\nb");
  EXPECT_EQ(TL(2, u"", {u"[%2]", u"x"}), u"[x] x");   // the next pass also replaces in an argument
  EXPECT_EQ(TL(2, u"", {u"x", u"[%1]"}), u"x [%1]");  // a pass does not go back to earlier marks
  EXPECT_EQ(TL(2, u"", {u"100%!", u""}), u"100%! ");  // line breaks are replaced first
  EXPECT_EQ(TL(3, u"", {u"a"}), u"aa0");
  EXPECT_EQ(TL(2, u"", {u"a"}), u"a %2");
}

}  // namespace
}  // namespace ombrelian
