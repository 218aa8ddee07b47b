#include <errno.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>

#include "platform/Removal.h"
#include "platform/ShellCodes.h"
#include "platform/posix/Stat.h"
#include "tests/testing/Faults.h"
#include "tests/testing/ScopedVariable.h"
#include "tests/testing/ScopedZone.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian::platform {
namespace {

using testing::Call;
using testing::Fault;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::readFile;
using testing::ScopedFault;
using testing::ScopedVariable;
using testing::ScopedZone;
using testing::TestFolder;
using ::testing::UnorderedElementsAre;

constexpr ErrorCode kOfBin = kShellErrorOnDestination;

void write(const std::string& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

/// Value behind "key=" in a record.
std::string valueOf(const std::string& record, const std::string& key) {
  const auto at = record.find("\n" + key + "=");
  if (at == std::string::npos) return {};
  const auto begin = at + key.size() + 2;
  return record.substr(begin, record.find('\n', begin) - begin);
}

std::string percentDecoded(const std::string& text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    decoded += text[i] != '%' ? text[i] : char(std::stoi(text.substr(i + 1, 2), nullptr, 16));
    if (text[i] == '%') i += 2;
  }
  return decoded;
}

/// Every object in and below `path` with its kind and content, one a line.
std::string describe(const std::filesystem::path& path) {
  if (is_symlink(path)) return "link to " + read_symlink(path).string() + "\n";
  if (!is_directory(path)) return "file of " + readFile(path) + "\n";
  std::string all = "folder\n";
  auto names = namesIn(path);
  std::sort(names.begin(), names.end());
  for (const std::string& name : names)
    all += name + ": " + describe(path / name);
  return all;
}

FileIdentity identityOf(const std::string& path) {
  FindData data;
  EXPECT_EQ(readFindData(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, 0, data), 0);
  return data.identity;
}

class TrashTest : public ::testing::Test {
 protected:
  ErrorCode recycle(std::string_view name) { return RecycleObject({folder_.text(name)}, detail_); }

  /// Makes a file and recycles it.
  void recycleNew(std::string_view name, std::string_view content) {
    write(folder_.path(name), content);
    EXPECT_EQ(recycle(name), kSuccess) << content;
  }

  std::string bin(const std::string& below) const { return folder_.path("data/Trash/" + below); }
  void makeBin() const {
    folder_.folder("data/Trash/files");
    folder_.folder("data/Trash/info");
  }

  /// Puts the only object in the bin back by what the bin itself tells.
  void restoreOnly() const {
    const auto records = namesIn(bin("info"));
    ASSERT_EQ(records.size(), 1U);
    const std::string name = records[0].substr(0, records[0].rfind(".trashinfo"));
    const std::string path = percentDecoded(valueOf(readFile(bin("info/" + records[0])), "Path"));
    ASSERT_EQ(rename(bin("files/" + name).c_str(), path.c_str()), 0) << name << " to " << path;
    ASSERT_EQ(unlink(bin("info/" + records[0]).c_str()), 0);
  }

  const TestFolder folder_;
  const ScopedVariable data_{"XDG_DATA_HOME", folder_.path("data")};
  Text detail_;
};

TEST_F(TrashTest, EveryKindOfObjectCanBePutBackWholeByTheRecords) {
  std::string longest = "x";
  while (longest.size() < 255)
    longest += "\xC3\xA4";
  folder_.folder("all/folder/empty");
  write(folder_.path("all/folder/inner"), "inner");
  folder_.symlink("all/folder/out", folder_.path());
  folder_.symlink("all/link", "../all");
  folder_.symlink("all/dangling", "nowhere");
  for (const std::string& name :
       {std::string("plain.txt"), std::string("caf\xE9\x80"), longest, std::string(".hidden"),
        std::string("100%41 \"quoted\"\nPath=else # \\")}) {
    write(folder_.path("all/" + name), "content of " + name);
  }
  const std::string before = describe(folder_.path("all"));
  for (const std::string& name : namesIn(folder_.path("all"))) {
    ASSERT_EQ(recycle("all/" + name), kSuccess) << name;
    EXPECT_THAT(namesIn(folder_.path("all")), ::testing::Not(::testing::Contains(name)));
    restoreOnly();
  }
  EXPECT_EQ(describe(folder_.path("all")), before);
}

TEST_F(TrashTest, LongNamesAreShortenedBetweenCharacters) {
  std::string name;
  while (name.size() < 249)
    name += "\xE2\x82\xAC";
  for (const int number : {1, 2})
    recycleNew(name + ".txt", std::to_string(number));
  for (const std::string& inBin : namesIn(bin("files"))) {
    EXPECT_TRUE(inBin.ends_with(".txt")) << inBin;
    for (const char16_t unit : fromBytes(inBin))
      EXPECT_TRUE(unit < 0xD800 || unit > 0xDFFF) << inBin;
  }
}

TEST_F(TrashTest, RecordTellsLocalTimeAndBinIsPrivate) {
  const ScopedZone zone("XXX-11:30");
  recycleNew("a", "");
  struct tm local = {};
  const std::string date = valueOf(readFile(bin("info/a.trashinfo")), "DeletionDate");
  const char* const end = strptime(date.c_str(), "%Y-%m-%dT%H:%M:%S", &local);
  ASSERT_TRUE(end != nullptr && *end == '\0' && date.size() == 19) << date;
  local.tm_isdst = -1;
  EXPECT_NEAR(double(mktime(&local)), double(time(nullptr)), 30);
  for (const char* part : {"", "files", "info"}) {
    struct stat told;
    ASSERT_EQ(stat(bin(part).c_str(), &told), 0);
    EXPECT_EQ(told.st_mode & 077, 0U) << part;
  }
}

TEST_F(TrashTest, WhatIsInTheBinIsNeverReplaced) {
  for (const bool canPromise : {true, false}) {
    const ScopedFault old({.call = Call::Renameat2, .error = EINVAL, .times = canPromise ? 0 : 99});
    std::filesystem::remove_all(bin(""));
    makeBin();
    write(bin("files/note.txt"), "without a record");
    write(bin("info/note.2.txt.trashinfo"), "without an object");
    for (const char* content : {"first", "second"})
      recycleNew("note.txt", content);
    EXPECT_EQ(describe(bin("files")),
              "folder\nnote.3.txt: file of first\nnote.4.txt: file of second\n"
              "note.txt: file of without a record\n");
    EXPECT_THAT(namesIn(bin("info")),
                UnorderedElementsAre("note.2.txt.trashinfo", "note.3.txt.trashinfo",
                                     "note.4.txt.trashinfo"));
  }
}

TEST_F(TrashTest, ManyOfOneNameFindAPlace) {
  makeBin();
  write(bin("files/a"), "");
  for (int number = 2; number < 100; ++number)
    write(bin("files/a." + std::to_string(number)), "");
  recycleNew("a", "one more");
  EXPECT_EQ(namesIn(bin("files")).size(), 100U);
}

TEST_F(TrashTest, FailureLeavesTheObjectAndNoRecord) {
  struct Case {
    Fault fault;
    ErrorCode code;
  };
  const Case cases[] = {
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
  write(folder_.path("object"), "kept");
  for (const Case& test : cases) {
    ErrorCode code = kSuccess;
    {
      const ScopedFault fault(test.fault);
      code = recycle("object");
      EXPECT_GT(fault.hits(), 0) << test.code;
    }
    EXPECT_EQ(code, test.code);
    const bool isOfBin = (test.code & kOfBin) != 0;
    EXPECT_EQ(toBytes(detail_), isOfBin ? folder_.path("data/Trash") : "") << test.code;
    EXPECT_EQ(readFile(folder_.path("object")), "kept") << test.code;
    if (access(bin("info").c_str(), F_OK) == 0) {
      EXPECT_THAT(namesIn(bin("info")), IsEmpty()) << test.code;
    }
  }
}

TEST_F(TrashTest, BinOfAnotherOrBehindALinkIsRefused) {
  const auto asLink = [&](const std::string& part) {
    makeBin();
    std::filesystem::rename(bin(part), folder_.path("elsewhere"));
    std::filesystem::create_directory_symlink(
        folder_.path("elsewhere"), part.empty() ? folder_.path("data/Trash") : bin(part));
  };
  const std::function<void()> cases[] = {
      [&] { asLink(""); },
      [&] { asLink("files"); },
      [&] { asLink("info"); },
      [&] { folder_.file("data/Trash"); },
      [&] {
        makeBin();
        if (geteuid() == 0) {
          EXPECT_EQ(chown(bin("").c_str(), 12345, 12345), 0);
        } else {
          EXPECT_EQ(chmod(bin("files").c_str(), 0500), 0);
        }
      },
  };
  folder_.file("object");
  for (const auto& prepare : cases) {
    std::filesystem::remove_all(folder_.path("data"));
    std::filesystem::remove_all(folder_.path("elsewhere"));
    prepare();
    EXPECT_TRUE((recycle("object") & kOfBin) != 0) << &prepare - cases;
    EXPECT_EQ(toBytes(detail_), folder_.path("data/Trash"));
    EXPECT_EQ(access(folder_.path("object").c_str(), F_OK), 0);
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
  for (const char* name : {"data/Trash/files", "data/Trash/files/gone"}) {
    EXPECT_EQ(recycle(name), kShellSourceInBin) << name;
  }
  EXPECT_EQ(namesIn(bin("files")).size(), 1U);
}

TEST_F(TrashTest, AnotherObjectInThePlaceIsNotTouched) {
  folder_.folder("way/sub");
  write(folder_.path("way/sub/object"), "shown");
  const ShownObject shown = {folder_.text("way/sub/object"), folder_.text().size(),
                             identityOf(folder_.path("way/sub/object"))};
  std::filesystem::rename(folder_.path("way/sub/object"), folder_.path("shown"));
  write(folder_.path("way/sub/object"), "another");
  EXPECT_EQ(RecycleObject(shown, detail_), kObjectReplaced);
  std::filesystem::rename(folder_.path("shown"), folder_.path("way/sub/object"));
  std::filesystem::rename(folder_.path("way/sub"), folder_.path("moved"));
  folder_.symlink("way/sub", folder_.path("moved"));
  EXPECT_EQ(RecycleObject(shown, detail_), kObjectReplaced);
  EXPECT_EQ(readFile(folder_.path("moved/object")), "shown");
}

TEST_F(TrashTest, WhatIsSwappedAtTheLastMomentIsPutBack) {
  write(folder_.path("object"), "shown");
  const ScopedFault swap({.call = Call::Renameat2, .times = 1, .meanwhile = [&] {
                            std::filesystem::rename(folder_.path("object"), folder_.path("shown"));
                            write(folder_.path("object"), "another");
                          }});
  EXPECT_EQ(recycle("object"), kObjectReplaced);
  EXPECT_EQ(swap.hits(), 1);
  EXPECT_EQ(readFile(folder_.path("object")), "another");
  EXPECT_THAT(namesIn(bin("files")), IsEmpty());
  EXPECT_THAT(namesIn(bin("info")), IsEmpty());
}

/// Path of an object `levels` folders deep below `base`, made there.
std::string deepObject(const TestFolder& folder, const std::string& base, int levels) {
  const std::string step(200, 'd');
  std::string path = base;
  int fd = open(folder.path(base).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int level = 0; level < levels; ++level) {
    EXPECT_EQ(mkdirat(fd, step.c_str(), 0755), 0);
    const int inner = openat(fd, step.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    close(fd);
    fd = inner;
    path += "/" + step;
  }
  close(openat(fd, "object", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  close(fd);
  return path + "/object";
}

TEST_F(TrashTest, PathsBeyondWhatTheKernelTakesAreKept) {
  folder_.folder("base");
  const std::string name = deepObject(folder_, "base", 30);
  ASSERT_EQ(recycle(name), kSuccess);
  EXPECT_EQ(valueOf(readFile(bin("info/object.trashinfo")), "Path"), folder_.path(name));
}

/// Runs `body` in a process that alone sees the mounts it makes; false: this user may not.
template <class Body>
bool runWithOwnMounts(Body body) {
  constexpr int kNotAllowed = 77;
  const pid_t child = fork();
  if (child == 0) {
    const bool isAllowed =
        unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    if (isAllowed) body();
    _exit(!isAllowed ? kNotAllowed : ::testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kNotAllowed) return false;
  EXPECT_EQ(WEXITSTATUS(status), 0) << "see the failures above";
  return true;
}

TEST_F(TrashTest, OtherMountsHaveTheirOwnBins) {
  const std::string own = "/.Trash-" + std::to_string(geteuid());
  for (const bool isSameDevice : {false, true}) {
    const std::string top = isSameDevice ? "bound" : "memory";
    folder_.folder(top);
    folder_.folder("behind");
    const bool isAllowed = runWithOwnMounts([&] {
      const std::string path = folder_.path(top);
      const int error = isSameDevice ? mount(folder_.path("behind").c_str(), path.c_str(), nullptr,
                                             MS_BIND, nullptr)
                                     : mount("none", path.c_str(), "tmpfs", 0, nullptr);
      ASSERT_EQ(error, 0);
      folder_.folder(top + "/a");
      folder_.symlink(top + "-link", top + "/a");
      recycleNew(top + "/a/50%", "");
      EXPECT_EQ(access(folder_.path("data").c_str(), F_OK) == 0, isSameDevice);
      folder_.folder("data");
      recycleNew(top + "-link/behind a link", "");
      EXPECT_EQ(recycle(deepObject(folder_, top + "/a", 30)), kSuccess);
      const std::string infos = path + own + "/info/";
      const auto pathIn = [&](const std::string& record) {
        return valueOf(readFile(infos + record + ".trashinfo"), "Path");
      };
      EXPECT_EQ(pathIn("50%"), "a/50%25");
      EXPECT_EQ(pathIn("behind a link"), "a/behind%20a%20link");
      const std::string deep = pathIn("object");
      EXPECT_TRUE(deep.starts_with("a/ddd") && deep.ends_with("d/object")) << deep;
      EXPECT_EQ(deep.size(), std::string("a/object").size() + std::size_t(30 * 201));
      EXPECT_EQ(namesIn(path + own + "/files").size(), 3U);
      EXPECT_EQ(recycle(top + own), kShellBinInSource);
      EXPECT_EQ(toBytes(detail_), path + own);
      EXPECT_TRUE(!isSameDevice || namesIn(bin("info")).empty());
      EXPECT_EQ(access(bin("").c_str(), F_OK) == 0, isSameDevice);
    });
    if (!isAllowed) GTEST_SKIP() << "this user may not mount";
  }
}

TEST_F(TrashTest, FolderWithAMountInItStays) {
  folder_.folder("outer/inner/mounted");
  const bool isAllowed = runWithOwnMounts([&] {
    ASSERT_EQ(mount("none", folder_.path("outer/inner/mounted").c_str(), "tmpfs", 0, nullptr), 0);
    folder_.file("outer/inner/mounted/file");
    for (const char* name : {"outer", "outer/inner", "outer/inner/mounted"}) {
      EXPECT_EQ(recycle(name), kIsMountPoint) << name;
    }
    EXPECT_EQ(access(folder_.path("outer/inner/mounted/file").c_str(), F_OK), 0);
  });
  if (!isAllowed) GTEST_SKIP() << "this user may not mount";
}

}  // namespace
}  // namespace ombrelian::platform
