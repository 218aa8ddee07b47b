#include "ui/QtText.h"

#include <gtest/gtest.h>

namespace ombrelian::ui {
namespace {

TEST(QtTextTest, NamesOfAnyKindSurviveAndTakeOneLine) {
  const Text name = Text(u"a\nb\tc\x7F") + char16_t(0xDC80) + u"\U0001F4C1";
  EXPECT_EQ(toText(toQString(name)), name);
  EXPECT_EQ(shownOnOneLine(u"a\nb\tc\x7F"), toQString(u"a\u240Ab\u2409c\u2421"));
}

}  // namespace
}  // namespace ombrelian::ui
