#include "frame/SilentRun.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "export/FolderSave.h"
#include "frame/ListRun.h"
#include "tests/testing/ConsoleRun.h"
#include "tests/testing/Faults.h"
#include "tests/testing/RandomTree.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using testing::Call;
using testing::ScopedFault;
using testing::TestFolder;

testing::Outcome run(const std::vector<Text>& arguments) {
  return testing::runOnConsole(runSilently, arguments);
}

class SilentRunTest : public ::testing::Test {
 protected:
  const ScopedLocale locale{"C"};  // the texts of numbers are compared
  TestFolder source;
  TestFolder out;
};

/// Counts of the summary line, by the order in which it names them.
std::array<long long, 3> filesFoldersBytes(const std::string& output) {
  std::array<long long, 3> counts = {-1, -1, -1};
  std::sscanf(output.c_str(), "Dateien %lld, Ordner %lld, Bytes %lld", &counts[0], &counts[1],
              &counts[2]);
  return counts;
}

TEST_F(SilentRunTest, TextReport) {
  source.file("b/large", 5000);
  source.file("b/deep/inner", 234);
  source.file("a", 17);
  const TestFolder second;
  const testing::Outcome done = run({u"-s", out.text("report.txt"), source.text(), second.text()});
  EXPECT_EQ(done.status, kExitDone) << done.errors;
  EXPECT_EQ(done.errors, "");
  EXPECT_EQ(filesFoldersBytes(done.output), (std::array<long long, 3>{3, 2, 5251}));
  EXPECT_TRUE(done.output.ends_with(", Ziel " + out.path("report.txt") + "\n"));

  const Text path = source.text();
  const std::size_t width = path.size() + 12;  // of the longest name, ".../b/[Dateien]"
  const auto row = [&](const Text& name, TextView size) {
    return name + Text(width - name.size(), u' ') + u"\t" + Text(13 - size.size(), u' ') +
           Text(size);
  };
  const std::vector<Text> lines = testing::lines(testing::readReport(out.path("report.txt")));
  ASSERT_EQ(lines.size(), 17U);
  EXPECT_EQ(lines[0], u"Ombrelian - Ordnerliste");
  EXPECT_EQ(lines[1], u"");
  EXPECT_EQ(lines[2], u"Pfad: " + path);
  EXPECT_TRUE(lines[3].starts_with(u"Erstellt: 20"));
  EXPECT_EQ(lines[4], u"");
  EXPECT_EQ(lines[5], u"NAME" + Text(width - 4, u' ') + u"\tGRÖßE (BYTES)");
  EXPECT_EQ(lines[6], row(path, u"5,251"));
  EXPECT_EQ(lines[7], row(path + u"/b", u"5,234"));
  EXPECT_EQ(lines[8], row(path + u"/b/[Dateien]", u"5,000"));
  EXPECT_EQ(lines[9], row(path + u"/b/deep", u"234"));
  EXPECT_EQ(lines[10], row(path + u"/[Dateien]", u"17"));
  EXPECT_EQ(lines[11], u"");
  EXPECT_EQ(lines[12], u"Pfad: " + second.text());
  EXPECT_EQ(lines[16], row(second.text(), u"")) << "a size of 0 shows nothing";
}

TEST_F(SilentRunTest, CsvReportWithLevelsAndDelimiters) {
  source.file("b/deep/inner", 234);
  source.file("a", 17);
  const auto quoted = [&](TextView name, TextView size, TextView delimiter) {
    return u"\"" + source.text() + Text(name) + u"\"" + Text(delimiter) + u"\"" + Text(size) +
           u"\"";
  };
  const Text target = out.text("r.csv");
  ASSERT_EQ(run({u"-s", u"-d1", target, source.text()}).status, kExitDone);
  EXPECT_EQ(testing::lines(testing::readReport(out.path("r.csv"))),
            (std::vector<Text>{u"\"NAME\";\"GRÖßE (BYTES)\"", quoted(u"", u"251", u";"),
                               quoted(u"/b", u"234", u";"), quoted(u"/b/deep", u"234", u";"),
                               quoted(u"/[Dateien]", u"17", u";")}));

  ASSERT_EQ(run({u"-s1", u"-d4 <> ", target, source.text()}).status, kExitDone);
  EXPECT_EQ(
      testing::lines(testing::readReport(out.path("r.csv"))),
      (std::vector<Text>{u"\"NAME\" <> \"GRÖßE (BYTES)\"", quoted(u"", u"251", u" <> "),
                         quoted(u"/b", u"234", u" <> "), quoted(u"/[Dateien]", u"17", u" <> ")}));

  // No levels at all: the source and the row of its own files.
  ASSERT_EQ(run({u"-s0", u"-d0", target, source.text()}).status, kExitDone);
  EXPECT_EQ(testing::lines(testing::readReport(out.path("r.csv"))),
            (std::vector<Text>{u"\"NAME\",\"GRÖßE (BYTES)\"", quoted(u"", u"251", u","),
                               quoted(u"/[Dateien]", u"17", u",")}));
}

TEST_F(SilentRunTest, EveryNameCanBeReadBackFromTheReport) {
  const std::vector<std::string> names = {" leading",     "trailing ",
                                          "new\nline",    "carriage\r\nreturn",
                                          "quote\"",      "back\\slash",
                                          "\xFF\xFE\x80", "\xF0\x9F\x98\x80",
                                          "tab\t",        std::string(255, '\xC3')};
  for (const std::string& name : names)
    source.folder(name + "/x");
  for (const char* const target : {"r.csv", "r.txt"}) {
    ASSERT_EQ(run({u"-s", out.text(target), source.text()}).status, kExitDone);
    const std::string report = toBytes(testing::readReport(out.path(target)));
    for (const std::string& name : names) {
      const std::string path = source.path(name + "/x");
      EXPECT_NE(report.find(path), std::string::npos) << name;
    }
  }
}

TEST_F(SilentRunTest, StatusTellsWhatWasMissed) {
  source.file("denied/file", 1);
  const Text target = out.text("r.txt");
  {
    const ScopedFault denied({Call::Openat, "denied", EACCES});
    const testing::Outcome partial = run({u"-s", target, source.text()});
    EXPECT_EQ(partial.status, kExitPartial);
    EXPECT_NE(partial.errors.find(source.path("denied/")), std::string::npos);
    EXPECT_NE(partial.output.find("Fehler 1,"), std::string::npos);
  }
  const testing::Outcome missing = run({u"-s", target, source.text("nowhere"), source.text()});
  EXPECT_EQ(missing.status, kExitPartial);
  EXPECT_NE(missing.errors.find(source.path("nowhere")), std::string::npos);
  const testing::Outcome nothing = run({u"-s", out.text("n.txt"), source.text("nowhere")});
  EXPECT_EQ(nothing.status, kExitNothing);
  EXPECT_EQ(nothing.output, "");
  EXPECT_EQ(testing::namesIn(out.path()), std::vector<std::string>{"r.txt"});
}

TEST_F(SilentRunTest, AReportThatCannotBeWrittenLeavesTheOldOne) {
  for (int i = 0; i < 3000; ++i)
    source.folder("folder with a longer name " + std::to_string(i));
  ASSERT_EQ(run({u"-s0", out.text("r.csv"), source.text()}).status, kExitDone);
  const std::string before = testing::readFile(out.path("r.csv"));
  const struct {
    const char* what;
    testing::Fault fault;
  } cases[] = {
      {"disk full at once", {Call::Write, {}, ENOSPC}},
      {"disk full in the middle", {Call::Write, {}, ENOSPC, 1}},
      {"told at the end", {Call::Close, {}, EDQUOT, 0, 1}},
      {"no new file", {Call::Openat, ".tmp", EACCES}},
      {"no rename", {Call::Renameat, {}, EACCES}},
  };
  for (const auto& c : cases) {
    // Only while the report is written: the scan closes folders too, and the capture writes.
    Session session;
    Console console;
    std::deque<Text> queue = {source.text()};
    session.context.SilentMode = true;
    ScanRun(session.scanState(console, nullptr)).Ordnerliste_Abarbeiten(queue);
    FolderSave save(session.folderReport, session.options, console);
    const ScopedFault fault(c.fault);
    const Failure failure = save.SAVE(out.text("r.csv"), kAllLevels, 0, {});
    ASSERT_TRUE(failure.has_value()) << c.what;
    EXPECT_GT(fault.hits(), 0) << c.what;
    EXPECT_FALSE(failure->text.empty()) << c.what;
    EXPECT_EQ(testing::readFile(out.path("r.csv")), before) << c.what;
    EXPECT_EQ(testing::namesIn(out.path()).size(), 1U) << c.what;
  }
}

TEST_F(SilentRunTest, AnImpossibleTargetIsToldBeforeTheScan) {
  out.folder("folder.txt");
  ASSERT_EQ(mkfifo(out.path("pipe.txt").c_str(), 0600), 0);
  for (const Text& target :
       {out.text("folder.txt"), out.text("pipe.txt"), out.text("missing/r.xlsx")}) {
    const testing::Outcome refused = run({u"-s", target, source.text()});
    EXPECT_EQ(refused.status, kExitNothing);
    EXPECT_NE(refused.errors.find(toBytes(target)), std::string::npos) << refused.errors;
    EXPECT_EQ(refused.output, "");
  }
  EXPECT_EQ(testing::namesIn(out.path()).size(), 2U);
}

TEST_F(SilentRunTest, ALinkAtTheTargetIsKept) {
  out.file("real.txt");
  out.symlink("link.txt", "real.txt");
  ASSERT_EQ(run({u"-s", out.text("link.txt"), source.text()}).status, kExitDone);
  struct stat told;
  ASSERT_EQ(lstat(out.path("link.txt").c_str(), &told), 0);
  EXPECT_TRUE(S_ISLNK(told.st_mode));
  EXPECT_FALSE(testing::readReport(out.path("real.txt")).empty());
}

TEST_F(SilentRunTest, FiveThousandLevelsSaveWhole) {
  const TestFolder deep(TestFolder::Place::Memory);
  close(deep.chain("d", 5000));
  ASSERT_EQ(run({u"-s", out.text("r.csv"), deep.text()}).status, kExitDone);
  const std::vector<Text> lines = testing::lines(testing::readReport(out.path("r.csv")));
  ASSERT_EQ(lines.size(), 5002U);
  EXPECT_GE(lines.back().size(), deep.path().size() + 10000);
}

/// What find counts: a link to a folder is a folder of its own, every other object that is no
/// folder a file, of which only plain files and links have a size.
std::array<long long, 3> countWithFind(const std::string& path) {
  std::array<long long, 3> counts = {0, -1, 0};
  FILE* const find = popen(("find '" + path + "' -xdev -printf '%y%Y %s\\n'").c_str(), "r");
  char kind = 0;
  char target = 0;
  long long size = 0;
  while (std::fscanf(find, " %c%c %lld", &kind, &target, &size) == 3) {
    if (kind == 'd' || (kind == 'l' && target == 'd')) {
      ++counts[1];
    } else {
      ++counts[0];
      if (kind == 'f' || kind == 'l') counts[2] += size;
    }
  }
  EXPECT_EQ(pclose(find), 0);
  return counts;
}

TEST_F(SilentRunTest, HelpersChangeNoByteOfAReport) {
  for (unsigned seed = 11; seed <= 20; ++seed) {
    const TestFolder tree(TestFolder::Place::Memory);
    testing::makeRandomTree(tree, seed);
    std::string report, lists;
    for (const TextView helpers : {u"0", u"1", u"2", u"8", u"32"}) {
      const Text target = out.text("report.csv");
      ASSERT_EQ(run({u"-s", u"--helpers", Text(helpers), target, tree.text()}).status, kExitDone);
      const std::string bytes = testing::readFile(toBytes(target));
      const std::string printed =
          testing::runOnConsole(runLists,
                                {u"--lists", u"--json", u"--helpers", Text(helpers), tree.text()})
              .output;
      if (helpers == u"0") {
        report = bytes;
        lists = printed;
        EXPECT_GT(report.size() + lists.size(), 100'000U);
      }
      EXPECT_TRUE(bytes == report) << toBytes(helpers) << " helpers, seed " << seed;
      EXPECT_TRUE(printed == lists) << toBytes(helpers) << " helpers, seed " << seed;
    }
  }
}

TEST_F(SilentRunTest, CountsOfARealDiskAreThoseOfFind) {
  const testing::Outcome usr = run({u"-s1", out.text("usr.csv"), u"/usr"});
  EXPECT_LE(usr.status, kExitPartial) << usr.errors;
  EXPECT_EQ(filesFoldersBytes(usr.output), countWithFind("/usr"));
}

}  // namespace
}  // namespace ombrelian
