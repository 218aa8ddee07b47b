#include <gtest/gtest.h>

#include "tests/testing/FewTexts.h"

namespace ombrelian {
namespace {

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
  EXPECT_EQ(TL(2, u"", {u"[%2]", u"x"}), u"[x] x");   // the next pass reaches into an argument
  EXPECT_EQ(TL(2, u"", {u"x", u"[%1]"}), u"x [%1]");  // no pass goes back
  EXPECT_EQ(TL(2, u"", {u"100%!", u""}), u"100%! ");  // line breaks come first
  EXPECT_EQ(TL(3, u"", {u"a"}), u"aa0");
  EXPECT_EQ(TL(2, u"", {u"a"}), u"a %2");
}

}  // namespace
}  // namespace ombrelian
