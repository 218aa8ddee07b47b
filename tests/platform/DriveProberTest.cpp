#include "platform/posix/DriveProber.h"

#include <fcntl.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <condition_variable>
#include <latch>
#include <map>
#include <mutex>
#include <thread>

#include "tests/testing/OwnMounts.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using namespace std::chrono_literals;
using namespace ombrelian::testing;

/// Data that the queries of a test share with the test; it outlives both.
struct Desk {
  /// Counts a query, and delays the query of a hung drive until the gate is open.
  DriveReport answer(const std::string& root) {
    std::unique_lock lock(mutex);
    ++begun[root];
    ++all;
    changed.notify_all();
    if (root.starts_with("/hung")) changed.wait(lock, [&] { return isOpen; });
    if (root == "/thrown") throw std::bad_alloc();
    DriveReport report;
    report.error = kSuccess;
    report.space.totalBytes = std::int64_t(root.size());
    ++done;
    changed.notify_all();
    return report;
  }

  void openGate() {
    std::unique_lock lock(mutex);
    isOpen = true;
    changed.notify_all();
    changed.wait(lock, [&] { return done == all; });
  }

  int count(const std::string& root) {
    const std::lock_guard lock(mutex);
    return begun[root];
  }

  std::mutex mutex;
  std::condition_variable changed;
  std::map<std::string, int> begun;
  int all = 0;
  int done = 0;
  bool isOpen = false;
};

class DriveProberTest : public ::testing::Test {
 protected:
  const std::shared_ptr<Desk> desk = std::make_shared<Desk>();
  DriveProber prober{[desk = desk](const std::string& root) { return desk->answer(root); }};
};

TEST_F(DriveProberTest, AnswersComeInTheOrderOfTheRoots) {
  const auto told = prober.ask({"/bbb", "/a", "/thrown", "/a", "/cc"}, 10s);
  ASSERT_EQ(told.size(), 5U);
  const std::int64_t sizes[] = {4, 2, 0, 2, 3};
  for (std::size_t i = 0; i < told.size(); ++i) {
    EXPECT_EQ(told[i].error, i == 2 ? kGeneralFailure : kSuccess);
    EXPECT_EQ(told[i].space.totalBytes, sizes[i]);
  }
  EXPECT_EQ(desk->count("/a"), 1);
  EXPECT_TRUE(prober.ask({}, 10s).empty());
}

TEST_F(DriveProberTest, AllDrivesAreAskedAtOnce) {
  std::vector<std::string> roots;
  for (unsigned i = 0; i < DriveProber::kMostThreads; ++i)
    roots.push_back("/" + std::to_string(i));
  const auto meeting = std::make_shared<std::latch>(DriveProber::kMostThreads);
  DriveProber together([meeting](const std::string&) {
    meeting->arrive_and_wait();
    DriveReport report;
    report.error = kSuccess;
    return report;
  });
  for (const DriveReport& told : together.ask(roots, 20s))
    EXPECT_EQ(told.error, kSuccess);
}

TEST_F(DriveProberTest, AHungDriveCostsTheLimitOnceAndTheOthersNothing) {
  for (const auto limit : {50ms, 20'000ms, 20'000ms}) {
    const auto begin = std::chrono::steady_clock::now();
    const auto told = prober.ask({"/hung", "/good"}, limit);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
    EXPECT_EQ(told[0].error, kTimeout);
    EXPECT_EQ(told[1].error, kSuccess);
  }
  EXPECT_EQ(desk->count("/hung"), 1);
  desk->openGate();
  // The thread may not have stored its answer yet.
  for (int i = 0; i < 1000 && prober.ask({"/hung"}, 20s)[0].error != kSuccess; ++i)
    std::this_thread::sleep_for(1ms);
  EXPECT_EQ(prober.ask({"/hung"}, 20s)[0].error, kSuccess);
}

TEST_F(DriveProberTest, ThreadsDoNotPileUp) {
  for (int round = 0; round < 3; ++round) {
    std::vector<std::string> roots;
    for (int i = 0; i < 50; ++i)
      roots.push_back("/hung" + std::to_string(round) + "-" + std::to_string(i));
    prober.ask(roots, 50ms);
    const std::lock_guard lock(desk->mutex);
    EXPECT_LE(desk->all, int(DriveProber::kMostThreads));
  }
  desk->openGate();
}

TEST(DriveProberDeathTest, NobodyWaitsForAHungDriveAtTheEnd) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const auto hang = [](const std::string&) -> DriveReport {
    for (;;)
      pause();
  };
  const auto ask = [&] { DriveProber(hang).ask({"/"}, 20ms); };
  EXPECT_EXIT((ask(), std::exit(0)), ::testing::ExitedWithCode(0), "");
}

/// Exit status of the process for the test below.
int lookAtHungMount() {
  const TestFolder folder;
  runWithOwnMounts([&] {
    // A mounted network file system that never answers.
    const int device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options =
        "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0";
    if (mount("host:/export", folder.path().c_str(), "fuse.sshfs", 0, options.c_str()) != 0) return;
    const auto drives = GetLogicalDriveStringsW();
    EXPECT_EQ(std::count(drives.begin(), drives.end(), folder.text()), 1);
    VolumeInformation volume;
    EXPECT_EQ(GetVolumeInformationW(folder.text(), volume), kSuccess);
    EXPECT_EQ(volume.fileSystem, u"fuse.sshfs");
    const auto told = ProbeDrives({folder.text(), u"/"}, 100);
    EXPECT_EQ(told[0].error, kTimeout);
    EXPECT_EQ(told[1].error, kSuccess);
    EXPECT_EQ(GetDriveTypeW(folder.text()), kDriveRemote);
    EXPECT_EQ(WNetGetConnectionW(folder.text()), u"host:/export");
    EXPECT_EQ(FindNetworkDrive(u"host:/export/"), folder.text());
  });
  return ::testing::Test::HasFailure() ? 1 : 0;
}

TEST(DriveProberDeathTest, AMountThatHangsIsADriveThatDoesNotAnswer) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(_exit(lookAtHungMount()), ::testing::ExitedWithCode(0), "");
}

TEST(VolumesTest, SpaceIsThatOfTheFileSystem) {
  struct statvfs told;
  const TestFolder folder;
  ASSERT_EQ(statvfs(folder.path().c_str(), &told), 0);
  const auto answers = ProbeDrives({folder.text(), folder.text("missing")}, 10'000);
  EXPECT_EQ(answers[0].error, kSuccess);
  EXPECT_EQ(answers[0].space.totalBytes, std::int64_t(told.f_blocks * told.f_frsize));
  EXPECT_EQ(answers[0].space.clusterBytes, std::int64_t(told.f_frsize));
  // Other programs may write meanwhile.
  EXPECT_NEAR(double(answers[0].space.freeBytes), double(told.f_bfree * told.f_frsize), 1e9);
  EXPECT_EQ(answers[1].error, kFileNotFound);
}

TEST(VolumesTest, DrivesAreMountedFileSystems) {
  const std::vector<Text> drives = GetLogicalDriveStringsW();
  EXPECT_EQ(std::count(drives.begin(), drives.end(), u"/"), 1);
  EXPECT_EQ(std::count(drives.begin(), drives.end(), u"/proc"), 0);
  for (const Text& drive : drives)
    EXPECT_TRUE(IsDriveRoot(drive)) << toBytes(drive);
  EXPECT_EQ(WNetGetConnectionW(u"/"), u"");
  EXPECT_EQ(FindNetworkDrive(u"//no-such-server/share"), u"");
  // A device that is mounted twice is one drive; memory of the system is none.
  const TestFolder folder;
  for (const char* name : {"once", "once/more"})
    folder.folder(name);
  runWithOwnMounts([&] {
    mountAt("/dev/shm");
    mountAt(folder.path("once"));
    folder.folder("once/more");
    mountAt(folder.path("once/more"), folder.path("once"));
    const std::vector<Text> mounted = GetLogicalDriveStringsW();
    EXPECT_EQ(std::count(mounted.begin(), mounted.end(), folder.text("once")), 1);
    EXPECT_EQ(std::count(mounted.begin(), mounted.end(), folder.text("once/more")), 0);
    EXPECT_EQ(std::count(mounted.begin(), mounted.end(), u"/dev/shm"), 0);
  });
}

}  // namespace
}  // namespace ombrelian::platform
