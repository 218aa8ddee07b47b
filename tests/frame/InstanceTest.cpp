#include "frame/Instance.h"

#include <gtest/gtest.h>

#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

using namespace std::string_literals;

TEST(InstanceMessageTest, EverySourceArrivesAndAForeignMessageIsRefused) {
  const InstanceMessage sent = {{u"/a b", u"/q\"uo\"te\n", u"/\xDCFF\u00E4"}, "the token"};
  const std::string bytes = encodeMessage(sent);
  EXPECT_EQ(bytes.substr(0, 14), "\0\0\0\0\x30\0\0\0\"\0/\0a\0"s);
  const Result<InstanceMessage> got = decodeMessage(bytes);
  ASSERT_TRUE(got);
  EXPECT_EQ(got->sources, sent.sources);
  EXPECT_EQ(got->activationToken, sent.activationToken);
  EXPECT_EQ(encodeMessage({}), "\0\0\0\0\1\0\0\0\0"s);
  EXPECT_TRUE(decodeMessage(encodeMessage({}))->sources.empty());
  // A sender that knows only the command line.
  EXPECT_EQ(decodeMessage("\0\0\0\0\x08\0\0\0\"\0/\0a\0\"\0"s)->sources, std::deque<Text>{u"/a"});

  const std::string tooLong = "\0\0\0\0\2\0\x10\0"s + std::string((1 << 20) + 2, 'x');
  for (const std::string& bad :
       {""s, "\0\0\0\0\2\0\0"s, "\1\0\0\0\2\0\0\0a\0"s, "\0\0\0\0\4\0\0\0a\0"s,
        "\0\0\0\0\3\0\0\0a\0b"s, "\0\0\0\0\1\0\0\0a"s, "\0\0\0\0\1\0\0\0\0token\0relative"s,
        std::string(1000, '\0'), "\0\0\0\0\6\0\0\0/\0\0\0a\0"s,
        encodeMessage({std::deque<Text>(20'000, u"/x"), {}}), tooLong}) {
    const Result<InstanceMessage> read = decodeMessage(bad);
    EXPECT_FALSE(read) << bad.substr(0, 16);
    EXPECT_TRUE(read || !read.error().text.empty());
  }
}

}  // namespace
}  // namespace ombrelian
