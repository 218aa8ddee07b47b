#include "fs/Deleting.h"

#include <errno.h>
#include <gtest/gtest.h>

#include "fs/z_Filesystem.h"
#include "tests/testing/Faults.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using testing::Call;
using testing::ScopedFault;
using testing::TestFolder;

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
  EXPECT_FALSE(xExistFile_W(folder.text("file")));
}

}  // namespace
}  // namespace ombrelian
