#include "platform/FilePlace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/ReplacingFile.h"
#include "platform/WholeFile.h"
#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using namespace ombrelian::testing;

constexpr uid_t kAttacker = 65534;
constexpr uid_t kOther = 65533;

/// Attacks on an administrator who writes; other users cannot run them.
class FilePlaceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only an administrator can be attacked";
    folder.write("victim", "untouched");
    folder.folder("place");
  }

  /// Makes "place" belong to `owner`, with this mode.
  void givePlace(uid_t owner, mode_t mode) const {
    ASSERT_EQ(chown(folder.path("place").c_str(), owner, owner), 0);
    folder.chmod("place", mode);
  }

  void linkAt(const char* name, const std::string& target, uid_t owner) const {
    unlink(folder.path(name).c_str());
    folder.symlink(name, target);
    ASSERT_EQ(lchown(folder.path(name).c_str(), owner, owner), 0);
  }

  Failure save(TextView target) const {
    ReplacingFile file;
    if (Failure failure = file.open(target)) return failure;
    if (Failure failure = file.write("report")) return failure;
    return file.commit();
  }

  struct stat statOf(const char* name) const {
    struct stat told = {};
    EXPECT_EQ(lstat(folder.path(name).c_str(), &told), 0) << name;
    return told;
  }

  const TestFolder folder;
};

TEST_F(FilePlaceTest, OnlyALinkOfATrustedUserIsFollowed) {
  const struct {
    uid_t runner;
    uid_t folderOwner;
    mode_t mode;
    uid_t linkOwner;
    bool isFollowed;
  } cases[] = {
      {0, 0, 01777, kAttacker, false},
      {0, 0, 0755, kAttacker, false},
      {0, kAttacker, 0755, kAttacker, false},  // the owner of the folder is the attacker
      {0, kAttacker, 0755, 0, true},
      {0, 0, 01777, 0, true},
      {kAttacker, 0, 01777, kOther, false},
      {kAttacker, kOther, 01777, kOther, true},  // the rule of the kernel
      {kAttacker, 0, 01777, kAttacker, true},
      {kAttacker, 0, 01777, 0, true},
  };
  for (const auto& c : cases) {
    folder.write("victim", "untouched");
    givePlace(c.folderOwner, c.mode);
    linkAt("place/report", "../victim", c.linkOwner);
    folder.chmod("", 0777);
    std::optional<ScopedUser> user;
    if (c.runner != 0) user.emplace();
    const Failure failure = save(folder.text("place/report"));
    user.reset();
    const auto row = &c - cases;
    EXPECT_EQ(readFile(folder.path("victim")), c.isFollowed ? "report" : "untouched") << row;
    EXPECT_EQ(S_ISLNK(statOf("place/report").st_mode), true) << row << ": the link stays";
    EXPECT_EQ(namesIn(folder.path("place")), std::vector<std::string>{"report"}) << row;
    EXPECT_EQ(failure ? failure->number : 0, c.isFollowed ? 0 : std::int32_t(kUntrustedLink))
        << row;
  }
}

TEST_F(FilePlaceTest, ALinkOnTheWayIsFollowedUnlessAnotherUserPutItWhereAllMay) {
  folder.write("other/inner/report", "untouched");
  for (const auto& [mode, linkOwner, isFollowed] :
       {std::tuple<mode_t, uid_t, bool>{01777, kAttacker, false},
        {01777, 0, true},
        {0755, kAttacker, true}}) {
    givePlace(0, mode);
    linkAt("place/way", "../other", linkOwner);
    for (const char* const path : {"place/way/inner/report", "place/way/../other/inner/report"}) {
      folder.write("other/inner/report", "untouched");
      const Failure failure = save(folder.text(path));
      EXPECT_EQ(failure ? failure->number : 0, isFollowed ? 0 : std::int32_t(kUntrustedLink));
      EXPECT_EQ(readFile(folder.path("other/inner/report")), isFollowed ? "report" : "untouched");
    }
  }
}

TEST_F(FilePlaceTest, ALinkThatComesLaterIsReplacedAndAFolderThatComesLaterGetsNothing) {
  for (const bool hasNames : {false, true}) {
    folder.folder("elsewhere");
    std::optional<ScopedFault> fault;
    if (hasNames) fault.emplace(Fault{Call::Openat, ".", EOPNOTSUPP, 0, 1});
    ReplacingFile file;
    ASSERT_FALSE(file.open(folder.text("place/report")));
    fault.reset();
    ASSERT_FALSE(file.write("report"));
    folder.rename("place", "moved");
    folder.symlink("place", folder.path("elsewhere"));
    folder.symlink("moved/report", folder.path("victim"));
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(readFile(folder.path("victim")), "untouched");
    EXPECT_TRUE(namesIn(folder.path("elsewhere")).empty());
    EXPECT_EQ(namesIn(folder.path("moved")), std::vector<std::string>{"report"});
    EXPECT_TRUE(S_ISREG(statOf("moved/report").st_mode));
    unlink(folder.path("place").c_str());
    unlink(folder.path("moved/report").c_str());
    folder.rename("moved", "place");
  }
}

TEST_F(FilePlaceTest, TemporaryNamesOfOthersAreNotTouched) {
  givePlace(kAttacker, 0777);
  linkAt("place/.ombrelian-1.tmp", "../victim", kAttacker);
  ASSERT_EQ(mkfifo(folder.path("place/.ombrelian-2.tmp").c_str(), 0666), 0);
  folder.hardlink("place/.ombrelian-3.tmp", "victim");
  ASSERT_EQ(chown(folder.path("victim").c_str(), kAttacker, kAttacker), 0);
  EXPECT_FALSE(save(folder.text("place/report")));
  EXPECT_EQ(namesIn(folder.path("place")).size(), 4U);
  EXPECT_EQ(readFile(folder.path("victim")), "untouched");
}

TEST_F(FilePlaceTest, AReplacedReportKeepsModeAndOwnerAndANewOneFollowsTheRule) {
  const struct {
    const char* name;
    uid_t folderOwner;
    mode_t folderMode;
    std::optional<mode_t> oldMode;  // none: there is no report
    uid_t oldOwner;
    mode_t mode;
    uid_t owner;
  } cases[] = {
      {"kept", 0, 0755, 0640, kOther, 0640, kOther},
      {"special bits are not kept", 0, 0755, 04755, 0, 0755, 0},
      {"new, outside the home", 0, 0755, {}, 0, 0600, 0},
      {"left by another user in a shared folder", 0, 01777, 0666, kAttacker, 0600, 0},
      {"of the owner of a shared folder", kOther, 01777, 0644, kOther, 0644, kOther},
  };
  for (const auto& c : cases) {
    givePlace(c.folderOwner, c.folderMode);
    unlink(folder.path("place/report").c_str());
    if (c.oldMode) {
      folder.write("place/report", "old");
      ASSERT_EQ(chown(folder.path("place/report").c_str(), c.oldOwner, c.oldOwner), 0);
      folder.chmod("place/report", *c.oldMode);
    }
    EXPECT_FALSE(save(folder.text("place/report"))) << c.name;
    EXPECT_EQ(readFile(folder.path("place/report")), "report") << c.name;
    EXPECT_EQ(statOf("place/report").st_mode & 07777, c.mode) << c.name;
    EXPECT_EQ(statOf("place/report").st_uid, c.owner) << c.name;
  }
  folder.chmod("", 0755);
  givePlace(kAttacker, 0755);
  unlink(folder.path("place/report").c_str());
  const mode_t mask = umask(027);
  {
    const ScopedUser user;
    EXPECT_FALSE(save(folder.text("place/report")));
  }
  EXPECT_EQ(umask(mask), 027U);
  EXPECT_EQ(statOf("place/report").st_mode & 07777, 0640U) << "the file mask of an ordinary user";
}

TEST_F(FilePlaceTest, OnlyOrdinaryFilesOfThisUserAreOwnFiles) {
  const std::string path = folder.path("place/own.log");
  const auto isRefused = [&](const char* what) {
    for (const int disposition : {kOpenRead, kOpenAppend, kOpenExisting}) {
      ErrorCode error = kSuccess;
      OpenOwnFile(fromBytes(path), disposition, error);
      EXPECT_EQ(error, kNotOwnFile) << what << disposition;
    }
    EXPECT_TRUE(ReplaceOwnFile(fromBytes(path), "settings").has_value()) << what;
    EXPECT_EQ(readFile(folder.path("victim")), "untouched") << what;
    unlink(path.c_str());
    rmdir(path.c_str());
  };
  linkAt("place/own.log", "../victim", kAttacker);
  isRefused("a link of another user");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  isRefused("a pipe");
  folder.folder("place/own.log");
  isRefused("a folder");
  folder.write("place/own.log", "");
  ASSERT_EQ(chown(path.c_str(), kAttacker, kAttacker), 0);
  isRefused("a file of another user");
  EXPECT_EQ(AppendToLog(fromBytes(path), "line", 0), kSuccess);
  EXPECT_EQ(statOf("place/own.log").st_mode & 07777, 0600U);
  folder.chmod("place/own.log", 0644);
  EXPECT_EQ(AppendToLog(fromBytes(path), "line", 9), kSuccess);
  EXPECT_EQ(statOf("place/own.log").st_mode & 07777, 0600U) << "the rights of others are taken";
  EXPECT_EQ(AppendToLog(fromBytes(path), "next", 8), kSuccess);
  EXPECT_EQ(readFile(path + ".old"), "lineline");
  EXPECT_EQ(readFile(path), "next");
}

TEST(OwnFolderTest, IsMadeForItsOwnerAlone) {
  const TestFolder folder;
  EXPECT_EQ(MakeOwnFolder(folder.text("a/b")), kSuccess);
  EXPECT_EQ(folder.modeOf("a"), 0700U);
  EXPECT_EQ(folder.modeOf("a/b"), 0700U);
  folder.chmod("a/b", 0777);
  EXPECT_EQ(MakeOwnFolder(folder.text("a/b")), kSuccess);
  EXPECT_EQ(folder.modeOf("a/b"), 0700U);
  if (geteuid() != 0) return;
  ASSERT_EQ(chown(folder.path("a/b").c_str(), kAttacker, kAttacker), 0);
  EXPECT_EQ(MakeOwnFolder(folder.text("a/b")), kNotOwnFile);
}

TEST(SyncTest, AFileIsOnTheDiskBeforeItHasItsNameAndItsErrorIsReported) {
  const TestFolder folder;
  folder.write("f", "old");
  int atSync = 0;
  {
    const ScopedFault look({.call = Call::Fdatasync, .meanwhile = [&] {
                              EXPECT_EQ(readFile(folder.path("f")), "old");
                              ++atSync;
                            }});
    EXPECT_FALSE(ReplaceOwnFile(folder.text("f"), "new"));
  }
  EXPECT_EQ(atSync, 1);
  EXPECT_EQ(readFile(folder.path("f")), "new");
  const std::pair<Fault, const char*> cases[] = {
      {{.call = Call::Fdatasync, .error = EIO}, "new"},
      {{.call = Call::Fdatasync, .error = EINVAL}, "third"},  // the file system cannot say it
      {{.call = Call::Fsync, .error = EIO}, "third"},         // the new name may be lost
  };
  for (const auto& [fault, content] : cases) {
    folder.write("f", "new");
    const ScopedFault failing(fault);
    EXPECT_EQ(ReplaceOwnFile(folder.text("f"), "third").has_value(), fault.error == EIO);
    EXPECT_EQ(readFile(folder.path("f")), content);
  }
}

}  // namespace
}  // namespace ombrelian::platform
