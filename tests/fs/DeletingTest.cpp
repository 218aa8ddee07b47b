#include "fs/Deleting.h"

#include "fs/Recycling.h"
#include "fs/z_Filesystem.h"
#include "tests/testing/Testing.h"

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
  folder.folder("empty");
  EXPECT_TRUE(RemoveDirectoryForce_W({folder.text("empty")}));
  EXPECT_FALSE(RemoveDirectoryForce_W({folder.text("empty")}));
  EXPECT_TRUE(xDeleteFolder_W({folder.text("empty")}).isGone);
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

TEST(RecyclingTest, FileAndFolderGoEitherWayAndWhatIsGoneCounts) {
  const TestFolder folder;
  const ScopedVariable data("XDG_DATA_HOME", folder.path("data"));
  for (const bool recycle : {true, false}) {
    folder.file("folder/inner");
    folder.file("file", 1);
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(xDeleteFolderSHwide({folder.text("folder")}, recycle).code, 0U);
      EXPECT_EQ(xDeleteFileSHwide({folder.text("file")}, recycle).code, 0U);
    }
    EXPECT_FALSE(folder.has("folder") || folder.has("file"));
  }
  EXPECT_TRUE(xExistFile_W(folder.text("data/Trash/files/folder/inner")));
  EXPECT_EQ(testing::namesIn(folder.path("data/Trash/files")).size(), 2U);
}

TEST(RecyclingTest, WhatStaysIsTold) {
  const TestFolder folder;
  folder.file("folder/inner");
  const ScopedFault busy({.call = Call::Unlinkat, .name = "inner", .error = EBUSY});
  for (const ShellResult& result : {xDeleteFileSHwide({folder.text("folder/inner")}, false),
                                    xDeleteFolderSHwide({folder.text("folder")}, false)}) {
    EXPECT_EQ(result.code, platform::kSharingViolation);
    EXPECT_EQ(toBytes(result.detail), folder.path("folder/inner"));
  }
}

TEST(RecyclingTest, FullBinIsNamedWithTheReasonAndTheCode) {
  const TestFolder folder;
  const ScopedVariable data("XDG_DATA_HOME", folder.path("data"));
  folder.file("file");
  const ScopedFault full({.call = Call::Write, .error = ENOSPC});
  const ShellResult result = xDeleteFileSHwide({folder.text("file")}, true);
  EXPECT_EQ(result.code, platform::kShellErrorOnDestination | platform::kDiskFull);
  const std::string text = toBytes(recyclingErrorText(result));
  EXPECT_TRUE(text.starts_with("No space left on device ")) << text;
  EXPECT_NE(text.find("'" + folder.path("data/Trash") + "'"), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with(" (65648)")) << text;
}

TEST(RecyclingTest, CodesOfTheShellComeBeforeThoseOfTheSystem) {
  const std::pair<platform::ErrorCode, const char*> cases[] = {
      {0x74, "A root directory cannot be moved"},
      {0xB7, "MAX_PATH was exceeded during the operation. - 183"},
      {0x402, "An unknown error occurred. This is typically due to an invalid path in the source "},
      {0x10000, "An unspecified error occurred on the destination. - 65536"},
      {0x10074, "Destination is a root directory and cannot be renamed. - 65652"},
      {0x100B7, "File exists - 65719"},
      {platform::kAccessDenied, "Permission denied - 5"},
  };
  for (const auto& [code, beginning] : cases)
    EXPECT_EQ(toBytes(xGetErrorTextFromSH(code, true)).find(beginning), 0U) << code;
  EXPECT_FALSE(xGetErrorTextFromSH(0x75, false).ends_with(u"117"));
}

}  // namespace
}  // namespace ombrelian
