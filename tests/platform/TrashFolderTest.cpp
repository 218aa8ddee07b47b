#include "platform/posix/TrashFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "platform/Removal.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian::platform {
namespace {

using testing::TestFolder;

TEST(TrashFolderTest, TopFolderHasASafeSharedBinOrThisUsersOwn) {
  struct Case {
    const char* what;
    std::function<void(const TestFolder&, const std::string& user)> prepare;
    bool isShared;
    ErrorCode code;
  };
  const auto sticky = [](const std::string& path) { EXPECT_EQ(chmod(path.c_str(), 01777), 0); };
  const Case cases[] = {
      {"nothing there", [](auto&, auto&) {}, false, kSuccess},
      {"not sticky", [](auto& top, auto&) { top.folder(".Trash"); }, false, kSuccess},
      {"sticky",
       [&](auto& top, auto&) {
         top.folder(".Trash");
         sticky(top.path(".Trash"));
       },
       true, kSuccess},
      {"link to a sticky folder",
       [&](auto& top, auto&) {
         top.folder("other");
         sticky(top.path("other"));
         top.symlink(".Trash", "other");
       },
       false, kSuccess},
      {"link in the place of this user's part",
       [&](auto& top, const auto& user) {
         top.folder(".Trash/other");
         sticky(top.path(".Trash"));
         top.symlink(".Trash/" + user, "other");
       },
       false, kSuccess},
      {"link in the place of this user's own",
       [&](auto& top, const auto& user) {
         top.folder("other");
         top.symlink(".Trash-" + user, "other");
       },
       false, kShellErrorOnDestination | kNotADirectory},
  };
  const std::string user = std::to_string(geteuid());
  for (const Case& test : cases) {
    const TestFolder top;
    test.prepare(top, user);
    const Descriptor folder(open(top.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    Trash trash;
    EXPECT_EQ(openTopTrash(folder.get(), top.path(), trash), test.code) << test.what;
    const std::string path = top.path((test.isShared ? ".Trash/" : ".Trash-") + user);
    EXPECT_EQ(trash.path, path) << test.what;
    EXPECT_EQ(access((path + "/info").c_str(), F_OK) == 0, test.code == kSuccess) << test.what;
  }
}

}  // namespace
}  // namespace ombrelian::platform
