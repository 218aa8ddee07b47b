#include "fs/Recycling.h"

#include <errno.h>
#include <gtest/gtest.h>

#include "fs/z_Filesystem.h"
#include "tests/testing/Faults.h"
#include "tests/testing/ScopedVariable.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

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
    EXPECT_FALSE(xExistFolder_W(folder.text("folder")));
    EXPECT_FALSE(xExistFile_W(folder.text("file")));
  }
  EXPECT_TRUE(xExistFile_W(folder.text("data/Trash/files/folder/inner")));
  EXPECT_EQ(testing::namesIn(folder.path("data/Trash/files")).size(), 2U);
}

TEST(RecyclingTest, WhatStaysIsTold) {
  const TestFolder folder;
  folder.file("folder/inner");
  const ScopedFault busy({.call = Call::Unlinkat, .name = "inner", .error = EBUSY});
  const Text inner = folder.text("folder/inner");
  for (const ShellResult& result :
       {xDeleteFileSHwide({inner}, false), xDeleteFolderSHwide({folder.text("folder")}, false)}) {
    EXPECT_EQ(result.code, platform::kSharingViolation);
    EXPECT_EQ(toBytes(result.detail), toBytes(inner));
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
  const struct {
    platform::ErrorCode code;
    const char* text;  // the beginning
  } cases[] = {
      {0x74, "A root directory cannot be moved"},
      {0xB7, "MAX_PATH was exceeded during the operation. - 183"},
      {0x402,
       "An unknown error occurred. This is typically due to an invalid path in the source "
       "or destination. - 1026"},
      {0x10000, "An unspecified error occurred on the destination. - 65536"},
      {0x10074, "Destination is a root directory and cannot be renamed. - 65652"},
      {0x100B7, "File exists - 65719"},
      {platform::kAccessDenied, "Permission denied - 5"},
  };
  for (const auto& test : cases) {
    const std::string text = toBytes(xGetErrorTextFromSH(test.code, true));
    EXPECT_TRUE(text.starts_with(test.text)) << text;
  }
  EXPECT_FALSE(xGetErrorTextFromSH(0x75, false).ends_with(u"117"));
}

}  // namespace
}  // namespace ombrelian
