#include "format/RtfText.h"

#include <gtest/gtest.h>

namespace ombrelian {
namespace {

TEST(RtfTextTest, EscapesEveryUnit) {
  const struct {
    TextView text;
    bool wrap;
    TextView expected;
  } cases[] = {
      {u"A\t", false, u"\\'41\\'9"},
      {u"ä", false, u"\\'E4"},
      {u"\u20AC", false, u"\\uc1\\u8364?"},
      {u"\U0001F600", false, u"\\uc1\\u-10179?\\uc1\\u-8704?"},
      {u"", true, u"{\\rtf1}"},
      {u"x", true, u"{\\rtf1\\'78}"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(GetRtfUnicodeEscapedString2(c.text, c.wrap), c.expected) << toBytes(c.text);
  }
}

}  // namespace
}  // namespace ombrelian
