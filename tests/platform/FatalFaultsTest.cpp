#include "platform/FatalFaults.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <regex>

#include "platform/Process.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian::testing {

// Procedures with faults. They are visible, so that an entry can name them.

volatile int zero = 0;
volatile int one = 1;
int* volatile nowhere = nullptr;

[[gnu::noinline]] void writeNowhere() { *nowhere = 1; }
[[gnu::noinline]] void divideByZero() { one = one / zero; }
[[gnu::noinline]] void executeNothing() { __builtin_trap(); }
[[gnu::noinline]] void leaveTheFile() {
  const TestFolder folder;
  const int file = open(folder.path("empty").c_str(), O_RDWR | O_CREAT, 0600);
  auto* const page =
      static_cast<volatile char*>(mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
  page[0] = 'x';
}
[[gnu::noinline]] int fillTheStack(volatile char* above) {
  volatile char frame[4096] = {*above};
  if (one == 0) return 0;  // never
  return frame[fillTheStack(frame) & 4095] + 1;
}
[[gnu::noinline]] void endBySignal() {
  kill(getpid(), SIGABRT);
  one = 1;  // the call is not the last one, so that its place is in this procedure
}
[[gnu::noinline]] void failInAThread() { platform::StartThread(writeNowhere).join(); }
[[gnu::noinline]] void jumpNowhere() { (reinterpret_cast<void (*)()>(std::intptr_t(one)))(); }

namespace {

struct Case {
  const char* name;
  void (*fail)();
  int signal;
  const char* told;
};

constexpr Case kCases[] = {
    {"writeNowhere", writeNowhere, SIGSEGV, "EXCEPTION_ACCESS_VIOLATION"},
    {"leaveTheFile", leaveTheFile, SIGBUS, "EXCEPTION_ACCESS_VIOLATION"},
    {"divideByZero", divideByZero, SIGFPE, "EXCEPTION_INT_DIVIDE_BY_ZERO"},
    {"executeNothing", executeNothing, SIGILL, "EXCEPTION_ILLEGAL_INSTRUCTION"},
    {"endBySignal", endBySignal, SIGABRT, "Unknown exception type"},
    {"fillTheStack", [] { fillTheStack(reinterpret_cast<volatile char*>(&zero)); }, SIGSEGV,
     "EXCEPTION_ACCESS_VIOLATION"},
    {"writeNowhere", failInAThread, SIGSEGV, "EXCEPTION_ACCESS_VIOLATION"},
    {"", jumpNowhere, SIGSEGV, "EXCEPTION_ACCESS_VIOLATION"},
    {"", [] { raise(SIGTRAP); }, SIGTRAP, "EXCEPTION_BREAKPOINT"},
    {"", [] { raise(SIGSYS); }, SIGSYS, "Unknown exception type"}};

/// Runs the case in a process of its own and returns how that process ended.
int statusOf(const Case& fault, const platform::FaultPlaces& places) {
  const pid_t child = fork();
  if (child == 0) {
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    platform::InstallExceptionFilter(places);
    fault.fail();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

TEST(FatalFaultsTest, AnEntryNamesTheFaultAndTheProcedureAndTheSignalEndsTheProcess) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer has its own handlers";
#endif
  for (const Case& fault : kCases) {
    SCOPED_TRACE(fault.told + std::string(" in ") + fault.name);
    const TestFolder folder;
    const int status =
        statusOf(fault, {folder.text("error.log"), folder.text("notice"), u"App: Ombrelian\r\n"});
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), fault.signal);
    const std::string entry = readFile(folder.path("error.log"));
    const std::regex head(
        "20[0-9]{2}-[01][0-9]-[0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-5][0-9] - An unhandled error "
        "\\(" +
        std::string(fault.told) + "\\) \r\noccurred at: [0-9A-F]+\\. NOT ok to continue\\.\r\n");
    EXPECT_TRUE(std::regex_search(entry, head, std::regex_constants::match_continuous)) << entry;
    EXPECT_NE(entry.find(fault.name), std::string::npos) << entry;
    EXPECT_TRUE(std::regex_search(entry, std::regex("\r\nBuild: [0-9a-f]{16,}\r\n"))) << entry;
    const std::string notice = readFile(folder.path("notice"));
    EXPECT_EQ(notice.substr(0, notice.find("Build")), entry.substr(0, entry.find("Build")));
    for (const std::string& text : {notice, entry})
      EXPECT_NE(text.find("\r\nApp: Ombrelian\r\n"), std::string::npos);
    EXPECT_NE(notice.find(fault.name), std::string::npos);
    EXPECT_EQ(folder.modeOf("notice"), 0600U);
  }
}

TEST(FatalFaultsTest, AnEntryThatCannotBeWrittenDelaysNothing) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer has its own handlers";
#endif
  const TestFolder folder;
  folder.symlink("link", "target");
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  for (const char* const place : {"link", "pipe", "none/log"}) {
    const int status = statusOf(kCases[0], {folder.text(place), folder.text(place), u""});
    EXPECT_EQ(WTERMSIG(status), SIGSEGV) << place;
  }
  EXPECT_FALSE(folder.has("target"));
}

}  // namespace
}  // namespace ombrelian::testing
