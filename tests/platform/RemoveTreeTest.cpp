#include <errno.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "platform/Files.h"
#include "platform/Removal.h"
#include "tests/testing/Faults.h"
#include "tests/testing/RandomTree.h"
#include "tests/testing/ScopedUser.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::FindData;
using platform::Removal;
using platform::ShownObject;
using testing::Call;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::namesIn;
using ::testing::Pair;
using testing::ScopedFault;
using testing::ScopedUser;
using testing::TestFolder;
using ::testing::UnorderedElementsAre;

/// Keeps what was told.
struct Progress : platform::RemovalProgress {
  bool goOn(std::uint64_t files, std::uint64_t folders) override {
    return !onObject || onObject(files, folders);
  }
  void failed(TextView path, ErrorCode error) override {
    failures.emplace_back(toBytes(path), error);
  }

  std::function<bool(std::uint64_t, std::uint64_t)> onObject;
  std::vector<std::pair<std::string, ErrorCode>> failures;
};

class RemoveTreeTest : public ::testing::Test {
 protected:
  RemoveTreeTest() {
    folder.folder("outside");
    folder.file("outside/precious", 3);
    folder.folder("top");
  }

  Removal remove(const ShownObject& object) {
    progress.failures.clear();
    return RemoveTree(object, progress);
  }
  Removal removeTop() { return remove({folder.text("top")}); }

  ShownObject shown(const char* name, std::size_t linksUpTo = Text::npos) const {
    FindData data;
    EXPECT_EQ(platform::FindFirstFileW(folder.text(name), data), platform::kSuccess);
    return {folder.text(name), linksUpTo, data.identity};
  }

  void expectOutsideWhole() const {
    EXPECT_THAT(namesIn(folder.path("outside")), ElementsAre("precious"));
  }

  mode_t modeOf(const char* name) const {
    struct stat told = {};
    EXPECT_EQ(lstat(folder.path(name).c_str(), &told), 0) << name;
    return told.st_mode & 07777;
  }

  const TestFolder folder;
  Progress progress;
};

TEST_F(RemoveTreeTest, EverythingGoesAndLinksAreNotFollowed) {
  for (unsigned seed = 0; seed < 3; ++seed) {
    const TestFolder tree;
    testing::makeRandomTree(tree, seed);
    tree.symlink("to outside", folder.path("outside"));
    const Removal removal = remove({tree.text()});
    EXPECT_TRUE(removal.isGone);
    EXPECT_GT(removal.files, 2500U);
    EXPECT_GT(removal.folders, 150U);
    EXPECT_NE(access(tree.path().c_str(), F_OK), 0);
    EXPECT_THAT(progress.failures, IsEmpty());
  }
  // A link that was chosen itself is all that goes; what is not there counts as gone.
  folder.symlink("link", folder.path("outside"));
  EXPECT_TRUE(remove({folder.text("link")}).isGone);
  EXPECT_TRUE(remove({folder.text("link")}).isGone);
  EXPECT_TRUE(remove({folder.text("link/below")}).isGone);
  expectOutsideWhole();
}

TEST_F(RemoveTreeTest, NoDepthIsTooDeepAndNoFolderTooLarge) {
  const TestFolder large(TestFolder::Place::Memory);
  close(large.chain("d", 100'000));
  for (int i = 0; i < 12'000; ++i)
    large.file("file" + std::to_string(i));
  const Removal removal = remove({large.text()});
  EXPECT_TRUE(removal.isGone);
  EXPECT_EQ(removal.files, 12'000U);
  EXPECT_EQ(removal.folders, 100'001U);
}

TEST_F(RemoveTreeTest, WhatTookThePlaceOfAnObjectStays) {
  folder.folder("source/a/b");
  folder.file("source/a/b/file");
  const std::size_t source = folder.text("source").size();
  const ShownObject chosen = shown("source/a/b", source);
  // A folder on the way is a link by now, to where a folder of that very name lies.
  folder.folder("outside/b");
  folder.file("outside/b/precious");
  ASSERT_EQ(rename(folder.path("source/a").c_str(), folder.path("moved").c_str()), 0);
  folder.symlink("source/a", folder.path("outside"));
  EXPECT_FALSE(remove(chosen).isGone);
  EXPECT_THAT(progress.failures,
              ElementsAre(Pair(folder.path("source/a/b"), platform::kObjectReplaced)));
  EXPECT_EQ(access(folder.path("outside/b/precious").c_str(), F_OK), 0);
  // Even the object itself, reached by a way that was not there.
  ASSERT_EQ(unlink(folder.path("source/a").c_str()), 0);
  folder.symlink("source/a", folder.path("moved"));
  EXPECT_FALSE(remove(chosen).isGone);
  EXPECT_EQ(access(folder.path("moved/b/file").c_str(), F_OK), 0);
  // Another folder, a link, and a file of that name.
  const ShownObject top = shown("top");
  ASSERT_EQ(rename(folder.path("top").c_str(), folder.path("old top").c_str()), 0);
  folder.folder("top/new");
  EXPECT_FALSE(remove(top).isGone);
  ASSERT_EQ(rename(folder.path("top").c_str(), folder.path("new top").c_str()), 0);
  folder.symlink("top", folder.path("outside"));
  EXPECT_FALSE(remove(top).isGone);
  EXPECT_EQ(platform::DeleteFileW(top), platform::kObjectReplaced);
  EXPECT_EQ(platform::RemoveDirectoryW(top), platform::kObjectReplaced);
  EXPECT_EQ(modeOf("top"), 0777U);
  EXPECT_EQ(access(folder.path("outside/b/precious").c_str(), F_OK), 0);
}

TEST_F(RemoveTreeTest, ALinkThatAppearsWhileItGoesIsNotFollowed) {
  folder.folder("top/a");
  folder.folder("top/b");
  bool isSwapped = false;
  folder.file("top/file");
  // The subfolders were listed when the first file goes.
  progress.onObject = [&](std::uint64_t files, std::uint64_t) {
    if (files == 1 && !isSwapped) {
      isSwapped = true;
      for (const char* const name : {"top/a", "top/b"}) {
        EXPECT_EQ(rmdir(folder.path(name).c_str()), 0);
        folder.symlink(name, folder.path("outside"));
      }
    }
    return true;
  };
  EXPECT_TRUE(removeTop().isGone);
  EXPECT_TRUE(isSwapped);
  expectOutsideWhole();
}

TEST_F(RemoveTreeTest, MountPointsAreNotCrossed) {
  folder.folder("top/mounted");
  folder.folder("top/other");
  folder.file("top/file");
  pid_t child = fork();
  if (child == 0) {
    if (unshare(CLONE_NEWNS) != 0 ||
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount(folder.path("outside").c_str(), folder.path("top/mounted").c_str(), nullptr, MS_BIND,
              nullptr) != 0)
      _exit(77);
    const Removal removal = removeTop();
    const bool isTold =
        progress.failures == std::vector<std::pair<std::string, ErrorCode>>{
                                 {folder.path("top/mounted"), platform::kIsMountPoint}};
    const bool isRefused =
        !remove({folder.text("top/mounted")}).isGone &&
        platform::RemoveDirectoryW({folder.text("top/mounted")}) == platform::kIsMountPoint;
    _exit(!removal.isGone && removal.files == 1 && removal.folders == 1 && isTold && isRefused ? 0
                                                                                               : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  expectOutsideWhole();
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "only the administrator may mount";
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(platform::RemoveDirectoryW({u"/"}), platform::kIsMountPoint);
}

TEST_F(RemoveTreeTest, RightsAreHadForTheMomentAndGivenBack) {
  const ScopedUser user;
  const TestFolder own;
  own.folder("parent/closed/deep");
  own.file("parent/closed/deep/file");
  own.file("parent/closed/file");
  const auto mode = [&](const char* name, mode_t bits) {
    EXPECT_EQ(chmod(own.path(name).c_str(), bits), 0);
  };
  mode("parent/closed/deep", 0);
  mode("parent/closed", 0500);
  mode("parent", 0555);
  // While one thing cannot go, every folder around it gets its mode back.
  {
    const ScopedFault fault({Call::Unlinkat, "deep", EIO});
    EXPECT_FALSE(remove({own.text("parent/closed")}).isGone);
    EXPECT_EQ(fault.hits(), 1);
  }
  struct stat told = {};
  ASSERT_EQ(stat(own.path("parent").c_str(), &told), 0);
  EXPECT_EQ(told.st_mode & 07777, 0555U);
  ASSERT_EQ(stat(own.path("parent/closed").c_str(), &told), 0);
  EXPECT_EQ(told.st_mode & 07777, 0500U);
  ASSERT_EQ(stat(own.path("parent/closed/deep").c_str(), &told), 0);
  EXPECT_EQ(told.st_mode & 07777, 0U);
  EXPECT_TRUE(remove({own.text("parent/closed")}).isGone) << progress.failures.size();
  ASSERT_EQ(stat(own.path("parent").c_str(), &told), 0);
  EXPECT_EQ(told.st_mode & 07777, 0555U);
  mode("parent", 0755);
}

TEST_F(RemoveTreeTest, EachFailureStaysAloneAndIsTold) {
  struct Case {
    Call call;
    const char* name;
    int error;
    const char* stays;  // path that is told
    ErrorCode told;
    std::uint64_t files;  // that go
  };
  const Case cases[] = {
      {Call::Unlinkat, "stuck", EIO, "top/sub/stuck", platform::kInputOutputError, 2},
      {Call::Unlinkat, "stuck", EPERM, "top/sub/stuck", platform::kAccessDenied, 2},
      {Call::Unlinkat, "stuck", EBUSY, "top/sub/stuck", platform::kSharingViolation, 2},
      {Call::Unlinkat, "sub", EROFS, "top/sub", platform::kWriteProtect, 3},
      {Call::Openat, "sub", EMFILE, "top/sub", platform::kTooManyOpenFiles, 1},
      {Call::Openat, "sub", EACCES, "top/sub", platform::kAccessDenied, 1},
      {Call::Statx, "stuck", EIO, nullptr, 0, 3},  // nobody asks about it
  };
  for (const Case& one : cases) {
    folder.file("top/file");
    folder.file("top/sub/first");
    folder.file("top/sub/stuck");
    Removal removal;
    {
      const ScopedFault fault({one.call, one.name, one.error});
      removal = removeTop();
    }
    EXPECT_EQ(removal.files, one.files) << one.error;
    EXPECT_EQ(removal.isGone, one.stays == nullptr);
    if (one.stays == nullptr) continue;
    EXPECT_THAT(progress.failures, ElementsAre(Pair(folder.path(one.stays), one.told)));
    EXPECT_EQ(access(folder.path(one.stays).c_str(), F_OK), 0);
    EXPECT_TRUE(removeTop().isGone);
  }
  folder.file("top/file");
  {
    const ScopedFault fault({Call::Getdents, {}, EIO});
    EXPECT_FALSE(removeTop().isGone);
    EXPECT_THAT(progress.failures,
                ElementsAre(Pair(folder.path("top"), platform::kInputOutputError)));
  }
  EXPECT_EQ(access(folder.path("top/file").c_str(), F_OK), 0);
}

TEST_F(RemoveTreeTest, AStopLeavesTheRestWhole) {
  for (int i = 0; i < 100; ++i)
    folder.file("top/sub" + std::to_string(i / 10) + "/file" + std::to_string(i));
  progress.onObject = [](std::uint64_t files, std::uint64_t) { return files < 35; };
  const Removal removal = removeTop();
  EXPECT_TRUE(removal.wasStopped);
  EXPECT_FALSE(removal.isGone);
  EXPECT_EQ(removal.files, 35U);
  EXPECT_EQ(removal.folders, 3U);
  EXPECT_EQ(namesIn(folder.path("top")).size(), 7U);
  EXPECT_THAT(progress.failures, IsEmpty());
}

TEST_F(RemoveTreeTest, AFolderThatIsFilledMeanwhileGoesToo) {
  folder.folder("top/sub");
  int added = 0;
  progress.onObject = [&](std::uint64_t, std::uint64_t) {
    // `sub` was listed once it is asked whether to leave it.
    if (++added <= 4) folder.file("top/added" + std::to_string(added));
    return true;
  };
  EXPECT_TRUE(removeTop().isGone);
}

}  // namespace
}  // namespace ombrelian
