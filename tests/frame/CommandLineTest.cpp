#include "frame/CommandLine.h"

#include <gtest/gtest.h>

#include "platform/Files.h"
#include "platform/Process.h"

namespace ombrelian {
namespace {

using Mode = CommandLine::Mode;
using Sources = std::deque<Text>;

TEST(CommandLineTest, SilentArguments) {
  const struct {
    std::vector<Text> arguments;
    std::int32_t levels;
    std::int32_t delimiter;
    Text custom;
    Text target;
    Sources sources;
  } cases[] = {
      {{u"-s", u"/t.txt", u"/a"}, -1, -1, u"", u"/t.txt", {u"/a"}},
      {{u"-s12", u"-d1", u"/t", u"/a", u"/b"}, 12, 1, u"", u"/t", {u"/a", u"/b"}},
      {{u"-s0", u"-d4 | ", u"/t", u"/a"}, 0, 4, u" | ", u"/t", {u"/a"}},
      {{u"-s99999999999999999999", u"/t", u"/a"}, INT32_MAX, -1, u"", u"/t", {u"/a"}},
      // Whatever a path can hold; behind "--" also a leading hyphen, which then is no root.
      {{u"-s", u"/t", u"/\"q\" \n\xDCFF", u"-TLMODUS", u"--", u"/-s"},
       -1,
       -1,
       u"",
       u"/t",
       {u"/\"q\" \n\xDCFF", u"/-s"}},
  };
  for (const auto& c : cases) {
    const CommandLine line = parseArguments(c.arguments);
    ASSERT_EQ(line.mode, Mode::Silent) << toBytes(line.error);
    EXPECT_EQ(line.levels, c.levels);
    EXPECT_EQ(line.delimiter, c.delimiter);
    EXPECT_EQ(line.customDelimiter, c.custom);
    EXPECT_EQ(line.target, c.target);
    EXPECT_EQ(line.sources, c.sources);
  }
}

TEST(CommandLineTest, RelativePathsBecomeAbsolute) {
  Text expected = platform::GetCurrentDirectoryW();
  const CommandLine line = parseArguments({u"-s", u"t.csv", u".", u"--", u"-odd"});
  EXPECT_EQ(line.target, expected + u"/t.csv");
  EXPECT_EQ(line.sources, (Sources{expected, expected + u"/-odd"}));
  const struct {
    TextView typed;
    TextView meant;
  } cases[] = {{u"/usr/../usr/./lib//", u"/usr/lib"},
               {u"/", u"/"},
               {u"//", u"/"},
               {u"/..", u"/"},
               {u"/no/such/../place", u"/no/place"},
               {u"/a b/ c ", u"/a b/ c "}};
  for (const auto& c : cases)
    EXPECT_EQ(platform::GetFullPathNameW(c.typed), c.meant);
}

TEST(CommandLineTest, WhatMakesNoJob) {
  for (const std::vector<Text>& arguments : std::vector<std::vector<Text>>{{u"-s"},
                                                                           {u"-s", u"/only-target"},
                                                                           {u"-s3", u"-d"},
                                                                           {u"-sx", u"/t", u"/a"},
                                                                           {u"--sources", u"/a"},
                                                                           {u"-s", u"/t", u""},
                                                                           {u"-s", u"", u"/a"},
                                                                           {u""},
                                                                           {u"-x"}}) {
    const CommandLine line = parseArguments(arguments);
    EXPECT_EQ(line.mode, Mode::Invalid) << toBytes(arguments.front());
    EXPECT_FALSE(line.error.empty());
  }
}

TEST(CommandLineTest, OtherForms) {
  EXPECT_EQ(parseArguments({}).mode, Mode::Interactive);
  EXPECT_EQ(parseArguments({u"/a", u"/b"}).sources, (Sources{u"/a", u"/b"}));
  EXPECT_EQ(parseArguments({u"/a", u"/b", u"/x/..//a/"}).sources, (Sources{u"/a", u"/b"}));
  EXPECT_EQ(parseArguments({u"-RESTART"}).mode, Mode::Restart);
  EXPECT_NE(parseArguments({u"-RESTART", u"/a"}).mode, Mode::Restart);
  EXPECT_EQ(parseArguments({u"-s", u"--help"}).mode, Mode::Help);
  EXPECT_EQ(parseArguments({u"--version"}).mode, Mode::Version);
  EXPECT_TRUE(parseArguments({u"-TLMODUS", u"/a"}).translatorMode);
}

TEST(CommandLineTest, ReadOnlyGoesWithEveryMode) {
  const struct {
    std::vector<Text> arguments;
    Mode mode;
    bool readOnly;
    Sources sources;
  } cases[] = {
      {{u"--read-only"}, Mode::Interactive, true, {}},
      {{u"/a", u"--read-only", u"/b"}, Mode::Interactive, true, {u"/a", u"/b"}},
      {{u"-s1", u"/t", u"/a", u"--read-only"}, Mode::Silent, true, {u"/a"}},
      {{u"--read-only", u"--lists", u"/a"}, Mode::Lists, true, {u"/a"}},
      {{u"-RESTART", u"--read-only"}, Mode::Restart, true, {}},
      {{u"-RESTART"}, Mode::Restart, false, {}},
      {{u"/a"}, Mode::Interactive, false, {u"/a"}},
      {{u"--", u"/b", u"--read-only"},
       Mode::Interactive,
       false,
       {u"/b", platform::GetFullPathNameW(u"--read-only")}},
      {{u"--read-only=no"}, Mode::Invalid, false, {}},
  };
  for (const auto& c : cases) {
    const CommandLine line = parseArguments(c.arguments);
    EXPECT_EQ(line.mode, c.mode) << toBytes(c.arguments.front());
    EXPECT_EQ(line.readOnly, c.readOnly) << toBytes(c.arguments.front());
    EXPECT_EQ(line.sources, c.sources);
  }
  const struct {
    TextView text;
    Mode mode;
    bool readOnly;
    Sources sources;
  } lines[] = {
      {uR"(--read-only "C:\a b" "D:")", Mode::Interactive, true, {uR"(C:\a b)", u"D:"}},
      {uR"(-s2 "C:\t.csv" "C:\a" --read-only)", Mode::Silent, true, {uR"(C:\a)"}},
      {u"-RESTART --read-only", Mode::Restart, true, {}},
      {uR"("C:\x --read-only" "D:")", Mode::Interactive, false, {uR"(C:\x --read-only)", u"D:"}},
      {u"C:/a--read-only", Mode::Interactive, false, {u"C:/a--read-only"}},
  };
  for (const auto& c : lines) {
    const CommandLine line = parseCommandText(c.text);
    EXPECT_EQ(line.mode, c.mode) << toBytes(c.text);
    EXPECT_EQ(line.readOnly, c.readOnly) << toBytes(c.text);
    EXPECT_EQ(line.sources, c.sources) << toBytes(c.text);
  }
}

TEST(CommandLineTest, LinesWithQuotedPaths) {
  const CommandLine silent = parseCommandText(uR"(-s5 -d4";;" "C:\t.csv" "C:\a" "D:\b" "open)");
  EXPECT_EQ(silent.mode, Mode::Silent);
  EXPECT_EQ(silent.levels, 5);
  EXPECT_EQ(silent.delimiter, 4);
  EXPECT_EQ(silent.customDelimiter, u";;");
  EXPECT_EQ(silent.target, u"C:\\t.csv");
  EXPECT_EQ(silent.sources, (Sources{u"C:\\a", u"D:\\b"}));
  EXPECT_EQ(parseCommandText(u" -RESTART ").mode, Mode::Restart);
  EXPECT_NE(parseCommandText(u"-RESTART x").mode, Mode::Restart);

  EXPECT_EQ(KZ_GetFoldersFromCommand(u"C:\\a b"), Sources{u"C:\\a b"});
  EXPECT_EQ(KZ_GetFoldersFromCommand(uR"("C:\a" "C:\b)"), Sources{u"C:\\a"});
  EXPECT_TRUE(KZ_GetFoldersFromCommand(u"").empty());
}

TEST(CommandLineTest, Lists) {
  const struct {
    std::vector<Text> arguments;
    Mode mode;
    std::int32_t rows;
    bool json;
  } cases[] = {
      {{u"--lists", u"/a"}, Mode::Lists, -1, false},
      {{u"/a", u"--json", u"--rows", u"7", u"--lists"}, Mode::Lists, 7, true},
      {{u"--lists", u"--rows", u"99999999999", u"--", u"/a"}, Mode::Lists, INT32_MAX, false},
      {{u"--lists"}, Mode::Invalid, -1, false},
      {{u"--lists", u"/a", u"/b"}, Mode::Invalid, -1, false},
      {{u"--lists", u"/a", u"--rows"}, Mode::Invalid, -1, false},
      {{u"--lists", u"--rows", u"-1", u"/a"}, Mode::Invalid, -1, false},
      {{u"--lists", u"--rows", u"x", u"/a"}, Mode::Invalid, -1, false},
      {{u"--json", u"/a"}, Mode::Invalid, -1, true},
      {{u"-s", u"--lists", u"/t", u"/a"}, Mode::Invalid, -1, false},
      {{u"--lists", u"--help"}, Mode::Help, -1, false},
      {{u"--lists", u"--save", u"/out", u"--format", u"Html", u"/a"}, Mode::Lists, -1, false},
      {{u"--lists", u"--save", u"/out", u"/a"}, Mode::Lists, -1, false},
      {{u"--lists", u"--save", u"/out", u"--format", u"htm", u"/a"}, Mode::Invalid, -1, false},
      {{u"--lists", u"--save", u"/out", u"--json", u"/a"}, Mode::Invalid, -1, true},
      {{u"--lists", u"--format", u"csv", u"/a"}, Mode::Invalid, -1, false},
      {{u"--lists", u"/a", u"--save"}, Mode::Invalid, -1, false},
      {{u"--lists", u"--helpers", u"64", u"/a"}, Mode::Lists, -1, false},
      {{u"--lists", u"--helpers", u"65", u"/a"}, Mode::Invalid, -1, false},
      {{u"--lists", u"/a", u"--helpers"}, Mode::Invalid, -1, false},
      {{u"--save", u"/out", u"/a"}, Mode::Invalid, -1, false},
  };
  for (const auto& c : cases) {
    const CommandLine line = parseArguments(c.arguments);
    EXPECT_EQ(line.mode, c.mode) << toBytes(line.error);
    EXPECT_EQ(line.error.empty(), c.mode != Mode::Invalid);
    EXPECT_EQ(line.rows, c.rows);
    EXPECT_EQ(line.json, c.json);
    if (c.mode == Mode::Lists) {
      EXPECT_EQ(line.sources, Sources{u"/a"});
    }
  }
}

}  // namespace
}  // namespace ombrelian
