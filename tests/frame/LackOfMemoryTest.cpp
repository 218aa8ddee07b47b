// Runs without a window in which memory is missing at one place.

#include <unistd.h>

#include <limits>

#include "frame/ListRun.h"
#include "tests/testing/Allocations.h"
#include "tests/testing/ConsoleRun.h"
#include "tests/testing/Faults.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

/// A text without its times, which differ from run to run.
std::string withoutTimes(std::string text) {
  const auto at = text.find("Sekunden ");
  return at == std::string::npos ? text : text.erase(at, text.find(',', at) - at);
}

class LackOfMemoryTest : public ::testing::Test {
 protected:
  LackOfMemoryTest() {
    for (const char* const name : {"a folder with a long name/a file with a long name.text",
                                   "a folder with a long name/below it another one/file.text",
                                   "a second folder/file", "file of the source"})
      source.file(name, 10);
    source.hardlink("a second folder/another name of a file", "file of the source");
    source.symlink("a link to a folder with a long name", "a second folder");
    for (int i = 0; i < 6; ++i)
      source.folder("folder with a long name " + std::to_string(i) + "/another long name in it");
  }

  /// Runs the line while `times` allocations fail, beginning with that of the given number.
  Outcome run(const std::vector<Text>& arguments, std::int64_t number, FailsIn threads,
              std::int64_t times) {
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    Outcome outcome;
    {
      const CommandLine line = parseArguments(arguments);
      Console console;
      Session session;
      const auto runner = line.mode == CommandLine::Mode::Lists ? runLists : runSilently;
      const FailingAllocation failing(number, threads, times);
      outcome.status = runner(line, session, console);
      hasFailed = failing.hasFailed();
    }
    outcome.output = ::testing::internal::GetCapturedStdout();
    outcome.errors = ::testing::internal::GetCapturedStderr();
    return outcome;
  }

  /// Checks a run against one with enough memory, whose report was `report`.
  void expectHonest(const Outcome& outcome, const Outcome& whole, const std::string& target,
                    const std::string& report) {
    const std::string saved = readFile(out.path(target));
    if (outcome.status == kExitDone) {
      EXPECT_EQ(withoutTimes(outcome.output), withoutTimes(whole.output));
      // The other formats contain the time of the scan.
      const bool isTimed = !target.ends_with("csv");
      EXPECT_TRUE(isTimed ? saved.size() == report.size() : saved == report);
      return;
    }
    EXPECT_NE(outcome.errors, "");
    EXPECT_TRUE(outcome.status == kExitPartial || saved == "old")
        << outcome.status << outcome.errors;
  }

  const ScopedLocale locale{"C"};
  TestFolder source;
  TestFolder out;
  bool hasFailed = false;  // an allocation of the last run failed
};

/// Each allocation of a run fails once, and once with all that follow it. Only a run with the whole
/// result may report success; one that saves nothing leaves the older report as it is.
TEST_F(LackOfMemoryTest, NoRunReportsSuccessWithAWrongResult) {
  constexpr std::int64_t kAll = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kSave = 330;      // the scan before the save is the same for every format
  constexpr std::int64_t kOfHelpers = 60;  // helpers have about as many, depending on their luck
  const struct {
    std::string target;  // "-": the lists are printed
    std::int64_t first;
    FailsIn threads = FailsIn::ThisThread;
    std::int64_t times = 1;
  } cases[] = {{"r.csv", 1},
               {"r.txt", kSave},
               {"r.html", kSave},
               {"r.xml", kSave},
               {"-", 1},
               {"r.csv", 1, FailsIn::ThisThread, kAll},
               {"r.csv", 1, FailsIn::AnyThread},
               {"r.csv", 1, FailsIn::OtherThreads},
               {"r.csv", 1, FailsIn::OtherThreads, kAll}};
  const pid_t walk = gettid();
  for (const auto& [target, first, threads, times] : cases) {
    // The walk waits now and then, so that the helpers get work on any machine.
    const bool isOfHelpers = threads == FailsIn::OtherThreads;
    const ScopedFault slow({.call = Call::Getdents, .error = 0, .meanwhile = [=] {
                              if (isOfHelpers && gettid() == walk) usleep(300);
                            }});
    std::vector<Text> line = {u"-s", out.text(target)};
    if (target == "-") line = {u"--lists", u"--json"};
    line.insert(line.end(),
                {u"--helpers", threads == FailsIn::ThisThread ? u"0" : u"2", source.text()});
    out.write(target, "old");
    const Outcome whole = run(line, kAll, threads, times);
    ASSERT_EQ(whole.status, kExitDone) << whole.errors;
    const std::string report = readFile(out.path(target));
    hasFailed = true;
    for (std::int64_t number = first; isOfHelpers ? number <= kOfHelpers : hasFailed; ++number) {
      out.write(target, "old");
      const Outcome outcome = run(line, number, threads, times);
      if (target == "-") out.write(target, outcome.status == kExitDone ? report : "old");
      expectHonest(outcome, whole, target, report);
      // Without any memory not even a name can be removed.
      EXPECT_TRUE(times > 1 || namesIn(out.path()).size() == 1U);
      ASSERT_FALSE(HasFailure()) << target << ", allocation " << number;
      ASSERT_LT(number, 5000);
    }
    unlink(out.path(target).c_str());
  }
}

}  // namespace
}  // namespace ombrelian
