#include <fcntl.h>
#include <sys/stat.h>

#include <ctime>
#include <filesystem>

#include "platform/Files.h"
#include "platform/Removal.h"
#include "platform/ShellCodes.h"
#include "platform/posix/TrashFolder.h"
#include "platform/posix/TrashRecord.h"
#include "tests/testing/OwnMounts.h"
#include "tests/testing/ScopedZone.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using namespace ombrelian::testing;
using ::testing::ElementsAre;

constexpr ErrorCode kOfBin = kShellErrorOnDestination;

/// Value after "key=" in a record.
std::string valueOf(const std::string& record, const std::string& key) {
  const auto begin = record.find("\n" + key + "=") + key.size() + 2;
  return record.substr(begin, record.find('\n', begin) - begin);
}

/// Every object in and below `path` with its kind and content, one on each line.
std::string describe(const std::filesystem::path& path) {
  if (is_symlink(path)) return "link to " + read_symlink(path).string() + "\n";
  if (!is_directory(path)) return "file of " + readFile(path) + "\n";
  std::string all = "folder\n";
  for (const std::string& name : namesIn(path))
    all += name + ": " + describe(path / name);
  return all;
}

class TrashTest : public ::testing::Test {
 protected:
  ErrorCode recycle(std::string_view name) { return RecycleObject({folder_.text(name)}, detail_); }

  /// Makes a file and recycles it.
  void recycleNew(std::string_view name, std::string_view content) {
    folder_.write(name, content);
    EXPECT_EQ(recycle(name), kSuccess) << content;
  }

  std::string bin(const std::string& below) const { return folder_.path("data/Trash/" + below); }
  void makeBin() const {
    folder_.folder("data/Trash/files");
    folder_.folder("data/Trash/info");
  }

  /// Restores the only object in the bin from the data of the bin.
  void restoreOnly() const {
    const auto records = namesIn(bin("info"));
    ASSERT_EQ(records.size(), 1U);
    const std::string name = records[0].substr(0, records[0].rfind(".trashinfo"));
    const std::string encoded = valueOf(readFile(bin("info/" + records[0])), "Path");
    std::string path;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
      const bool isCode = encoded[i] == '%';
      path += isCode ? char(std::stoi(encoded.substr(i + 1, 2), nullptr, 16)) : encoded[i];
      if (isCode) i += 2;
    }
    ASSERT_EQ(rename(bin("files/" + name).c_str(), path.c_str()), 0) << name << " to " << path;
    ASSERT_EQ(unlink(bin("info/" + records[0]).c_str()), 0);
  }

  const TestFolder folder_;
  const ScopedVariable data_{"XDG_DATA_HOME", folder_.path("data")};
  Text detail_;
};

TEST_F(TrashTest, EveryKindOfObjectCanBePutBackWholeByTheRecords) {
  folder_.folder("all/folder/empty");
  folder_.write("all/folder/inner", "inner");
  folder_.symlink("all/folder/out", folder_.path());
  folder_.symlink("all/link", "../all");
  folder_.symlink("all/dangling", "nowhere");
  for (const std::string& name : {std::string("caf\xE9\x80"), std::string(255, 'x'),
                                  std::string("100%41 \"quoted\"\nPath=else # \\")})
    folder_.write("all/" + name, "content of " + name);
  const std::string before = describe(folder_.path("all"));
  for (const std::string& name : namesIn(folder_.path("all"))) {
    ASSERT_EQ(recycle("all/" + name), kSuccess) << name;
    EXPECT_THAT(namesIn(folder_.path("all")), ::testing::Not(::testing::Contains(name)));
    restoreOnly();
  }
  EXPECT_EQ(describe(folder_.path("all")), before);
}

TEST_F(TrashTest, RecordTellsLocalTimeAndBinIsPrivate) {
  const ScopedZone zone("XXX-11:30");
  recycleNew("a", "");
  struct tm local = {};
  local.tm_isdst = -1;
  const std::string date = valueOf(readFile(bin("info/a.trashinfo")), "DeletionDate");
  ASSERT_NE(strptime(date.c_str(), "%Y-%m-%dT%H:%M:%S", &local), nullptr) << date;
  EXPECT_NEAR(double(mktime(&local)), double(time(nullptr)), 30);
  for (const char* part : {"", "/files", "/info"})
    EXPECT_EQ(folder_.modeOf("data/Trash" + std::string(part)) & 077, 0U) << part;
}

TEST_F(TrashTest, WhatIsInTheBinIsNeverReplaced) {
  for (const bool canPromise : {true, false}) {
    const ScopedFault old({.call = Call::Renameat2, .error = EINVAL, .times = canPromise ? 0 : 99});
    std::filesystem::remove_all(bin(""));
    folder_.write("data/Trash/files/note.txt", "without a record");
    folder_.write("data/Trash/info/note.2.txt.trashinfo", "without an object");
    for (const char* content : {"first", "second"})
      recycleNew("note.txt", content);
    EXPECT_EQ(describe(bin("files")),
              "folder\nnote.3.txt: file of first\nnote.4.txt: file of second\n"
              "note.txt: file of without a record\n");
    EXPECT_THAT(namesIn(bin("info")), ElementsAre("note.2.txt.trashinfo", "note.3.txt.trashinfo",
                                                  "note.4.txt.trashinfo"));
  }
}

TEST_F(TrashTest, ManyOfOneNameFindAPlace) {
  folder_.file("data/Trash/files/a");
  for (int number = 2; number < 100; ++number)
    folder_.file("data/Trash/files/a." + std::to_string(number));
  recycleNew("a", "one more");
  EXPECT_EQ(namesIn(bin("files")).size(), 100U);
}

TEST_F(TrashTest, FailureLeavesTheObjectAndNoRecord) {
  const struct {
    Fault fault;
    ErrorCode code;
  } cases[] = {
      {{.call = Call::Mkdirat, .name = "Trash", .error = EROFS}, kOfBin | kWriteProtect},
      {{.call = Call::Mkdirat, .name = "info", .error = EDQUOT}, kOfBin | kQuotaExceeded},
      {{.call = Call::Openat, .name = ".trashinfo", .error = ENOSPC}, kOfBin | kDiskFull},
      {{.call = Call::Write, .error = ENOSPC}, kOfBin | kDiskFull},
      {{.call = Call::Close, .error = EIO}, kOfBin | kInputOutputError},
      {{.call = Call::Renameat2, .error = ENOSPC}, kOfBin | kDiskFull},
      {{.call = Call::Renameat2, .error = ENOENT}, kOfBin | kFileNotFound},
      {{.call = Call::Renameat2, .error = EEXIST}, kOfBin | kAlreadyExists},
      {{.call = Call::Renameat2, .error = EACCES}, kShellSourceDenied},
      {{.call = Call::Renameat2, .error = EBUSY}, kSharingViolation},
  };
  folder_.write("object", "kept");
  for (const auto& c : cases) {
    {
      const ScopedFault fault(c.fault);
      EXPECT_EQ(recycle("object"), c.code);
      EXPECT_GT(fault.hits(), 0) << c.code;
    }
    const bool isOfBin = (c.code & kOfBin) != 0;
    EXPECT_EQ(toBytes(detail_), isOfBin ? folder_.path("data/Trash") : "") << c.code;
    EXPECT_EQ(readFile(folder_.path("object")), "kept") << c.code;
    EXPECT_TRUE(!folder_.has("data/Trash/info") || namesIn(bin("info")).empty()) << c.code;
  }
}

TEST_F(TrashTest, BinOfAnotherOrBehindALinkIsRefused) {
  const std::function<void()> asFile = [&] { folder_.file("data/Trash"); };
  const std::function<void()> asAnothers = [&] {
    makeBin();
    if (chown(bin("").c_str(), 12345, 12345) != 0) folder_.chmod("data/Trash/files", 0500);
  };
  std::vector<std::function<void()>> cases = {asFile, asAnothers};
  for (const char* const part : {"data/Trash", "data/Trash/files", "data/Trash/info"}) {
    cases.push_back([&, part] {
      makeBin();
      folder_.rename(part, "elsewhere");
      folder_.symlink(part, folder_.path("elsewhere"));
    });
  }
  folder_.file("object");
  for (const auto& prepare : cases) {
    std::filesystem::remove_all(folder_.path("data"));
    std::filesystem::remove_all(folder_.path("elsewhere"));
    prepare();
    EXPECT_TRUE((recycle("object") & kOfBin) != 0) << &prepare - cases.data();
    EXPECT_EQ(toBytes(detail_), folder_.path("data/Trash"));
    EXPECT_TRUE(folder_.has("object"));
  }
}

TEST_F(TrashTest, WhatMayNotGoIsRefused) {
  recycleNew("gone", "");
  EXPECT_EQ(recycle("gone"), kFileNotFound);
  EXPECT_EQ(recycle("nowhere/gone"), kPathNotFound);
  EXPECT_EQ(RecycleObject({u"/"}, detail_), kShellSourceIsRoot);
  EXPECT_EQ(RecycleObject({u"/proc"}, detail_), kIsMountPoint);
  for (const char* name : {"data", "data/Trash"}) {
    EXPECT_EQ(recycle(name), kShellBinInSource) << name;
    EXPECT_EQ(toBytes(detail_), folder_.path("data/Trash"));
  }
  for (const char* name : {"data/Trash/files", "data/Trash/files/gone"})
    EXPECT_EQ(recycle(name), kShellSourceInBin) << name;
  EXPECT_EQ(namesIn(bin("files")).size(), 1U);
}

TEST_F(TrashTest, AnotherObjectInThePlaceIsNotTouched) {
  folder_.write("way/sub/object", "shown");
  FindData data;
  ASSERT_EQ(FindFirstFileW(folder_.text("way/sub/object"), data), kSuccess);
  const ShownObject shown = {folder_.text("way/sub/object"), folder_.text().size(), data.identity};
  folder_.rename("way/sub/object", "shown");
  folder_.write("way/sub/object", "another");
  EXPECT_EQ(RecycleObject(shown, detail_), kObjectReplaced);
  folder_.rename("shown", "way/sub/object");
  folder_.rename("way/sub", "moved");
  folder_.symlink("way/sub", folder_.path("moved"));
  EXPECT_EQ(RecycleObject(shown, detail_), kObjectReplaced);
  EXPECT_EQ(readFile(folder_.path("moved/object")), "shown");
}

TEST_F(TrashTest, WhatIsSwappedAtTheLastMomentIsPutBack) {
  folder_.write("object", "shown");
  const ScopedFault swap({.call = Call::Renameat2, .times = 1, .meanwhile = [&] {
                            folder_.rename("object", "shown");
                            folder_.write("object", "another");
                          }});
  EXPECT_EQ(recycle("object"), kObjectReplaced);
  EXPECT_EQ(swap.hits(), 1);
  EXPECT_EQ(readFile(folder_.path("object")), "another");
  EXPECT_TRUE(namesIn(bin("files")).empty() && namesIn(bin("info")).empty());
}

/// Makes an object so deep below `base` that its path is too long for the kernel; returns the path.
std::string deepObject(const TestFolder& folder, const std::string& base) {
  const std::string step(200, 'd');
  const int fd = folder.chain(step, 30, base);
  close(openat(fd, "object", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  close(fd);
  std::string path = base;
  for (int level = 0; level < 30; ++level)
    path += "/" + step;
  return path + "/object";
}

TEST_F(TrashTest, PathsBeyondWhatTheKernelTakesAreKept) {
  folder_.folder("base");
  const std::string name = deepObject(folder_, "base");
  ASSERT_EQ(recycle(name), kSuccess);
  EXPECT_EQ(valueOf(readFile(bin("info/object.trashinfo")), "Path"), folder_.path(name));
}

TEST_F(TrashTest, OtherMountsHaveTheirOwnBins) {
  const std::string own = "/.Trash-" + std::to_string(geteuid());
  for (const bool isSameDevice : {false, true}) {
    const std::string top = isSameDevice ? "bound" : "memory";
    folder_.folder(top);
    folder_.folder("behind");
    runWithOwnMounts([&] {
      const std::string path = folder_.path(top);
      mountAt(path, isSameDevice ? folder_.path("behind") : "");
      folder_.folder(top + "/a");
      folder_.symlink(top + "-link", top + "/a");
      recycleNew(top + "/a/50%", "");
      EXPECT_EQ(folder_.has("data"), isSameDevice);
      folder_.folder("data");
      recycleNew(top + "-link/behind a link", "");
      const std::string deep = deepObject(folder_, top + "/a");
      EXPECT_EQ(recycle(deep), kSuccess);
      const auto pathIn = [&](const std::string& record) {
        return valueOf(readFile(path + own + "/info/" + record + ".trashinfo"), "Path");
      };
      EXPECT_EQ(pathIn("50%"), "a/50%25");
      EXPECT_EQ(pathIn("behind a link"), "a/behind%20a%20link");
      EXPECT_EQ(pathIn("object"), deep.substr(top.size() + 1));
      EXPECT_EQ(namesIn(path + own + "/files").size(), 3U);
      EXPECT_EQ(recycle(top + own), kShellBinInSource);
      EXPECT_EQ(toBytes(detail_), path + own);
      EXPECT_TRUE(!isSameDevice || namesIn(bin("info")).empty());
      EXPECT_EQ(folder_.has("data/Trash"), isSameDevice);
    });
  }
}

TEST_F(TrashTest, FolderWithAMountInItStays) {
  folder_.folder("outer/inner/mounted");
  runWithOwnMounts([&] {
    mountAt(folder_.path("outer/inner/mounted"));
    folder_.file("outer/inner/mounted/file");
    for (const char* name : {"outer", "outer/inner", "outer/inner/mounted"})
      EXPECT_EQ(recycle(name), kIsMountPoint) << name;
    EXPECT_TRUE(folder_.has("outer/inner/mounted/file"));
  });
}

TEST(TrashFolderTest, TopFolderHasASafeSharedBinOrThisUsersOwn) {
  const std::string user = std::to_string(geteuid());
  const struct {
    const char* what;
    std::string folder, sticky, link;  // names to make; the link points to "other" beside it
    bool isShared = false;
    ErrorCode code = kSuccess;
    std::string open = {};  // others may write to it
  } cases[] = {
      {"nothing there", "", "", ""},
      {"not sticky", ".Trash", "", ""},
      {"sticky", ".Trash", ".Trash", "", true},
      {"link to a sticky folder", "other", "other", ".Trash"},
      {"link in the place of this user's part", ".Trash/other", ".Trash", ".Trash/" + user},
      {"link in the place of this user's own", "other", "", ".Trash-" + user, false,
       kShellErrorOnDestination | kNotADirectory},
      {"others may write to this user's own", ".Trash-" + user, "", "", false,
       kShellErrorOnDestination | kAccessDenied, ".Trash-" + user},
      {"others may write to the files", ".Trash-" + user + "/files", "", "", false,
       kShellErrorOnDestination | kAccessDenied, ".Trash-" + user + "/files"},
      {"others may write to this user's part", ".Trash/" + user, ".Trash", "", false, kSuccess,
       ".Trash/" + user},
  };
  for (const auto& c : cases) {
    const TestFolder top;
    top.folder(c.folder);
    if (!c.sticky.empty()) top.chmod(c.sticky, 01777);
    if (!c.open.empty()) top.chmod(c.open, 0777);
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
      {euros(83) + ".txt", 1, euros(80) + ".txt"},  // the name has 241 bytes at most
      {euros(83), 10, euros(80) + ".10"},
      {std::string(255, '\x80'), 1, std::string(241, '\x80')},  // not UTF-8
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
