#include <functional>

#include "platform/Files.h"
#include "platform/Removal.h"
#include "tests/testing/OwnMounts.h"
#include "tests/testing/RandomTree.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using namespace ombrelian::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/// Records the reported failures.
struct Progress : RemovalProgress {
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
    EXPECT_EQ(FindFirstFileW(folder.text(name), data), kSuccess);
    return {folder.text(name), linksUpTo, data.identity};
  }

  const TestFolder folder;
  Progress progress;
};

TEST_F(RemoveTreeTest, EverythingGoesAndLinksAreNotFollowed) {
  for (unsigned seed = 0; seed < 3; ++seed) {
    const TestFolder tree;
    makeRandomTree(tree, seed);
    tree.symlink("to outside", folder.path("outside"));
    const Removal removal = remove({tree.text()});
    EXPECT_TRUE(removal.isGone);
    EXPECT_TRUE(removal.files > 2500 && removal.folders > 150);
    EXPECT_NE(access(tree.path().c_str(), F_OK), 0);
    EXPECT_THAT(progress.failures, IsEmpty());
  }
  // If a link is chosen, only the link is removed. A missing object counts as removed.
  folder.symlink("link", folder.path("outside"));
  EXPECT_TRUE(remove({folder.text("link")}).isGone);
  EXPECT_TRUE(remove({folder.text("link")}).isGone);
  EXPECT_TRUE(remove({folder.text("link/below")}).isGone);
  EXPECT_TRUE(folder.has("outside/precious"));
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
  folder.file("source/a/b/file");
  const ShownObject chosen = shown("source/a/b", folder.text("source").size());
  // A folder on the path becomes a link to a folder that contains the same name.
  folder.file("outside/b/precious");
  folder.rename("source/a", "moved");
  folder.symlink("source/a", folder.path("outside"));
  EXPECT_FALSE(remove(chosen).isGone);
  EXPECT_THAT(progress.failures, ElementsAre(Pair(folder.path("source/a/b"), kObjectReplaced)));
  // The object itself is refused too if the path to it is new.
  folder.rename("source/a", "other link");
  folder.symlink("source/a", folder.path("moved"));
  EXPECT_FALSE(remove(chosen).isGone);
  EXPECT_TRUE(folder.has("moved/b/file"));
  // A folder, a link and a file with the name of the object are refused.
  const ShownObject top = shown("top");
  folder.rename("top", "old top");
  folder.folder("top/new");
  EXPECT_FALSE(remove(top).isGone);
  folder.rename("top", "new top");
  folder.symlink("top", folder.path("outside"));
  EXPECT_FALSE(remove(top).isGone);
  EXPECT_EQ(DeleteFileW(top), kObjectReplaced);
  EXPECT_EQ(RemoveDirectoryW(top), kObjectReplaced);
  EXPECT_EQ(folder.modeOf("top"), 0777U);
  EXPECT_TRUE(folder.has("outside/b/precious"));
}

TEST_F(RemoveTreeTest, ALinkThatAppearsWhileItGoesIsNotFollowed) {
  folder.folder("top/a");
  folder.folder("top/b");
  folder.file("top/file");
  bool isSwapped = false;
  // The subfolders are listed before the first file is removed.
  progress.onObject = [&](std::uint64_t files, std::uint64_t) {
    if (files != 1 || std::exchange(isSwapped, true)) return true;
    for (const char* const name : {"top/a", "top/b"}) {
      EXPECT_EQ(rmdir(folder.path(name).c_str()), 0);
      folder.symlink(name, folder.path("outside"));
    }
    return true;
  };
  EXPECT_TRUE(removeTop().isGone);
  EXPECT_TRUE(isSwapped);
  EXPECT_TRUE(folder.has("outside/precious"));
}

TEST_F(RemoveTreeTest, MountPointsAreNotCrossed) {
  folder.folder("top/mounted");
  folder.folder("top/other");
  folder.file("top/file");
  runWithOwnMounts([&] {
    mountAt(folder.path("top/mounted"), folder.path("outside"));
    const Removal removal = removeTop();
    EXPECT_FALSE(removal.isGone);
    EXPECT_EQ(removal.files, 1U);
    EXPECT_EQ(removal.folders, 1U);
    EXPECT_THAT(progress.failures, ElementsAre(Pair(folder.path("top/mounted"), kIsMountPoint)));
    EXPECT_FALSE(remove({folder.text("top/mounted")}).isGone);
    EXPECT_EQ(RemoveDirectoryW({folder.text("top/mounted")}), kIsMountPoint);
  });
  EXPECT_TRUE(folder.has("outside/precious"));
  EXPECT_EQ(RemoveDirectoryW({u"/"}), kIsMountPoint);
}

TEST_F(RemoveTreeTest, RightsAreHadForTheMomentAndGivenBack) {
  const ScopedUser user;
  const TestFolder own;
  own.file("parent/closed/deep/file");
  own.file("parent/closed/file");
  own.chmod("parent/closed/deep", 0);
  own.chmod("parent/closed", 0500);
  own.chmod("parent", 0555);
  // If one object cannot be removed, every folder around it gets its mode back.
  {
    const ScopedFault fault({Call::Unlinkat, "deep", EIO});
    EXPECT_FALSE(remove({own.text("parent/closed")}).isGone);
    EXPECT_EQ(fault.hits(), 1);
  }
  EXPECT_EQ(own.modeOf("parent"), 0555U);
  EXPECT_EQ(own.modeOf("parent/closed"), 0500U);
  EXPECT_EQ(own.modeOf("parent/closed/deep"), 0U);
  EXPECT_TRUE(remove({own.text("parent/closed")}).isGone) << progress.failures.size();
  EXPECT_EQ(own.modeOf("parent"), 0555U);
  own.chmod("parent", 0755);
}

TEST_F(RemoveTreeTest, EachFailureStaysAloneAndIsTold) {
  const struct {
    Fault fault;
    const char* stays;  // reported path
    ErrorCode told;
    std::uint64_t files;  // number of removed files
  } cases[] = {
      {{Call::Unlinkat, "stuck", EIO}, "top/sub/stuck", kInputOutputError, 2},
      {{Call::Unlinkat, "stuck", EPERM}, "top/sub/stuck", kAccessDenied, 2},
      {{Call::Unlinkat, "stuck", EBUSY}, "top/sub/stuck", kSharingViolation, 2},
      {{Call::Unlinkat, "sub", EROFS}, "top/sub", kWriteProtect, 3},
      {{Call::Openat, "sub", EMFILE}, "top/sub", kTooManyOpenFiles, 1},
      {{Call::Openat, "sub", EACCES}, "top/sub", kAccessDenied, 1},
      {{Call::Getdents, {}, EIO}, "top", kInputOutputError, 0},
      {{Call::Statx, "stuck", EIO}, nullptr, 0, 3},  // files are removed without this call
  };
  for (const auto& c : cases) {
    for (const char* const name : {"top/file", "top/sub/first", "top/sub/stuck"})
      folder.file(name);
    std::optional<ScopedFault> fault(c.fault);
    const Removal removal = removeTop();
    fault.reset();
    EXPECT_EQ(removal.files, c.files) << c.fault.error;
    EXPECT_EQ(removal.isGone, c.stays == nullptr);
    if (c.stays == nullptr) continue;
    EXPECT_THAT(progress.failures, ElementsAre(Pair(folder.path(c.stays), c.told)));
    EXPECT_TRUE(folder.has(c.stays));
    EXPECT_TRUE(removeTop().isGone);
  }
}

TEST_F(RemoveTreeTest, AStopLeavesTheRestWhole) {
  for (int i = 0; i < 100; ++i)
    folder.file("top/sub" + std::to_string(i / 10) + "/file" + std::to_string(i));
  progress.onObject = [](std::uint64_t files, std::uint64_t) { return files < 35; };
  const Removal removal = removeTop();
  EXPECT_TRUE(removal.wasStopped && !removal.isGone);
  EXPECT_EQ(removal.files, 35U);
  EXPECT_EQ(removal.folders, 3U);
  EXPECT_EQ(namesIn(folder.path("top")).size(), 7U);
  EXPECT_THAT(progress.failures, IsEmpty());
}

TEST_F(RemoveTreeTest, AFolderThatIsFilledMeanwhileGoesToo) {
  folder.folder("top/sub");
  int added = 0;
  progress.onObject = [&](std::uint64_t, std::uint64_t) {
    // `top` is already listed when a removal is reported.
    if (++added <= 4) folder.file("top/added" + std::to_string(added));
    return true;
  };
  EXPECT_TRUE(removeTop().isGone);
}

}  // namespace
}  // namespace ombrelian::platform
