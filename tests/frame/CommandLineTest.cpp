// Tests of the command line and of the commands of the window.

#include "frame/CommandLine.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "frame/CommandTable.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "tests/testing/ChildProcess.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using Mode = CommandLine::Mode;
using Sources = std::deque<Text>;

/// All values of a line. A line with an error differs from all lines without one.
std::string said(const CommandLine& line) {
  Text all = toText(int(line.mode)) + (line.readOnly ? u" read-only" : u"") +
             (line.json ? u" json " : u" ") + toText(line.levels) + u" " + toText(line.delimiter) +
             u" " + toText(line.rows) + u" '" + line.customDelimiter + u"' '" + line.target + u"'";
  for (const Text& source : line.sources)
    all += u" '" + source + u"'";
  return toBytes(all + line.error);
}

std::vector<Text> split(TextView typed, char16_t separator = u' ') {
  std::vector<Text> arguments;
  for (std::size_t at = 0; at != TextView::npos;) {
    const std::size_t end = typed.find(separator, at);
    arguments.emplace_back(typed.substr(at, end - at));
    at = end == TextView::npos ? end : end + 1;
  }
  return arguments;
}

TEST(CommandLineTest, Arguments) {
  const CommandLine lists = {.mode = Mode::Lists, .sources = {u"/a"}};
  const Text hyphen = platform::GetFullPathNameW(u"--read-only");
  const std::pair<TextView, CommandLine> cases[] = {
      {u"/a /b /x/..//a/", {.sources = {u"/a", u"/b"}}},
      {u"-RESTART", {.mode = Mode::Restart}},
      {u"--version", {.mode = Mode::Version}},
      {u"-s --help", {.mode = Mode::Help}},
      {u"--lists --help", {.mode = Mode::Help}},
      {u"-s /t.txt /a", {.mode = Mode::Silent, .sources = {u"/a"}, .target = u"/t.txt"}},
      {u"--format csv -s - -- -",
       {.mode = Mode::Silent, .sources = {platform::GetFullPathNameW(u"-")}, .target = u"-"}},
      {u"--lists --rows 0 /a", {.mode = Mode::Lists, .sources = {u"/a"}, .rows = 0}},
      {u"-s12 -d1 /t /a /b",
       {.mode = Mode::Silent,
        .sources = {u"/a", u"/b"},
        .target = u"/t",
        .levels = 12,
        .delimiter = 1}},
      {u"-s0 -d4|| /t /a",
       {.mode = Mode::Silent,
        .sources = {u"/a"},
        .target = u"/t",
        .levels = 0,
        .delimiter = 4,
        .customDelimiter = u"||"}},
      {u"-s99999999999999999999 /t /a",
       {.mode = Mode::Silent, .sources = {u"/a"}, .target = u"/t", .levels = INT32_MAX}},
      // Paths may contain any character; after "--" also a leading hyphen.
      {u"-s /t /\"q\"\n\xDCFF -TLMODUS -- /-s",
       {.mode = Mode::Silent, .sources = {u"/\"q\"\n\xDCFF", u"/-s"}, .target = u"/t"}},
      {u"--lists /a", lists},
      {u"--lists --save /out --format Html /a", lists},
      {u"--lists --save /out /a", lists},
      {u"--lists --helpers 64 /a", lists},
      {u"/a --json --rows 7 --lists",
       {.mode = Mode::Lists, .sources = {u"/a"}, .json = true, .rows = 7}},
      {u"--lists --rows 99999999999 -- /a",
       {.mode = Mode::Lists, .sources = {u"/a"}, .rows = INT32_MAX}},
      {u"--read-only", {.readOnly = true}},
      {u"/a --read-only /b", {.readOnly = true, .sources = {u"/a", u"/b"}}},
      {u"-s1 /t /a --read-only",
       {.mode = Mode::Silent, .readOnly = true, .sources = {u"/a"}, .target = u"/t", .levels = 1}},
      {u"--read-only --lists /a", {.mode = Mode::Lists, .readOnly = true, .sources = {u"/a"}}},
      {u"-RESTART --read-only", {.mode = Mode::Restart, .readOnly = true}},
      {u"-- /b --read-only", {.sources = {u"/b", hyphen}}},
  };
  for (const auto& [typed, expected] : cases)
    EXPECT_EQ(said(parseArguments(split(typed))), said(expected)) << toBytes(typed);
  EXPECT_EQ(said(parseArguments({})), said({}));
  EXPECT_TRUE(parseArguments({u"-TLMODUS", u"/a"}).translatorMode);
}

TEST(CommandLineTest, WhatMakesNoJob) {
  const TextView all =
      u";-x;-RESTART /a;-s;-s /only-target;-s3 -d;-sx /t /a;--sources /a;-s /t ;-s  /a;--lists;"
      u"--lists /a /b;--lists /a --rows;--lists --rows -1 /a;--lists --rows x /a;--json /a;"
      u"-s --lists /t /a;--lists --save /out --format htm /a;--lists --save /out --json /a;"
      u"--lists --format csv /a;--lists /a --save;--save /out /a;--lists --helpers 65 /a;"
      u"--lists /a --helpers;--read-only=no;-s -d5 /t /a;-s -d /t /a;-s -d9 /t /a";
  for (const Text& typed : split(all, u';')) {
    const CommandLine line = parseArguments(split(typed));
    EXPECT_EQ(line.mode, Mode::Invalid) << toBytes(typed);
    EXPECT_FALSE(line.error.empty()) << toBytes(typed);
  }
}

TEST(CommandLineTest, RelativePathsBecomeAbsolute) {
  Text expected = platform::GetCurrentDirectoryW();
  const CommandLine line = parseArguments({u"-s", u"t.csv", u".", u"--", u"-odd"});
  EXPECT_EQ(line.target, expected + u"/t.csv");
  EXPECT_EQ(line.sources, (Sources{expected, expected + u"/-odd"}));
  const std::pair<TextView, TextView> cases[] = {
      {u"/usr/../usr/./lib//", u"/usr/lib"}, {u"/", u"/"},   {u"//", u"/"},
      {u"/no/such/../place", u"/no/place"},  {u"/..", u"/"}, {u"/a b/ c ", u"/a b/ c "}};
  for (const auto& [typed, meant] : cases)
    EXPECT_EQ(platform::GetFullPathNameW(typed), meant);
  // A link before a ".." decides; a link at the end may be one of another user.
  const testing::TestFolder folder;
  folder.folder("a/inner");
  folder.file("victim");
  folder.symlink("way", "a/inner");
  folder.symlink("link", "victim");
  const std::pair<const char*, const char*> links[] = {
      {"way/..", "a"}, {"way/../file", "a/file"}, {"a/../link", "link"}, {"a/../link/", "link"}};
  for (const auto& [typed, meant] : links)
    EXPECT_EQ(platform::GetFullPathNameW(folder.text(typed)), folder.text(meant)) << typed;
}

TEST(CommandLineTest, RelativePathsNeedACurrentFolder) {
  const int status = testing::statusOfChild([] {
    const testing::TestFolder folder;
    folder.folder("gone");
    if (chdir(folder.path("gone").c_str()) != 0 || rmdir(folder.path("gone").c_str()) != 0)
      return 1;
    const bool isRefused =
        parseArguments({u"-s", u"/r.txt", u"."}).mode == CommandLine::Mode::Invalid &&
        parseArguments({u"-s", u"r.txt", u"/"}).mode == CommandLine::Mode::Invalid;
    return isRefused && parseArguments({u"-s", u"-", u"/"}).error.empty() ? 0 : 2;
  });
  EXPECT_EQ(status, 0);
}

TEST(CommandLineTest, LinesWithQuotedPaths) {
  const std::pair<TextView, CommandLine> cases[] = {
      {uR"(-s5 -d4";;" "C:\t.csv" "C:\a" "D:\b" "open)",
       {.mode = Mode::Silent,
        .sources = {uR"(C:\a)", uR"(D:\b)"},
        .target = uR"(C:\t.csv)",
        .levels = 5,
        .delimiter = 4,
        .customDelimiter = u";;"}},
      {u" -RESTART ", {.mode = Mode::Restart}},
      {uR"(--read-only "C:\a b" "D:")", {.readOnly = true, .sources = {uR"(C:\a b)", u"D:"}}},
      {u"-RESTART --read-only", {.mode = Mode::Restart, .readOnly = true}},
      {uR"("C:\x --read-only" "D:")", {.sources = {uR"(C:\x --read-only)", u"D:"}}},
      {u"C:/a--read-only", {.sources = {u"C:/a--read-only"}}},
      {uR"(C:\a b)", {.sources = {uR"(C:\a b)"}}},
      {uR"("C:\a" "C:\b)", {.sources = {uR"(C:\a)"}}},
      {u"", {}}};
  for (const auto& [typed, expected] : cases)
    EXPECT_EQ(said(parseCommandText(typed)), said(expected)) << toBytes(typed);
  EXPECT_NE(parseCommandText(u"-RESTART x").mode, Mode::Restart);
}

TEST(CommandTableTest, BarsHoldKnownCommandsInKnownMenus) {
  int last = 0;
  for (const Command& command : commandTable()) {
    EXPECT_LT(last, int(command.id));
    last = int(command.id);
    EXPECT_EQ(&commandOf(command.id), &command);
    EXPECT_EQ(command.time == CommandTime::Never, *command.waitsFor != '\0') << last;
  }
  for (int bar = 0; bar < kBars; ++bar) {
    std::set<CommandId> ids;
    for (const BarItem& item : barItems(Bar(bar))) {
      EXPECT_TRUE(ids.insert(item.id).second) << int(item.id) << " is twice on bar " << bar;
      if (item.popup == CommandId::None) continue;
      EXPECT_TRUE(ids.contains(item.popup)) << int(item.id) << " comes before its menu";
      EXPECT_EQ(int(commandOf(item.popup).kind), int(CommandKind::Popup));
    }
  }
}

/// A key that is used twice on one bar, or on a list's bar and the main bar, has no effect.
TEST(CommandTableTest, NoKeyMeansTwoThings) {
  std::map<std::string, std::set<CommandId>> ofMain;
  for (int bar = 0; bar < kBars; ++bar) {
    std::map<std::string, std::set<CommandId>> keys;
    if (Bar(bar) != Bar::Main) keys = ofMain;
    for (const BarItem& item : barItems(Bar(bar))) {
      const Command& command = commandOf(item.id);
      if (*command.shortcut != '\0') keys[command.shortcut].insert(command.id);
    }
    for (const auto& [key, ids] : keys)
      EXPECT_EQ(ids.size(), 1U) << key << " on bar " << bar;
    if (Bar(bar) == Bar::Main) ofMain = keys;
  }
}

/// Two commands that write the same setting on one bar would undo each other.
TEST(CommandTableTest, EveryStateHasASettingOfItsOwn) {
  Options options;
  std::vector<std::pair<Bar, std::optional<ListId>>> bars = {{Bar::Main, std::nullopt}};
  for (const ListId list : kAllLists)
    bars.emplace_back(barOf(list), list);
  for (const auto& [bar, list] : bars) {
    std::set<std::pair<const void*, int>> places;
    for (const BarItem& item : barItems(bar)) {
      const CommandState state = commandState(options, list, item.id);
      const void* const place = state.flag != nullptr ? static_cast<const void*>(state.flag)
                                : state.text != nullptr
                                    ? static_cast<const void*>(state.text)
                                    : static_cast<const void*>(state.number.place);
      if (place == nullptr) continue;
      EXPECT_TRUE(places.emplace(place, state.value).second) << int(item.id);
    }
  }
}

TEST(CommandTableTest, CommandsNameListsAndNumbers) {
  Options options;
  options.TopMaxCount[1] = 77;
  EXPECT_EQ(commandCaption(commandOf(CommandId::MakeSmallestFiles), options),
            u"Erstelle eine Liste mit den 77 kleinsten Dateien");
  EXPECT_EQ(commandCaption(commandOf(CommandId::ExpandLevel3), options), u"Bis Ebene 3 aufklappen");
  const Command& megabytes = commandOf(CommandId::SizeMegabytes);
  EXPECT_EQ(commandTip(megabytes, Bar::Main), u"Bei allen Listen die Größe in Megabytes anzeigen");
  EXPECT_EQ(commandTip(megabytes, Bar::Files), u"");
  EXPECT_NE(commandTip(commandOf(CommandId::Save), Bar::Files), u"");
  // A filter of the list of files is another one than that of a scan.
  const auto flag = [&](std::optional<ListId> list) {
    return commandState(options, list, CommandId::OnlyTheseFiles).flag;
  };
  EXPECT_EQ(flag(ListId::Files), &options.FileList_Filter_Active);
  EXPECT_EQ(flag(std::nullopt), &options.FolderList_FilterFilesInclude_Active);
}

}  // namespace
}  // namespace ombrelian
