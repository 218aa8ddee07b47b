// Tests of runs without a window.

#include "frame/SilentRun.h"

#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "frame/ListRun.h"
#include "lists/ListTable.h"
#include "platform/Process.h"
#include "tests/testing/ChildProcess.h"
#include "tests/testing/ConsoleRun.h"
#include "tests/testing/Faults.h"
#include "tests/testing/RandomTree.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/ScopedUser.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

Outcome run(const std::vector<Text>& arguments) { return runOnConsole(runSilently, arguments); }

class SilentRunTest : public ::testing::Test {
 protected:
  const ScopedLocale locale{"C"};  // the tests compare texts of numbers
  TestFolder source;
  TestFolder out;
};

/// Counts of the summary line in the order of the line.
std::array<long long, 3> filesFoldersBytes(const std::string& output) {
  std::array<long long, 3> counts = {-1, -1, -1};
  std::sscanf(output.c_str(), "Dateien %lld, Ordner %lld, Bytes %lld", &counts[0], &counts[1],
              &counts[2]);
  return counts;
}

TEST_F(SilentRunTest, LevelsAndDelimitersReachTheReport) {
  source.file("b/deep/inner", 234);
  source.file("a", 17);
  const std::tuple<TextView, TextView, TextView, std::size_t> cases[] = {
      {u"-s", u"-d1", u"\"NAME\";\"GRÖßE (BYTES)\"", 5},
      {u"-s1", u"-d4 <> ", u"\"NAME\" <> \"GRÖßE (BYTES)\"", 4},
      {u"-s0", u"-d0", u"\"NAME\",\"GRÖßE (BYTES)\"", 3}};  // the source and its own files
  for (const auto& [levels, delimiter, head, count] : cases) {
    const Outcome done = run({Text(levels), Text(delimiter), out.text("r.csv"), source.text()});
    EXPECT_EQ(done.status, kExitDone) << done.errors;
    EXPECT_EQ(done.errors, "");
    EXPECT_EQ(filesFoldersBytes(done.output), (std::array<long long, 3>{2, 2, 251}));
    EXPECT_TRUE(done.output.ends_with(", Ziel " + out.path("r.csv") + "\n"));
    const std::vector<Text> report = lines(readReport(out.path("r.csv")));
    EXPECT_EQ(report.front(), head);
    EXPECT_EQ(report.size(), count) << toBytes(levels);
    EXPECT_TRUE(report.back().starts_with(u"\"" + source.text() + u"/[Dateien]\""));
  }
}

TEST_F(SilentRunTest, AReportOnTheStandardOutputIsTheOneOfTheFileInUtf8) {
  source.file("b\xFF/inn\xC3\xA4r", 234);
  for (const char* const format : {"txt", "csv", "html", "xml"}) {
    const Text target = out.text(std::string("r.") + format);
    ASSERT_EQ(run({u"-s", target, source.text()}).status, kExitDone);
    Text file = replaceAll(readReport(toBytes(target)), u"\r\n", u"\n");
    file = replaceAll(file, u"encoding=\"UTF-16\"", u"encoding=\"UTF-8\"");
    file = replaceAll(file, u"<head>", u"<head><meta charset=\"UTF-8\">");
    const Outcome piped = run({u"-s", u"--format", fromAscii(format), u"-", source.text()});
    EXPECT_EQ(piped.status, kExitDone);
    const auto withoutTime = [](std::string text) {
      const std::size_t at = text.find("Erstellt: ");
      return at == std::string::npos ? text : text.erase(at, 29);
    };
    EXPECT_EQ(withoutTime(piped.output), withoutTime(toBytes(file))) << format;
    EXPECT_NE(piped.errors.find("Dateien 1, Ordner 1, Bytes 234"), std::string::npos);
  }
  EXPECT_EQ(parseArguments({u"-s", u"--format", u"xlsx", u"-", u"/a"}).mode,
            CommandLine::Mode::Invalid);
}

TEST_F(SilentRunTest, EveryNameCanBeReadBackFromTheReport) {
  const std::string names[] = {" leading",     "trailing ",
                               "new\nline",    "carriage\r\nreturn",
                               "quote\"",      "back\\slash",
                               "\xFF\xFE\x80", "\xF0\x9F\x98\x80",
                               "tab\t",        std::string(255, '\xC3')};
  for (const std::string& name : names)
    source.folder(name + "/x");
  for (const bool isCsv : {true, false}) {
    const std::string target = isCsv ? "r.csv" : "r.txt";
    ASSERT_EQ(run({u"-s", out.text(target), source.text()}).status, kExitDone);
    const Text report = readReport(out.path(target));
    for (const std::string& name : names) {
      const Text path = source.text(name + "/x");
      const Text shown = isCsv ? replaceAll(path, u"\"", u"\"\"") : onOneLine(path);
      EXPECT_NE(report.find(shown), Text::npos) << name;
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
  source.symlink("round", "round");
  const Outcome unreachable = run({u"-s", target, source.text("round")});
  EXPECT_EQ(unreachable.status, kExitNothing);
  EXPECT_NE(unreachable.errors.find(strerror(ELOOP)), std::string::npos) << unreachable.errors;
  source.symlink("again", ".");
  const Outcome once = run({u"-s", target, source.text(), source.text("again")});
  const std::string all = run({u"-s", target, source.text()}).output;
  EXPECT_EQ(once.output.substr(0, all.find("Fehler")), all.substr(0, all.find("Fehler")))
      << "one folder by two paths";
  const Outcome missing = run({u"-s", target, source.text("nowhere"), source.text()});
  EXPECT_EQ(missing.status, kExitPartial);
  EXPECT_NE(missing.errors.find(source.path("nowhere")), std::string::npos);
  const Outcome nothing = run({u"-s", out.text("n.txt"), source.text("nowhere")});
  EXPECT_EQ(nothing.status, kExitNothing);
  EXPECT_EQ(nothing.output, "");
  // An impossible target is reported before the scan.
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

/// A signal while folders are listed or the report is written stops the run. If the run hangs, the
/// signal ends the process.
TEST_F(SilentRunTest, ASignalEndsTheRunAndLeavesTheOlderReport) {
  for (int i = 0; i < 700; ++i)
    source.folder(std::string(200, 'f') + std::to_string(i));
  const struct {
    int signal;
    testing::Fault when;
    bool hangs = false;
  } cases[] = {{SIGTERM, {.call = Call::Getdents, .error = 0, .skip = 2}},
               {SIGINT, {.call = Call::Write, .error = 0}},
               {SIGHUP, {.call = Call::Openat, .name = "fff", .error = 0, .skip = 9}},
               {SIGTERM, {.call = Call::Getdents, .error = 0, .skip = 2}, true}};
  for (const auto& [signal, when, hangs] : cases) {
    out.write("r.csv", "old");
    testing::Fault fault = when;
    fault.times = 1;
    fault.meanwhile = [signal = signal, hangs = hangs] {
      kill(getpid(), signal);
      for (int second = 0; hangs && second < 20; ++second)
        sleep(1);
    };
    const int status = statusOfChild([&] {
      const ScopedFault active(fault);
      platform::CatchStopSignals();
      return run({u"-s", u"--helpers", u"0", out.text("r.csv"), source.text()}).status;
    });
    EXPECT_EQ(hangs ? WTERMSIG(status) : WEXITSTATUS(status), hangs ? signal : 128 + signal);
    EXPECT_EQ(readFile(out.path("r.csv")), "old") << signal;
    EXPECT_EQ(namesIn(out.path()).size(), 1U) << signal;
  }
}

TEST_F(SilentRunTest, ASummaryThatNobodyGetsHasAStatus) {
  const int status = statusOfChild([&] {
    dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO);
    Console console;
    Session session;
    return runSilently(parseArguments({u"-s", out.text("r.csv"), source.text()}), session, console);
  });
  EXPECT_EQ(WEXITSTATUS(status), kExitUntold);
  EXPECT_FALSE(readReport(out.path("r.csv")).empty());
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

TEST_F(SilentRunTest, AWriteProtectedReportIsReplacedOnlyByForce) {
  const std::string path = out.path("r.txt");
  const Text folder = source.text();
  const auto isKept = [&](const std::vector<Text>& line) {
    const Outcome done = run(line);
    EXPECT_EQ(done.status, kExitNothing);
    EXPECT_NE(done.errors.find("--force"), std::string::npos) << done.errors;
    return readFile(path) == "old";
  };
  out.write("r.txt", "old");
  out.chmod("r.txt", 0444);
  EXPECT_TRUE(isKept({u"-s", out.text("r.txt"), folder}));
  EXPECT_EQ(run({u"-s", u"--force", out.text("r.txt"), folder}).status, kExitDone);
  EXPECT_EQ(out.modeOf("r.txt"), 0444U);
  EXPECT_NE(readFile(path), "old");
  if (geteuid() != 0) return;
  // A file of another user in a folder of this one.
  out.write("other.txt", "old");
  out.chmod("", 0777);
  source.chmod("", 0755);
  const ScopedUser user;
  EXPECT_EQ(run({u"-s", out.text("other.txt"), folder}).status, kExitNothing);
  EXPECT_EQ(run({u"-s", u"--force", out.text("other.txt"), folder}).status, kExitDone);
}

TEST_F(SilentRunTest, AWorkbookWithCutCellsIsPartial) {
  const TestFolder deep(TestFolder::Place::Memory);
  close(deep.chain(std::string(255, 'd'), 129));
  for (const auto& [name, status] : {std::pair("r.csv", kExitDone), {"r.xlsx", kExitPartial}}) {
    const Outcome saved = run({u"-s", out.text(name), deep.text()});
    EXPECT_EQ(saved.status, status);
    EXPECT_EQ(saved.errors.find("gekürzt wurden: 2\n") != std::string::npos, status == kExitPartial)
        << saved.errors;
  }
}

TEST_F(SilentRunTest, FiveThousandLevelsSaveWhole) {
  const TestFolder deep(TestFolder::Place::Memory);
  close(deep.chain("d", 5000));
  ASSERT_EQ(run({u"-s", out.text("r.csv"), deep.text()}).status, kExitDone);
  const std::vector<Text> report = lines(readReport(out.path("r.csv")));
  ASSERT_EQ(report.size(), 5002U);
  EXPECT_GE(report.back().size(), deep.path().size() + 10000);
}

/// Counts as `find` does: a link to a folder is a folder, and every other object except a folder is
/// a file. Only plain files and links have a size.
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

/// What `body` writes to its standard output and standard error if both are a terminal that is 60
/// columns wide.
template <class Body>
std::string onTerminal(Body body) {
  int keyboard = -1, screen = -1;
  const winsize size = {24, 60, 0, 0};
  EXPECT_EQ(openpty(&keyboard, &screen, nullptr, nullptr, &size), 0);
  const int streams[] = {dup(STDOUT_FILENO), dup(STDERR_FILENO)};
  dup2(screen, STDOUT_FILENO);
  dup2(screen, STDERR_FILENO);
  body();
  dup2(streams[0], STDOUT_FILENO);
  dup2(streams[1], STDERR_FILENO);
  for (const int descriptor : {screen, streams[0], streams[1]})
    close(descriptor);
  std::string shown;
  char buffer[4096];
  for (ssize_t got = 0; (got = read(keyboard, buffer, sizeof buffer)) > 0;)
    shown.append(buffer, std::size_t(got));
  close(keyboard);
  return shown;
}

TEST_F(SilentRunTest, ATerminalShowsProgressAndIsNotControlledByNames) {
  const auto progress = [] {
    Console console;
    console.scanProgress(u"/a/\x1B[2J/" + Text(60, u'n') + u"/end", 12, 3, 2048);
    console.saveProgress(7, 1000);
    console.message(u"told", UserInterface::Severity::Error);
  };
  const std::string line = onTerminal(progress);
  const std::string clear = "\r\x1B[K";
  const std::string_view parts[] = {"12 Dateien, 3 Ordner, 2.00 KB", "/end", "\u2026"};
  for (const std::string_view part : parts)
    EXPECT_NE(line.find(part), std::string::npos) << line;
  EXPECT_EQ(line.find("\x1B[2J"), std::string::npos);
  EXPECT_NE(line.find(clear + "Speichere Zeile 7 von 1,000" + clear + "ombrelian: told\r\n"),
            std::string::npos)
      << line;
  EXPECT_LE(fromBytes(line.substr(clear.size(), line.find(clear, 1) - clear.size())).size(), 59U);

  source.file("a\x1B]0;title\x07z/\u202Egpj.exe", 5);
  source.file("a\x1B]0;title\x07z/b\tc", 4);
  for (const std::vector<Text>& arguments :
       {std::vector<Text>{u"-s", u"-d1", u"-", source.text()}, {u"--lists", source.text()}}) {
    const bool isSaved = arguments.front() == u"-s";
    const std::string shown = onTerminal([&] {
      Console console;
      Session session;
      const CommandLine parsed = parseArguments(arguments);
      EXPECT_EQ(
          isSaved ? runSilently(parsed, session, console) : runLists(parsed, session, console),
          kExitDone);
    });
    EXPECT_NE(shown.find("a\uFFFD]0;title\uFFFDz"), std::string::npos) << shown;
    for (const std::string_view part : {"\x1B]", "\x07", "\u202E"})
      EXPECT_EQ(shown.find(part), std::string::npos) << shown;
  }
}

Outcome lists(const std::vector<Text>& arguments) { return runOnConsole(runLists, arguments); }

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at)
    ++count;
  return count;
}

class ListRunTest : public ::testing::Test {
 protected:
  ListRunTest() {
    for (int i = 1; i <= 30; ++i)
      source.file("sub/" + std::to_string(i) + ".e" + std::to_string(i), i);
    source.hardlink("sub/again", "sub/1.e1");
    source.symlink("link", "sub");
  }

  const ScopedLocale locale{"C"};
  TestFolder source;
};

TEST_F(ListRunTest, EveryListComesOut) {
  const Outcome json = lists({u"--lists", u"--json", source.text()});
  EXPECT_EQ(json.status, kExitDone) << json.errors;
  EXPECT_EQ(std::count(json.output.begin(), json.output.end(), '\n'), kDerivedLists.size());
  for (const ListId list : kDerivedLists) {
    EXPECT_EQ(occurrences(json.output, "{\"list\":\"" + toBytes(listRow(list).key) + "\""), 1U);
  }
  EXPECT_EQ(occurrences(json.output, "\"extname\":"), 31U);  // all rows
  EXPECT_EQ(occurrences(json.output, "\"links\":2"), 2U);
  EXPECT_EQ(occurrences(json.output, "\"target\":\"sub\""), 1U);

  const Outcome text = lists({u"--lists", source.text()});
  EXPECT_EQ(text.status, kExitDone);
  EXPECT_EQ(occurrences(text.output, "Liste mit "), kDerivedLists.size());
  EXPECT_EQ(occurrences(text.output, "\n.E"), 20U);
}

TEST_F(ListRunTest, RowsLimitsAndWidens) {
  for (const std::size_t rows : {0U, 2U, 25U, 999U}) {
    const Outcome json = lists({u"--lists", u"--rows", toText(rows), u"--json", source.text()});
    const std::string largest = json.output.substr(0, json.output.find('\n'));
    EXPECT_EQ(occurrences(largest, "\"name\":"), std::min(rows, 31UL));
    EXPECT_EQ(occurrences(json.output, "\"extname\":"), std::min(rows, 31UL));
  }
}

TEST_F(ListRunTest, SavesEveryListUnderItsName) {
  const TestFolder out;
  const Text folder = out.text("new");
  const auto save = [&](TextView format) {
    return lists({u"--lists", u"--save", folder, u"--format", Text(format), u"-d1", source.text()});
  };
  for (const TextView format : {u"csv", u"html"}) {
    const Outcome outcome = save(format);
    EXPECT_EQ(outcome.status, kExitDone) << outcome.errors;
    EXPECT_EQ(occurrences(outcome.output, "." + toBytes(format) + "\n"), kDerivedLists.size() + 2U);
  }
  const std::string path = out.path("new/");
  EXPECT_EQ(namesIn(path).size(), 2 * (kDerivedLists.size() + 2U));
  EXPECT_EQ(lines(readReport(path + "extensions.csv")).size(), 32U);
  EXPECT_EQ(lines(readReport(path + "junctions.csv"))[1],
            u"\"" + source.text("link") + u"\";\"sub\";\"Symbolischer Link\"");
  EXPECT_EQ(lines(readReport(path + "folders.csv")).size(), 4U);
  EXPECT_GT(lines(readReport(path + "log.csv")).size(), 2U);

  // Write errors are reported before the scan, or for each list.
  const Outcome missing = lists({u"--lists", u"--save", out.text("no/such"), source.text()});
  EXPECT_EQ(missing.status, kExitNothing);
  EXPECT_NE(missing.errors.find("no/such"), std::string::npos) << missing.errors;
  out.folder("new/owners.xml");
  const Outcome taken = save(u"xml");
  EXPECT_EQ(taken.status, kExitPartial);
  EXPECT_NE(taken.errors.find("owners.xml"), std::string::npos) << taken.errors;
  EXPECT_EQ(occurrences(taken.output, ".xml\n"), kDerivedLists.size() + 1U);
}

TEST_F(ListRunTest, TheExitStatusTellsWhatWasMissed) {
  EXPECT_EQ(lists({u"--lists", source.text("missing")}).status, kExitNothing);
  const ScopedFault fault({.call = Call::Openat, .name = "sub", .error = EACCES});
  const Outcome outcome = lists({u"--lists", source.text()});
  EXPECT_EQ(outcome.status, kExitPartial);
  EXPECT_NE(outcome.errors.find("/sub/"), std::string::npos) << outcome.errors;
  EXPECT_FALSE(outcome.output.empty());
}

}  // namespace
}  // namespace ombrelian
