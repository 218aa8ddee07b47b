#include "frame/SilentRun.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sstream>

#include "export/FolderSave.h"
#include "frame/ListRun.h"
#include "tests/testing/ConsoleRun.h"
#include "tests/testing/Faults.h"
#include "tests/testing/RandomTree.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

Outcome run(const std::vector<Text>& arguments) { return runOnConsole(runSilently, arguments); }

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

TEST_F(SilentRunTest, TwoSourcesInOneReportOfText) {
  source.file("b/large", 5000);
  source.file("b/deep/inner", 234);
  source.file("a", 17);
  const TestFolder second;
  const Outcome done = run({u"-s", out.text("report.txt"), source.text(), second.text()});
  EXPECT_EQ(done.status, kExitDone) << done.errors;
  EXPECT_EQ(done.errors, "");
  EXPECT_EQ(filesFoldersBytes(done.output), (std::array<long long, 3>{3, 2, 5251}));
  EXPECT_TRUE(done.output.ends_with(", Ziel " + out.path("report.txt") + "\n"));
  const std::vector<Text> report = lines(readReport(out.path("report.txt")));
  ASSERT_EQ(report.size(), 17U);
  EXPECT_EQ(report[2], u"Pfad: " + source.text());
  EXPECT_TRUE(report[7].ends_with(u"5,234"));
  EXPECT_EQ(report[12], u"Pfad: " + second.text());
  EXPECT_TRUE(report[16].ends_with(u" ")) << "a size of 0 shows nothing";
}

TEST_F(SilentRunTest, LevelsAndDelimitersReachTheReport) {
  source.file("b/deep/inner", 234);
  source.file("a", 17);
  const std::tuple<TextView, TextView, TextView, std::size_t> cases[] = {
      {u"-s", u"-d1", u"\"NAME\";\"GRÖßE (BYTES)\"", 5},
      {u"-s1", u"-d4 <> ", u"\"NAME\" <> \"GRÖßE (BYTES)\"", 4},
      {u"-s0", u"-d0", u"\"NAME\",\"GRÖßE (BYTES)\"", 3}};  // the source and its own files
  for (const auto& [levels, delimiter, head, count] : cases) {
    ASSERT_EQ(run({Text(levels), Text(delimiter), out.text("r.csv"), source.text()}).status,
              kExitDone);
    const std::vector<Text> report = lines(readReport(out.path("r.csv")));
    EXPECT_EQ(report.front(), head);
    EXPECT_EQ(report.size(), count) << toBytes(levels);
    EXPECT_TRUE(report.back().starts_with(u"\"" + source.text() + u"/[Dateien]\""));
  }
}

TEST_F(SilentRunTest, EveryNameCanBeReadBackFromTheReport) {
  const std::string names[] = {" leading",     "trailing ",
                               "new\nline",    "carriage\r\nreturn",
                               "quote\"",      "back\\slash",
                               "\xFF\xFE\x80", "\xF0\x9F\x98\x80",
                               "tab\t",        std::string(255, '\xC3')};
  for (const std::string& name : names)
    source.folder(name + "/x");
  for (const char* const target : {"r.csv", "r.txt"}) {
    ASSERT_EQ(run({u"-s", out.text(target), source.text()}).status, kExitDone);
    const std::string report = toBytes(readReport(out.path(target)));
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
    const Outcome partial = run({u"-s", target, source.text()});
    EXPECT_EQ(partial.status, kExitPartial);
    EXPECT_NE(partial.errors.find(source.path("denied/")), std::string::npos);
    EXPECT_NE(partial.output.find("Fehler 1,"), std::string::npos);
  }
  const Outcome missing = run({u"-s", target, source.text("nowhere"), source.text()});
  EXPECT_EQ(missing.status, kExitPartial);
  EXPECT_NE(missing.errors.find(source.path("nowhere")), std::string::npos);
  const Outcome nothing = run({u"-s", out.text("n.txt"), source.text("nowhere")});
  EXPECT_EQ(nothing.status, kExitNothing);
  EXPECT_EQ(nothing.output, "");
  // A target that cannot be is told before the scan.
  out.folder("folder.txt");
  ASSERT_EQ(mkfifo(out.path("pipe.txt").c_str(), 0600), 0);
  for (const char* const name : {"folder.txt", "pipe.txt", "missing/r.xlsx"}) {
    const Outcome refused = run({u"-s", out.text(name), source.text()});
    EXPECT_EQ(refused.status, kExitNothing);
    EXPECT_NE(refused.errors.find(out.path(name)), std::string::npos) << refused.errors;
    EXPECT_EQ(refused.output, "");
  }
  EXPECT_EQ(namesIn(out.path()).size(), 3U);
}

TEST_F(SilentRunTest, AReportThatCannotBeWrittenLeavesTheOldOne) {
  for (int i = 0; i < 3000; ++i)
    source.folder("folder with a longer name " + std::to_string(i));
  ASSERT_EQ(run({u"-s0", out.text("r.csv"), source.text()}).status, kExitDone);
  const std::string before = readFile(out.path("r.csv"));
  const std::pair<const char*, testing::Fault> cases[] = {
      {"disk full at once", {Call::Write, {}, ENOSPC}},
      {"disk full in the middle", {Call::Write, {}, ENOSPC, 1}},
      {"told at the end", {Call::Close, {}, EDQUOT, 0, 1}},
      {"no new file", {Call::Openat, ".tmp", EACCES}},
      {"no rename", {Call::Renameat, {}, EACCES}},
  };
  for (const auto& [what, makeFail] : cases) {
    // Only while the report is written: the scan closes folders too, and the capture writes.
    Session session;
    Console console;
    std::deque<Text> queue = {source.text()};
    session.context.SilentMode = true;
    ScanRun(session.scanState(console, nullptr)).Ordnerliste_Abarbeiten(queue);
    FolderSave save(session.folderReport, session.options, console);
    const ScopedFault fault(makeFail);
    const Failure failure = save.SAVE(out.text("r.csv"), kAllLevels, 0, {});
    ASSERT_TRUE(failure.has_value()) << what;
    EXPECT_TRUE(fault.hits() > 0 && !failure->text.empty()) << what;
    EXPECT_EQ(readFile(out.path("r.csv")), before) << what;
    EXPECT_EQ(namesIn(out.path()).size(), 1U) << what;
  }
}

TEST_F(SilentRunTest, ALinkAtTheTargetIsKept) {
  out.file("real.txt");
  out.symlink("link.txt", "real.txt");
  ASSERT_EQ(run({u"-s", out.text("link.txt"), source.text()}).status, kExitDone);
  struct stat told;
  ASSERT_EQ(lstat(out.path("link.txt").c_str(), &told), 0);
  EXPECT_TRUE(S_ISLNK(told.st_mode));
  EXPECT_FALSE(readReport(out.path("real.txt")).empty());
}

TEST_F(SilentRunTest, FiveThousandLevelsSaveWhole) {
  const TestFolder deep(TestFolder::Place::Memory);
  close(deep.chain("d", 5000));
  ASSERT_EQ(run({u"-s", out.text("r.csv"), deep.text()}).status, kExitDone);
  const std::vector<Text> report = lines(readReport(out.path("r.csv")));
  ASSERT_EQ(report.size(), 5002U);
  EXPECT_GE(report.back().size(), deep.path().size() + 10000);
}

/// What find counts: a link to a folder is a folder of its own, every other object that is no
/// folder a file, of which only plain files and links have a size.
std::array<long long, 3> countWithFind(const std::string& path) {
  std::array<long long, 3> counts = {0, -1, 0};
  std::istringstream found(outputOf("find '" + path + "' -xdev -printf '%y%Y %s\\n'"));
  std::string kinds;
  for (long long size = 0; found >> kinds >> size;) {
    const bool isFolder = kinds[0] == 'd' || kinds == "ld";
    ++counts[isFolder ? 1 : 0];
    if (!isFolder && (kinds[0] == 'f' || kinds[0] == 'l')) counts[2] += size;
  }
  return counts;
}

TEST_F(SilentRunTest, HelpersChangeNoByteOfAReport) {
  for (unsigned seed = 11; seed <= 20; ++seed) {
    const TestFolder tree(TestFolder::Place::Memory);
    makeRandomTree(tree, seed);
    std::string report, lists;
    for (const TextView helpers : {u"0", u"1", u"2", u"8", u"32"}) {
      const Text target = out.text("report.csv");
      ASSERT_EQ(run({u"-s", u"--helpers", Text(helpers), target, tree.text()}).status, kExitDone);
      const std::string bytes = readFile(toBytes(target));
      const std::string printed =
          runOnConsole(runLists, {u"--lists", u"--json", u"--helpers", Text(helpers), tree.text()})
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
  const Outcome usr = run({u"-s1", out.text("usr.csv"), u"/usr"});
  EXPECT_LE(usr.status, kExitPartial) << usr.errors;
  EXPECT_EQ(filesFoldersBytes(usr.output), countWithFind("/usr"));
}

}  // namespace
}  // namespace ombrelian
