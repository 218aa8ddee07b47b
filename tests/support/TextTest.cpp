#include "support/Text.h"

#include <gtest/gtest.h>

#include <random>

namespace ombrelian {
namespace {

TEST(TextTest, DecodesWellFormedAndEscapesTheRest) {
  const struct {
    const char* bytes;
    const char16_t* text;
  } cases[] = {
      {"abc", u"abc"},
      {"gr\xC3\xBC\xC3\x9F", u"gr\u00FC\u00DF"},
      {"\xE2\x82\xAC", u"\u20AC"},
      {"\xF0\x9F\x98\x80", u"\U0001F600"},
      {"\xFF\x80", u"\xDCFF\xDC80"},                      // never in UTF-8
      {"\xC3", u"\xDCC3"},                                // cut off
      {"\xC0\xAF", u"\xDCC0\xDCAF"},                      // longer than needed
      {"\xED\xB2\x80", u"\xDCED\xDCB2\xDC80"},            // a surrogate written as bytes
      {"\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},  // beyond U+10FFFF
      {"\xE2\x82x", u"\xDCE2\xDC82x"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(fromBytes(c.bytes), c.text) << c.bytes;
    EXPECT_EQ(toBytes(c.text), c.bytes);
  }
}

TEST(TextTest, AnyBytesComeBack) {
  std::mt19937 random(20261122);
  // Bytes that begin, continue or break sequences, so that every border is met often.
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
  for (const TextView text : {u"", u"4x", u" 4", u"99999999999999999999", u"\u0664"}) {
    EXPECT_FALSE(parseNumber(text, value));
  }
  EXPECT_EQ(value, -42);
}

}  // namespace
}  // namespace ombrelian
