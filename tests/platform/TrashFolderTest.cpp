#include "platform/posix/TrashFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/Removal.h"
#include "platform/posix/TrashRecord.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using testing::TestFolder;

TEST(TrashFolderTest, TopFolderHasASafeSharedBinOrThisUsersOwn) {
  const std::string user = std::to_string(geteuid());
  const struct {
    const char* what;
    std::string folder, sticky, link;  // made; the link leads to "other" beside it
    bool isShared = false;
    ErrorCode code = kSuccess;
  } cases[] = {
      {"nothing there", "", "", ""},
      {"not sticky", ".Trash", "", ""},
      {"sticky", ".Trash", ".Trash", "", true},
      {"link to a sticky folder", "other", "other", ".Trash"},
      {"link in the place of this user's part", ".Trash/other", ".Trash", ".Trash/" + user},
      {"link in the place of this user's own", "other", "", ".Trash-" + user, false,
       kShellErrorOnDestination | kNotADirectory},
  };
  for (const auto& c : cases) {
    const TestFolder top;
    top.folder(c.folder);
    if (!c.sticky.empty()) top.chmod(c.sticky, 01777);
    if (!c.link.empty()) top.symlink(c.link, "other");
    const Descriptor folder(open(top.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    Trash trash;
    EXPECT_EQ(openTopTrash(folder.get(), top.path(), trash), c.code) << c.what;
    const std::string bin = (c.isShared ? ".Trash/" : ".Trash-") + user;
    EXPECT_EQ(trash.path, top.path(bin)) << c.what;
    EXPECT_EQ(top.has(bin + "/info"), c.code == kSuccess) << c.what;
  }
}

TEST(TrashFolderTest, NamesInTheBinAreShortenedBetweenCharacters) {
  const auto euros = [](int count) {
    std::string text;
    while (count-- > 0)
      text += "\xE2\x82\xAC";
    return text;
  };
  const struct {
    std::string name;
    std::uint64_t number;
    std::string inBin;
  } cases[] = {
      {"a.tar.gz", 1, "a.tar.gz"},
      {"a.tar.gz", 12, "a.tar.12.gz"},
      {".profile", 2, ".profile.2"},
      {"a." + std::string(31, 'x'), 2, "a.2." + std::string(31, 'x')},
      {"a." + std::string(32, 'x'), 2, "a." + std::string(32, 'x') + ".2"},
      {std::string(255, 'x'), 1, std::string(245, 'x')},
      {euros(83) + ".txt", 1, euros(80) + ".txt"},  // 241 bytes are left for the name
      {euros(83), 10, euros(80) + ".10"},
      {std::string(255, '\x80'), 1, std::string(241, '\x80')},  // no UTF-8
  };
  for (const auto& c : cases)
    EXPECT_EQ(trashName(c.name, c.number), c.inBin) << c.name;
}

TEST(TrashFolderTest, ARecordIsOneLineAKeyWhateverTheName) {
  EXPECT_EQ(trashRecord("/a b%\n\xE4~_-.Z9", {2026, 3, 5, 0, 4, 9}),
            "[Trash Info]\nPath=/a%20b%25%0A%E4~_-.Z9\nDeletionDate=2026-03-05T00:04:09\n");
}

}  // namespace
}  // namespace ombrelian::platform
