#include "platform/FolderWalk.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <set>

#include "tests/testing/ChildProcess.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using namespace ombrelian::testing;

std::map<std::string, FindData> listFolder(const Text& path) {
  std::map<std::string, FindData> entries;
  FolderWalk walk;
  EXPECT_EQ(walk.openSource(path), kSuccess);
  if (walk.depth() == 0) return entries;
  while (const FindData* const entry = walk.nextEntry())
    entries[toBytes(walk.name())] = *entry;
  EXPECT_EQ(walk.listError(), kSuccess);
  return entries;
}

TEST(FolderWalkTest, TellsEachKindOfEntry) {
  const TestFolder folder;
  folder.file("file", 5'000'000'000);
  folder.file(".hidden", 0);
  folder.folder("folder");
  folder.symlink("toFolder", "folder");
  folder.symlink("toFile", "file");
  folder.symlink("dangling", "nowhere");
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  folder.chmod("file", 0444);
  ASSERT_EQ(mknod(folder.path("socket").c_str(), S_IFSOCK | 0600, 0), 0);

  const auto entries = listFolder(folder.text());
  std::map<std::string, std::pair<std::uint64_t, std::uint32_t>> told;  // size, attributes
  for (const auto& [name, data] : entries)
    told[name] = {std::uint64_t(data.nFileSizeHigh) << 32 | data.nFileSizeLow,
                  data.dwFileAttributes};
  const decltype(told) expected = {
      {"file", {5'000'000'000, kAttributeReadOnly | kAttributeSparse}},
      {".hidden", {0, kAttributeHidden}},
      {"folder", {0, kAttributeDirectory}},
      {"toFolder", {6, kAttributeDirectory | kAttributeReparsePoint}},
      {"toFile", {4, kAttributeReparsePoint}},
      {"dangling", {7, kAttributeReparsePoint}},
      {"pipe", {0, kAttributeSystem}},
      {"socket", {0, kAttributeSystem}},
  };
  EXPECT_EQ(told, expected);
  EXPECT_EQ(entries.at("toFolder").dwReserved0, kTagSymbolicLink);
  EXPECT_NE(entries.at("file").ftLastWriteTime, 0);
}

TEST(FolderWalkTest, AnyNameComesBackAsItWas) {
  const TestFolder folder;
  std::vector<Text> names = fields(
      u" leading|trailing |new\nline|quote\"'|back\\slash|\xDCFF\xDCFE|half \xDCC3|"
      u"\xDCED\xDCA0\xDC80|\x01\x1B[31m|gr\u00FC\u00DF|...|*.*|%1");
  names.push_back(Text(255, u'\xDCAA'));
  for (const Text& name : names)
    folder.folder(toBytes(name));
  std::set<Text> found;
  FolderWalk walk;
  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  while (walk.nextEntry() != nullptr) {
    found.emplace(walk.name());
    ASSERT_EQ(walk.goIn(), kSuccess) << toBytes(walk.name());
    walk.goOut();
  }
  EXPECT_EQ(found, std::set<Text>(names.begin(), names.end()));
}

/// Walks to the end of the folder on `depth` and counts the files.
int countFiles(FolderWalk& walk, std::size_t depth) {
  int files = 0;
  for (;;) {
    const FindData* const entry = walk.nextEntry();
    if (entry == nullptr) {
      EXPECT_TRUE(walk.depth() == depth || walk.listError() == kSuccess);
      if (walk.depth() == depth) return files;
      walk.goOut();
    } else if (entry->isFolder()) {
      EXPECT_EQ(walk.goIn(), kSuccess);
    } else {
      ++files;
    }
  }
}

// Each level has files on both sides of its subfolder, so that every level is read further after
// the walk returned from far below.
TEST(FolderWalkTest, GoesDeepWithFewDescriptors) {
  const TestFolder folder;
  constexpr int kLevels = 400;
  std::string path;
  for (int level = 0; level < kLevels; ++level) {
    path += "d/";
    for (int i = 0; i < 4; ++i)
      folder.file(path + std::to_string(i));
  }
  const int status = statusOfChild([&] {
    const struct rlimit few = {100, 100};
    FolderWalk walk;
    if (setrlimit(RLIMIT_NOFILE, &few) != 0 || walk.openSource(folder.text()) != kSuccess) return 1;
    return countFiles(walk, 1) == 4 * kLevels ? 0 : 2;
  });
  EXPECT_EQ(status, 0);
}

// Behind a link ".." is another folder, so the level above must be found by its path. If that level
// is gone, its listing ends, which is an error only if entries were left in it.
TEST(FolderWalkTest, ComesBackFromBehindALink) {
  const TestFolder elsewhere;
  close(elsewhere.chain("e", 100));
  const struct {
    int files, helpers;
    bool isGone;
  } cases[] = {{0, 0, false},  {0, 0, true},  {0, 2, true}, {50, 0, false},
               {50, 2, false}, {50, 0, true}, {50, 2, true}};
  for (const auto& c : cases) {
    const TestFolder folder;
    folder.folder("source");
    folder.symlink("source/a-link", elsewhere.path());
    for (int i = 0; i < c.files; ++i)
      folder.file("source/file" + std::to_string(i));
    FolderWalk walk(c.helpers);
    ASSERT_EQ(walk.openSource(folder.text("source")), kSuccess);
    int seen = 0;
    while (!walk.nextEntry()->isFolder())
      ++seen;
    ASSERT_EQ(walk.goIn(), kSuccess);
    while (walk.nextEntry() != nullptr)
      ASSERT_EQ(walk.goIn(), kSuccess);
    if (c.isGone) folder.rename("source", "moved");
    while (walk.depth() > 1)
      walk.goOut();
    seen += countFiles(walk, 1);
    EXPECT_EQ(walk.listError(), seen == c.files ? kSuccess : kFileNotFound);
    EXPECT_TRUE(seen == c.files || c.isGone) << c.files << " " << c.helpers;
  }
}

TEST(FolderWalkTest, FailuresAreTold) {
  const TestFolder folder;
  folder.file("folder/file");
  FolderWalk walk;
  EXPECT_EQ(walk.openSource(folder.text("missing")), kFileNotFound);
  EXPECT_EQ(walk.openSource(folder.text("folder/file")), kNotADirectory);
  {
    const ScopedFault removed({Call::Getdents, {}, ENOENT});
    EXPECT_TRUE(listFolder(folder.text("folder")).empty()) << "as if it had been empty";
  }
  const ScopedFault fault({Call::Getdents, {}, EIO});
  EXPECT_EQ(walk.openSource(folder.text("folder")), kInputOutputError);
  EXPECT_EQ(walk.depth(), 0U);
}

TEST(FolderWalkTest, NothingIsAskedBehindTheEndOfAListing) {
  const TestFolder folder;
  folder.file("file");
  const ScopedFault asked({.call = Call::Getdents});
  FolderWalk walk(0);
  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  EXPECT_EQ(countFiles(walk, 1), 1);
  EXPECT_EQ(walk.nextEntry(), nullptr);
  EXPECT_LE(asked.hits(), 2);
}

TEST(FolderWalkTest, AnEntryThatCannotBeAskedIsStillThereAndOneThatVanishedIsNot) {
  const TestFolder folder;
  folder.file("gone");
  folder.file("file", 10);
  folder.folder("folder");
  const ScopedFault denied({Call::Statx, "f", EACCES});
  const ScopedFault gone({Call::Statx, "gone", ENOENT});
  const auto entries = listFolder(folder.text());
  ASSERT_EQ(entries.size(), 2U);
  for (const auto& [name, entry] : entries) {
    EXPECT_EQ(entry.statError, kAccessDenied);
    EXPECT_EQ(entry.isFolder(), name == "folder");
  }
}

TEST(FolderWalkTest, HelpersLeaveSubfoldersOfAOneFolderWalkAlone) {
  const TestFolder folder;
  for (int i = 0; i < 50; ++i)
    folder.file("below" + std::to_string(i) + "/file");
  const ScopedFault opened({Call::Openat, "below", EACCES});
  FolderWalk walk(2, WalkReach::OneFolder);
  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  int entries = 0;
  while (walk.nextEntry() != nullptr) {
    EXPECT_EQ(walk.goIn(), kAccessDenied);
    ++entries;
    EXPECT_EQ(opened.hits(), entries);  // opened by the walk itself
  }
  EXPECT_EQ(entries, 50);
}

}  // namespace
}  // namespace ombrelian::platform
