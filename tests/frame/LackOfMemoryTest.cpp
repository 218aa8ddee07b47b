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

  const ScopedLocale locale{"C"};
  TestFolder source;
  TestFolder out;
  bool hasFailed = false;  // an allocation of the last run failed
};

/// Each allocation of a run fails once, and once with all that follow it. Only a run with the whole
/// result may report success; one that saves nothing leaves the older report as it is.
TEST_F(LackOfMemoryTest, NoRunReportsSuccessWithAWrongResult) {
  constexpr std::int64_t kAll = std::numeric_limits<std::int64_t>::max();
  const struct {
    std::string target;  // empty: the lists are printed
    const char16_t* helpers;
    FailsIn threads;
    std::int64_t times = 1;
  } cases[] = {{"r.csv", u"0", FailsIn::ThisThread},        {"r.txt", u"0", FailsIn::ThisThread},
               {"r.html", u"0", FailsIn::ThisThread},       {"r.xml", u"0", FailsIn::ThisThread},
               {"r.csv", u"0", FailsIn::AnyThread, kAll},   {"", u"0", FailsIn::ThisThread},
               {"r.csv", u"2", FailsIn::AnyThread},         {"r.csv", u"2", FailsIn::OtherThreads},
               {"r.csv", u"2", FailsIn::OtherThreads, kAll}};
  const pid_t walk = gettid();
  for (const auto& [target, helpers, threads, times] : cases) {
    // The walk waits now and then, so that the helpers get work on any machine.
    const bool isHelped = threads == FailsIn::OtherThreads;
    const ScopedFault slow({.call = Call::Getdents, .error = 0, .meanwhile = [=] {
                              if (isHelped && gettid() == walk) usleep(300);
                            }});
    std::vector<Text> line = {u"--lists", u"--json"};
    if (!target.empty()) line = {u"-s", out.text(target)};
    line.insert(line.end(), {u"--helpers", helpers, source.text()});
    const std::string what = target + " " + toBytes(helpers) + " helpers, allocation ";
    out.write(target.empty() ? "r" : target, "old");
    const Outcome whole = run(line, kAll, threads, times);
    ASSERT_EQ(whole.status, kExitDone) << whole.errors;
    const std::string report = readFile(out.path(target));
    std::int64_t number = 1;
    for (hasFailed = true; hasFailed && number < 5000; ++number) {
      if (!target.empty()) out.write(target, "old");
      const Outcome outcome = run(line, number, threads, times);
      const std::string saved = readFile(out.path(target));
      if (outcome.status == kExitDone) {
        ASSERT_EQ(withoutTimes(outcome.output), withoutTimes(whole.output)) << what << number;
        ASSERT_EQ(saved.size(), report.size()) << what << number;
      } else {
        ASSERT_NE(outcome.errors, "") << what << number;
        ASSERT_TRUE(outcome.status == kExitPartial || target.empty() || saved == "old")
            << what << number << outcome.status << outcome.errors;
      }
      // Without any memory not even a name can be removed.
      if (times == 1) ASSERT_EQ(namesIn(out.path()).size(), 1U) << what << number;
    }
    EXPECT_FALSE(hasFailed);
    EXPECT_GT(number, 5);
    unlink(out.path(target.empty() ? "r" : target).c_str());
  }
}

}  // namespace
}  // namespace ombrelian
