#include "platform/posix/ReadAhead.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <random>
#include <thread>

#include "platform/FolderWalk.h"
#include "platform/posix/Medium.h"
#include "tests/testing/ChildProcess.h"
#include "tests/testing/RandomTree.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using namespace ombrelian::testing;

/// The data of one entry, with its depth.
std::string line(const FindData& entry, const std::string& name, std::size_t depth) {
  return std::to_string(depth) + " " + name + " " + std::to_string(entry.dwFileAttributes) + " " +
         std::to_string(entry.nFileSizeLow) + " " + std::to_string(entry.linkCount) + " " +
         std::to_string(entry.identity.index) + " " + std::to_string(entry.statError);
}

/// Walks the source and records all results. Depending on their names, some folders are skipped and
/// some listings are left early, as by filters and by a cancel.
std::vector<std::string> diaryOf(const Text& source, int helpers) {
  std::vector<std::string> diary;
  FolderWalk walk(helpers);
  EXPECT_EQ(walk.openSource(source), kSuccess);
  while (walk.depth() > 0) {
    const FindData* const entry = walk.nextEntry();
    const std::string name = entry == nullptr ? "" : toBytes(walk.name());
    const std::size_t fate = std::hash<std::string>()(name) % 2000;
    if (entry == nullptr || (fate == 0 && walk.depth() > 2)) {
      diary.push_back("leave " + std::to_string(walk.listError()));
      walk.goOut();
      continue;
    }
    diary.push_back(line(*entry, name, walk.depth()));
    if (!entry->isFolder() || (fate < 100 && walk.depth() > 2)) continue;
    if (entry->isReparse() && fate < 1800) continue;
    if (const ErrorCode error = walk.goIn(); error != kSuccess) {
      diary.push_back("closed " + std::to_string(error));
    }
  }
  return diary;
}

std::size_t countIn(const char* folder) {
  return std::size_t(std::distance(std::filesystem::directory_iterator(folder),
                                   std::filesystem::directory_iterator()));
}

/// Number of threads of the program. The kernel removes a joined thread from its list a bit later,
/// and a sanitizer adds a thread of its own with the first thread.
std::size_t countThreads() {
  std::thread([] {}).join();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  return countIn("/proc/self/task");
}

/// Checks that a test leaves no threads and no descriptors behind.
class ReadAheadTest : public ::testing::Test {
 protected:
  ~ReadAheadTest() override {
    EXPECT_EQ(countIn("/proc/self/fd"), descriptors_);
    EXPECT_EQ(countThreads(), threads_);
  }

 private:
  const std::size_t descriptors_ = countIn("/proc/self/fd");
  const std::size_t threads_ = countThreads();
};

void expectHelpersToChangeNothing(const TestFolder& folder, const std::string& what) {
  const std::vector<std::string> alone = diaryOf(folder.text(), 0);
  ASSERT_GT(alone.size(), 100U);
  for (const int helpers : {1, 2, 8, 32})
    ASSERT_EQ(diaryOf(folder.text(), helpers), alone) << helpers << " helpers, " << what;
}

TEST_F(ReadAheadTest, HelpersChangeNoAnswer) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    const TestFolder folder(seed % 2 == 0 ? TestFolder::Place::Disk : TestFolder::Place::Memory);
    makeRandomTree(folder, seed);
    expectHelpersToChangeNothing(folder, "seed " + std::to_string(seed));
  }
}

TEST_F(ReadAheadTest, FailuresAreThoseOfAWalkAlone) {
  const TestFolder folder;
  makeRandomTree(folder, 77);
  for (const auto& [call, name, error] : {std::tuple(Call::Openat, "d1", EACCES),
                                          {Call::Openat, "c5", ENOENT},
                                          {Call::Statx, "d", EACCES},
                                          {Call::Statx, "n1", ENOENT}}) {
    const ScopedFault active({call, name, error});
    expectHelpersToChangeNothing(folder, name);
    EXPECT_GT(active.hits(), 0);
  }
}

TEST_F(ReadAheadTest, InterruptedCallsAreRepeated) {
  const TestFolder folder;
  makeRandomTree(folder, 8);
  const std::vector<std::string> whole = diaryOf(folder.text(), 0);
  for (const Call call : {Call::Openat, Call::Getdents, Call::Statx}) {
    for (const int helpers : {0, 2}) {
      const ScopedFault early({.call = call, .error = EINTR, .times = 2});
      const ScopedFault late({.call = call, .error = EINTR, .skip = 60, .times = 3});
      EXPECT_EQ(diaryOf(folder.text(), helpers), whole) << int(call) << " " << helpers;
      EXPECT_TRUE(early.hits() == 2 && late.hits() == 3);
    }
  }
  // An error that never ends, and one that no Windows error fits, are reported in the system's
  // words.
  for (const int error : {EINTR, EUCLEAN}) {
    const ScopedFault fault({.call = Call::Openat, .error = error});
    FolderWalk walk(0);
    EXPECT_EQ(toBytes(xGetErrorText(false, walk.openSource(folder.text()))), strerror(error));
  }
}

TEST_F(ReadAheadTest, ABrokenListingKeepsWhatWasRead) {
  const TestFolder folder(TestFolder::Place::Memory);
  for (int i = 0; i < 5000; ++i)
    folder.file("wide/" + std::string(30, 'f') + std::to_string(i));
  for (const int helpers : {0, 2}) {
    const ScopedFault fault({Call::Getdents, {}, EIO, 5, 1});  // the source needs two calls
    FolderWalk walk(helpers);
    ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
    ASSERT_NE(walk.nextEntry(), nullptr);
    ASSERT_EQ(walk.goIn(), kSuccess);
    int entries = 0;
    while (walk.nextEntry() != nullptr)
      ++entries;
    EXPECT_EQ(walk.listError(), kInputOutputError);
    EXPECT_TRUE(entries > 1000 && entries < 5000) << entries << " with " << helpers;
  }
}

// The walk closes outer levels, so it can open folders that helpers cannot open.
TEST_F(ReadAheadTest, AShortageOfHelpersIsNoneOfTheWalk) {
  const TestFolder folder;
  makeRandomTree(folder, 5);
  const std::vector<std::string> alone = diaryOf(folder.text(), 0);
  const pid_t walk = gettid();
  const ScopedFault fault({.call = Call::Openat, .error = EMFILE, .exceptThread = walk});
  // The walk waits now and then, so that the helpers get work on any machine.
  const ScopedFault slow({.call = Call::Getdents, .error = 0, .meanwhile = [walk] {
                            if (gettid() == walk) usleep(1000);
                          }});
  EXPECT_EQ(diaryOf(folder.text(), 4), alone);
  EXPECT_GT(fault.hits(), 0);
}

/// Runs `check` in a process that can have no more than `limit` descriptors; `taken` of them are in
/// use already.
void expectWithFewDescriptors(rlim_t limit, rlim_t taken, const std::function<bool()>& check) {
  const int status = statusOfChild([&] {
    const rlimit few = {limit, limit};
    for (rlim_t i = 3; i < taken; ++i)
      dup2(0, int(i));
    return setrlimit(RLIMIT_NOFILE, &few) == 0 && check() ? 0 : 1;
  });
  EXPECT_EQ(status, 0) << taken << " of " << limit;
}

TEST_F(ReadAheadTest, AWalkGetsByWithFewDescriptors) {
  const TestFolder folder;
  makeRandomTree(folder, 6);
  close(folder.chain("deep", 60));
  const std::vector<std::string> whole = diaryOf(folder.text(), 0);
  for (const auto& [limit, taken] : {std::pair(16U, 3U), {48U, 3U}, {128U, 3U}, {128U, 118U}}) {
    for (const int helpers : {0, 2, 64})
      expectWithFewDescriptors(limit, taken,
                               [&] { return diaryOf(folder.text(), helpers) == whole; });
  }
  // The limit that a process may raise itself is no limit.
  rlimit old;
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &old), 0);
  const rlimit low = {32, old.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
  EXPECT_EQ(descriptorLimit(), std::min<std::size_t>(old.rlim_max, 1024));
  setrlimit(RLIMIT_NOFILE, &old);
}

/// Reads everything below `folder` with the plan; returns the number of entries. `most` is the
/// largest number of descriptors that was seen.
std::size_t readAll(const std::string& path, const ReadPlan& plan, std::size_t& most) {
  std::size_t entries = 0;
  ReadAhead ahead(plan);
  std::vector<ListingPointer> stack = {ReadAhead::begin(
      std::make_shared<Descriptor>(open(path.c_str(), O_RDONLY | O_DIRECTORY)), 0)};
  while (!stack.empty()) {
    const ListingPointer listing = std::move(stack.back());
    stack.pop_back();
    std::list<ListingPart> parts;
    while (ahead.take(listing, parts)) {
    }
    EXPECT_EQ(listing->error, 0);
    most = std::max(most, countIn("/proc/self/fd"));
    for (ListingPart& part : parts) {
      entries += part.batch.entries().size();
      for (ListingPart::Subfolder& subfolder : part.subfolders)
        stack.push_back(std::move(subfolder.listing));
    }
  }
  return entries;
}

TEST_F(ReadAheadTest, BoundsHoldBackTheHelpersAlone) {
  const TestFolder folder;
  constexpr std::size_t kFolders = 1000;
  for (std::size_t i = 0; i < kFolders; ++i)
    folder.folder("f" + std::to_string(i) + "/inner");
  for (const std::size_t memory : {std::size_t(1), std::size_t(20'000), std::size_t(1) << 24}) {
    for (const unsigned descriptors : {1U, 10U}) {
      std::size_t most = 0;
      const ReadPlan plan = {.helpers = 4, .memory = memory, .descriptors = descriptors};
      EXPECT_EQ(readAll(folder.path(), plan, most), 2 * kFolders);
      // Descriptors of the program, one for each thread, and those of the stack.
      EXPECT_LT(most, 40U + kFolders / 2) << memory << " " << descriptors;
    }
  }
}

TEST_F(ReadAheadTest, QuestionsInInodeOrderBringTheSameAnswer) {
  const TestFolder folder;
  for (int i = 0; i < 500; ++i)
    folder.file("f" + std::to_string(i * 7919 % 500), i);
  const Descriptor open(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
  EntryReader reader;
  ASSERT_EQ(reader.list(open.get(), marksEndOfFolder(open.get())).error, 0);
  const auto linesOf = [](const EntryBatch& batch, std::string_view without) {
    std::vector<std::string> lines;
    for (const EntryBatch::Entry& entry : batch.entries()) {
      const std::string name = batch.nameOf(entry);
      if (without.empty() || !name.starts_with(without)) lines.push_back(line(entry, name, 0));
    }
    return lines;
  };
  const EntryBatch plain = reader.ask(open.get(), 0, false);
  ASSERT_EQ(plain.entries().size(), 500U);
  const ScopedFault gone({.call = Call::Statx, .name = "f33", .error = ENOENT});
  EXPECT_EQ(linesOf(reader.ask(open.get(), 0, true), ""), linesOf(plain, "f33"));
}

/// Changes a tree until `isDone`: names are made, removed and moved, folders become files and files
/// become folders.
void vandalize(const std::string& folder, const std::atomic<bool>& isDone) {
  std::mt19937 random;
  const auto name = [&] {
    std::string path = folder;
    for (unsigned level = 1 + unsigned(random() % 3); level > 0; --level)
      path += "/v" + std::to_string(random() % 6);
    return path;
  };
  std::error_code ignored;
  while (!isDone) {
    const std::string path = name();
    const unsigned deed = unsigned(random() % 5);
    if (deed == 0) std::filesystem::remove_all(path, ignored);
    if (deed == 1) std::filesystem::rename(path, name(), ignored);
    if (deed == 2) close(open(path.c_str(), O_CREAT | O_WRONLY, 0600));
    if (deed > 2) std::filesystem::create_directories(path, ignored);
  }
}

// Every walk ends, and leaves nothing behind if it is ended at any point.
TEST_F(ReadAheadTest, ATreeThatChangesUnderTheWalk) {
  const TestFolder folder(TestFolder::Place::Memory);
  makeRandomTree(folder, 9);
  std::atomic<bool> isDone = false;
  std::thread vandals[2];
  for (std::thread& vandal : vandals)
    vandal = std::thread([&] { vandalize(folder.path(), isDone); });
  std::mt19937 random;
  for (int round = 0; round < 300; ++round) {
    FolderWalk walk(1 << round % 6);
    EXPECT_EQ(walk.openSource(folder.text()), kSuccess);
    const bool isCancelled = round % 2 == 0;
    for (auto left = unsigned(random() % 2000); walk.depth() > 0 && (!isCancelled || left > 0);
         --left) {
      const FindData* const entry = walk.nextEntry();
      if (entry == nullptr) {
        walk.goOut();
      } else if (entry->isFolder() && !entry->isReparse()) {
        static_cast<void>(walk.goIn());
      }
    }
  }
  isDone = true;
  for (std::thread& vandal : vandals)
    vandal.join();
}

/// A disk in the form of sysfs.
void makeDisk(const TestFolder& sys, const std::string& name, const char* rotational,
              const char* vendor) {
  sys.write(name + "/queue/rotational", std::string(rotational) + "\n");
  sys.write(name + "/device/vendor", std::string(vendor) + "\n");
  sys.file(name + "/" + name + "1/partition");
  sys.folder(name + "/slaves");
}

TEST(MediumTest, ToldByTheKernel) {
  const TestFolder sys;
  makeDisk(sys, "sda", "1", "ATA     ");
  makeDisk(sys, "sdb", "0", "ATA     ");
  makeDisk(sys, "sdc", "1", "QEMU    ");
  makeDisk(sys, "vda", "1", "0x1af4");
  makeDisk(sys, "nbd0", "0", "");
  makeDisk(sys, "zram0", "0", "");
  for (const char* const stacked : {"dm-0/slaves", "md0/slaves"})
    sys.folder(stacked);
  sys.symlink("vda/device/driver", "/sys/bus/virtio/drivers/virtio_blk");
  sys.symlink("dm-0/slaves/sdb1", "../../sdb/sdb1");
  sys.symlink("md0/slaves/sda1", "../../sda/sda1");
  sys.symlink("md0/slaves/dm-0", "../../dm-0");
  const std::pair<const char*, Medium> cases[] = {
      {"sda", Medium::Spinning},        {"sda/sda1", Medium::Spinning},
      {"sdb/sdb1", Medium::SolidState}, {"sdc", Medium::SolidState},
      {"vda/vda1", Medium::SolidState}, {"nbd0", Medium::Network},
      {"zram0", Medium::Memory},        {"dm-0", Medium::SolidState},
      {"md0", Medium::Spinning},        {"none", Medium::SolidState}};
  for (const auto& [device, medium] : cases)
    EXPECT_EQ(mediumOfBlockDevice(sys.path(device)), medium) << device;
}

}  // namespace
}  // namespace ombrelian::platform
