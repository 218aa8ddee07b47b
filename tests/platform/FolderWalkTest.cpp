#include "platform/FolderWalk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <set>

#include "tests/testing/Faults.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian::platform {
namespace {

using ombrelian::testing::Call;
using ombrelian::testing::Fault;
using ombrelian::testing::ScopedFault;
using ombrelian::testing::TestFolder;

std::map<std::string, FindData> listFolder(const Text& path) {
  std::map<std::string, FindData> entries;
  FolderWalk walk;
  EXPECT_EQ(walk.openSource(path), kSuccess);
  while (const FindData* const entry = walk.nextEntry()) {
    entries[toBytes(walk.name())] = *entry;
  }
  EXPECT_EQ(walk.listError(), kSuccess);
  return entries;
}

std::uint64_t sizeOf(const FindData& data) {
  return std::uint64_t(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
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
  ASSERT_EQ(chmod(folder.path("file").c_str(), 0444), 0);
  const int socketFd = socket(AF_UNIX, SOCK_STREAM, 0);
  struct sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  folder.path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(socketFd, reinterpret_cast<struct sockaddr*>(&address), sizeof address), 0);
  close(socketFd);

  const auto entries = listFolder(folder.text());
  const struct {
    const char* name;
    std::uint32_t attributes;
    std::uint64_t size;
  } expected[] = {
      {"file", kAttributeReadOnly | kAttributeSparse, 5'000'000'000},
      {".hidden", kAttributeHidden, 0},
      {"folder", kAttributeDirectory, 0},
      {"toFolder", kAttributeDirectory | kAttributeReparsePoint, 6},
      {"toFile", kAttributeReparsePoint, 4},
      {"dangling", kAttributeReparsePoint, 7},
      {"pipe", kAttributeSystem, 0},
      {"socket", kAttributeSystem, 0},
  };
  EXPECT_EQ(entries.size(), std::size(expected));
  for (const auto& e : expected) {
    ASSERT_TRUE(entries.contains(e.name)) << e.name;
    EXPECT_EQ(entries.at(e.name).dwFileAttributes, e.attributes) << e.name;
    EXPECT_EQ(sizeOf(entries.at(e.name)), e.size) << e.name;
  }
  EXPECT_EQ(entries.at("toFolder").dwReserved0, kTagSymbolicLink);
  EXPECT_NE(entries.at("file").ftLastWriteTime, 0);
}

TEST(FolderWalkTest, AnyNameComesBackAsItWas) {
  const TestFolder folder;
  const std::set<std::string> names = {"plain",
                                       " leading",
                                       "trailing ",
                                       "new\nline",
                                       "quote\"'",
                                       "back\\slash",
                                       "\xFF\xFE",
                                       "half \xC3",
                                       "\xED\xA0\x80",
                                       "\x01\x1B[31m",
                                       "gr\xC3\xBC\xC3\x9F",
                                       "...",
                                       std::string(255, 'x'),
                                       std::string(255, '\xAA'),
                                       "*.*",
                                       "%1"};
  for (const std::string& name : names)
    folder.folder(name);
  std::set<std::string> found;
  FolderWalk walk;
  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  while (walk.nextEntry() != nullptr) {
    found.insert(toBytes(walk.name()));
    ASSERT_EQ(walk.goIn(), kSuccess) << toBytes(walk.name());
    walk.goOut();
  }
  EXPECT_EQ(found, names);
}

/// Walks everything and gives the names of the files.
std::multiset<std::string> walkFiles(FolderWalk& walk) {
  std::multiset<std::string> files;
  while (walk.depth() > 0) {
    const FindData* const entry = walk.nextEntry();
    if (entry == nullptr) {
      EXPECT_EQ(walk.listError(), kSuccess);
      walk.goOut();
    } else if (entry->isFolder()) {
      EXPECT_EQ(walk.goIn(), kSuccess);
    } else {
      files.insert(toBytes(walk.name()));
    }
  }
  return files;
}

// Files on both sides of the subfolder in each level, so that every level is read on after the
// walk came back from far below.
TEST(FolderWalkTest, GoesDeepWithFewDescriptors) {
  const TestFolder folder;
  constexpr int kLevels = 400;
  std::multiset<std::string> expected;
  std::string path;
  for (int level = 0; level < kLevels; ++level) {
    path += "d/";
    for (int i = 0; i < 4; ++i) {
      const std::string name = std::to_string(level) + "-" + std::to_string(i);
      folder.file(path + name);
      expected.insert(name);
    }
  }
  struct rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  const struct rlimit few = {100, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &few);
  FolderWalk walk;
  EXPECT_EQ(walk.openSource(folder.text()), kSuccess);
  EXPECT_EQ(walkFiles(walk), expected);
  setrlimit(RLIMIT_NOFILE, &before);
}

// Behind a link ".." is another folder; the level above must be found again by its names.
TEST(FolderWalkTest, ComesBackFromBehindALink) {
  const TestFolder folder;
  const TestFolder elsewhere;
  close(elsewhere.chain("e", 100));
  folder.symlink("a-link", elsewhere.path());
  std::multiset<std::string> expected;
  for (int i = 0; i < 50; ++i) {
    const std::string name = "file" + std::to_string(i);
    folder.file(name);
    expected.insert(name);
  }
  FolderWalk walk;
  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  EXPECT_EQ(walkFiles(walk), expected);
}

TEST(FolderWalkTest, ALinkToAnAncestorIsToldAndNotFollowed) {
  const TestFolder folder;
  folder.folder("a/b");
  folder.symlink("a/b/up", "../..");
  FolderWalk walk;
  ASSERT_EQ(walk.openSource(folder.text("a")), kSuccess);
  ASSERT_NE(walk.nextEntry(), nullptr);
  ASSERT_EQ(walk.goIn(), kSuccess);
  ASSERT_NE(walk.nextEntry(), nullptr);
  ErrorCode error = kSuccess;
  EXPECT_EQ(walk.reparseTarget(folder.text("a/b/up"), error), u"../..");
  EXPECT_EQ(walk.goIn(), kSuccess) << "the parent of the source is no ancestor";
  walk.goOut();
  walk.goOut();
  walk.goOut();

  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  for (int i = 0; i < 2; ++i) {
    ASSERT_NE(walk.nextEntry(), nullptr);
    ASSERT_EQ(walk.goIn(), kSuccess);
  }
  ASSERT_NE(walk.nextEntry(), nullptr);
  EXPECT_EQ(walk.goIn(), kLinkLoop);
}

TEST(FolderWalkTest, AFolderRemovedWhileReadIsEmpty) {
  const TestFolder folder;
  folder.folder("a");
  folder.folder("b");
  FolderWalk walk(0);  // helpers might have read it before it goes
  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  ASSERT_NE(walk.nextEntry(), nullptr);
  const std::string first = toBytes(walk.name());
  ASSERT_EQ(rmdir(folder.path(first).c_str()), 0);
  EXPECT_EQ(walk.goIn(), kFileNotFound);
  ASSERT_NE(walk.nextEntry(), nullptr) << "the other folder is still listed";
  ASSERT_EQ(walk.goIn(), kSuccess);
  ASSERT_EQ(rmdir(folder.path(first == "a" ? "b" : "a").c_str()), 0);
  EXPECT_EQ(walk.nextEntry(), nullptr);
  EXPECT_EQ(walk.listError(), kSuccess);
}

TEST(FolderWalkTest, FailuresAreTold) {
  const TestFolder folder;
  folder.file("folder/file");
  FolderWalk walk;
  EXPECT_EQ(walk.openSource(folder.text("missing")), kFileNotFound);
  EXPECT_EQ(walk.openSource(folder.text("folder/file")), kNotADirectory);
  const ScopedFault fault({Call::Getdents, {}, EIO});
  EXPECT_EQ(walk.openSource(folder.text("folder")), kInputOutputError);
  EXPECT_EQ(walk.depth(), 0U);
}

TEST(FolderWalkTest, AnEntryThatCannotBeAskedIsStillThere) {
  const TestFolder folder;
  folder.file("file", 10);
  folder.folder("folder");
  const ScopedFault denied({Call::Statx, "f", EACCES});
  FolderWalk walk;
  ASSERT_EQ(walk.openSource(folder.text()), kSuccess);
  int folders = 0;
  for (int i = 0; i < 2; ++i) {
    const FindData* const entry = walk.nextEntry();
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->statError, kAccessDenied);
    folders += entry->isFolder() ? 1 : 0;
  }
  EXPECT_EQ(folders, 1);
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
    EXPECT_EQ(opened.hits(), entries);  // by the walk itself
  }
  EXPECT_EQ(entries, 50);
}

TEST(FolderWalkTest, AFileThatVanishedIsPassedOver) {
  const TestFolder folder;
  folder.file("gone");
  folder.file("here");
  const ScopedFault gone({Call::Statx, "gone", ENOENT});
  const auto entries = listFolder(folder.text());
  EXPECT_EQ(entries.size(), 1U);
  EXPECT_TRUE(entries.contains("here"));
}

}  // namespace
}  // namespace ombrelian::platform
