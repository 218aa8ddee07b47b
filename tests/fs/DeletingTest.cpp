#include "fs/Deleting.h"

#include <errno.h>
#include <gtest/gtest.h>

#include "fs/z_Filesystem.h"
#include "tests/testing/Faults.h"
#include "tests/testing/ScopedUser.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

TEST(DeletingTest, WhatIsGoneCountsAndWhatStaysIsTold) {
  const TestFolder folder;
  folder.file("file", 2);
  EXPECT_FALSE(xDeleteFile_W({folder.text("missing")}, false).has_value());
  {
    const ScopedFault denied({Call::Unlinkat, "file", EACCES});
    const Failure failure = xDeleteFile_W({folder.text("file")}, false);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->number, std::int32_t(platform::kAccessDenied));
    EXPECT_TRUE(failure->text.starts_with(folder.text("file") + u" (#5 - "))
        << toBytes(failure->text);
  }
  EXPECT_FALSE(xDeleteFile_W({folder.text("file")}, false).has_value());
  EXPECT_FALSE(folder.has("file"));
}

TEST(DeletingTest, AFolderThatStaysTellsItselfAndWhatHoldsIt) {
  const TestFolder folder;
  folder.file("top/sub/stuck");
  for (int i = 0; i < 25; ++i)
    folder.file("many/stuck" + std::to_string(i));
  const ScopedFault fault({Call::Unlinkat, "stuck", EIO});
  FolderDeletion deletion = xDeleteFolder_W({folder.text("top")});
  EXPECT_FALSE(deletion.isGone);
  EXPECT_EQ(toBytes(deletion.errorText), folder.path("top") + " (#145 - Directory not empty) " +
                                             folder.path("top/sub/stuck") +
                                             " (#1117 - Input/output error)");
  deletion = xDeleteFolder_W({folder.text("many")});
  EXPECT_TRUE(deletion.errorText.ends_with(u" und 5 weitere")) << toBytes(deletion.errorText);
}

TEST(DeletingTest, WhatCannotBeAskedAboutIsNotTakenForGone) {
  const TestFolder folder;
  folder.file("top/file");
  const ScopedFault fault({Call::Statx, "top", EACCES});
  EXPECT_FALSE(xDeleteFolder_W({folder.text("top")}).isGone);
  EXPECT_TRUE(xDeleteFile_W({folder.text("top")}, true).has_value());
  EXPECT_TRUE(folder.has("top/file"));
}

TEST(DeletingTest, RightsThatCannotBeHadAreToldBesideTheFirstError) {
  const ScopedUser user;
  const TestFolder folder;
  folder.file("closed/file");
  folder.chmod("closed", 0555);
  EXPECT_TRUE(xDeleteFile_W({folder.text("closed/file")}, false).has_value());
  {
    const ScopedFault fault({Call::Fchmodat, {}, EPERM});
    const Failure failure = xDeleteFile_W({folder.text("closed/file")}, true);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(toBytes(failure->text), "#5 - Permission denied SetFA: " +
                                          folder.path("closed/file") + " (#5 - Permission denied)");
  }
  EXPECT_FALSE(xDeleteFile_W({folder.text("closed/file")}, true).has_value());
  EXPECT_FALSE(folder.has("closed/file"));
  EXPECT_EQ(folder.modeOf("closed"), 0555U);
}

TEST(DeletingTest, AFolderThatOthersRemovedIsGone) {
  const TestFolder folder;
  folder.folder("top");
  // Somebody else is quicker between the look and the removal.
  const ScopedFault fault({Call::Openat, "top", EIO, 0, 1});
  const FolderDeletion deletion = xDeleteFolder_W({folder.text("top")});
  EXPECT_FALSE(deletion.isGone);
  EXPECT_TRUE(RemoveDirectoryForce_W({folder.text("top")}));
  EXPECT_FALSE(RemoveDirectoryForce_W({folder.text("top")}));
  EXPECT_TRUE(xDeleteFolder_W({folder.text("top")}).isGone);
}

}  // namespace
}  // namespace ombrelian
