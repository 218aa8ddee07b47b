#include <unistd.h>

#include "fs/Deleting.h"
#include "fs/ExactPath.h"
#include "fs/Links.h"
#include "fs/Owners.h"
#include "fs/PathText.h"
#include "fs/Recycling.h"
#include "fs/Renaming.h"
#include "fs/TypedPath.h"
#include "fs/z_Filesystem.h"
#include "platform/Accounts.h"
#include "tests/testing/RecordingSink.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

TEST(FilesystemTest, WhatExists) {
  const TestFolder folder;
  folder.file("file", 3'000'000'000);
  folder.symlink("dangling", "nowhere");
  folder.symlink("toRoot", "/");
  const auto isFile = [&](const char* name) { return toText(xExistFile_W(folder.text(name))); };
  const auto isFolder = [&](const char* name) { return toText(xExistFolder_W(folder.text(name))); };
  EXPECT_EQ(each({"file", "dangling", "toRoot", "", "nowhere"}, isFile), u"1|1|1|1|0");
  EXPECT_EQ(each({"file", "dangling", "toRoot", "", "nowhere"}, isFolder), u"0|0|1|1|0");
  EXPECT_TRUE(xExistFolder_W(u"/"));
  EXPECT_FALSE(xExistFile_W(u"") || xExistFolder_W(u""));
  EXPECT_EQ(xGetFileAttributesWide(folder.text("nowhere")), 0U);
  platform::FindData data;
  ASSERT_EQ(platform::FindFirstFileW(folder.text("file"), data), platform::kSuccess);
  EXPECT_EQ(xGetFileSizeByWFD_W(data), 3'000'000'000);
}

TEST(FilesystemTest, ADialogsPathLeadsToTheNameThatIsNoText) {
  const TestFolder folder;
  folder.folder(
      "a\xFF\xFE"
      "b");
  folder.file(
      "a\xFF\xFE"
      "b/\xE4.txt");
  folder.file("twin\xE4");
  folder.file("twin\xF6");
  folder.file("mark\xEF\xBF\xBD");
  const Text inside = folder.text(
      "a\xFF\xFE"
      "b");
  const struct {
    const char16_t* shown;
    bool mayBeNew;
    Text exact;  // empty: an error
  } cases[] = {
      {u"/a\uFFFDb", false, inside},
      {u"/a\uFFFD\uFFFDb/\uFFFD.txt", false,
       folder.text("a\xFF\xFE"
                   "b/\xE4.txt")},
      {u"/a\uFFFDb/new\uFFFD.txt", true, inside + u"/new\uFFFD.txt"},
      {u"/a\uFFFDb/new\uFFFD.txt", false, {}},
      {u"/none\uFFFD/new.txt", true, {}},
      {u"/twin\uFFFD", true, {}},
      {u"/mark\uFFFD", false, folder.text("mark\xEF\xBF\xBD")},
      {u"/plain", false, folder.text("plain")},
  };
  for (const auto& c : cases) {
    const Result<Text> exact = exactPath(folder.text() + c.shown, c.mayBeNew);
    EXPECT_EQ(exact ? toBytes(*exact) : "", toBytes(c.exact)) << &c - cases;
    EXPECT_TRUE(exact || !exact.error().text.empty());
  }
}

TEST(FilesystemTest, PathsBeyondTheKernelsLimit) {
  const TestFolder folder;
  const std::string name(200, 'n');
  close(folder.chain(name, 50));  // some 10,000 bytes, more than PATH_MAX
  Text path = folder.text();
  for (int i = 0; i < 50; ++i)
    appendName(path, fromBytes(name));
  EXPECT_TRUE(xExistFolder_W(path));
  EXPECT_FALSE(xCreatePath(path + u"/made/inner").has_value());
  EXPECT_TRUE(xExistFolder_W(path + u"/made/inner"));
  EXPECT_EQ(xMoveFile_W(path + u"/made/inner", path + u"/moved"), u"");
  EXPECT_TRUE(xExistFolder_W(path + u"/moved"));
  EXPECT_NE(xMoveFile_W(path + u"/made/inner", path + u"/moved"), u"") << "it is gone";
}

TEST(FilesystemTest, MakingFolders) {
  const TestFolder folder;
  folder.file("file");
  EXPECT_FALSE(xCreatePath(folder.text("a/b/c")).has_value());
  EXPECT_FALSE(xCreatePath(folder.text("a/b/c/")).has_value()) << "again is no failure";
  EXPECT_TRUE(xExistFolder(folder.text("a/b/c")));
  EXPECT_EQ(xCreatePath(folder.text("file/below")).value_or(Error()).number,
            std::int32_t(platform::kNotADirectory));
  EXPECT_EQ(xCreatePath(u"relative/path").value_or(Error()).text,
            u"Der Ordnerpfad 'relative/path' ist ungültig und kann nicht erstellt werden!");
  ASSERT_TRUE(xCreatePath(u"/").has_value());
  // With the rules of Windows a share exists already, and the root of a drive cannot be made.
  EXPECT_FALSE(xCreatePath(u"\\\\srv\\share", u'\\').has_value());
  EXPECT_TRUE(xCreatePath(u"C:\\", u'\\').has_value());
}

TEST(FilesystemTest, DatesThatNoCalendarHasAreToldOnce) {
  RecordingSink sink;
  platform::FindData data;
  EXPECT_EQ(xGetFileModifyDateByWFD(data, u"/none"), 0);
  EXPECT_TRUE(sink.lines.empty()) << "no date is no invalid date";
  data.ftLastWriteTime = fileTimeFromUnix(INT64_MAX / 2, 0);
  EXPECT_EQ(xGetFileModifyDateByWFD(data, u"/odd"), 0);
  ASSERT_EQ(sink.lines.size(), 1U);
  EXPECT_TRUE(
      sink.lines[0].starts_with(u"Die Datei '/odd' besitzt ein ungültiges Datum. Error5: "));
  data.ftLastWriteTime = fileTimeFromUnix(-86400LL * 365 * 200, 0);
  EXPECT_LT(xGetFileModifyDateByWFD(data, u"/old"), 0);
}

TEST(FilesystemTest, ATypedPathIsTheFolderThatAPersonMeans) {
  const TestFolder folder;
  folder.file("a b/file", 1);
  folder.folder("'q'");
  const ScopedVariable home("HOME", folder.path());
  const Text inside = folder.text("a b");
  for (const Text& typed : {inside + u"/", u"  " + inside + u" ", u"\"" + inside + u"\"",
                            u"'" + inside + u"'", Text(u"~/a b"), inside + u"/file",
                            u"file://" + folder.text() + u"/a%20b", inside + u"//../a b/."})
    EXPECT_EQ(typedPath(typed), inside) << toBytes(typed);
  EXPECT_EQ(typedPath(u"~"), folder.text());
  EXPECT_EQ(typedPath(folder.text("'q'")), folder.text("'q'")) << "the folder has this name";
  EXPECT_EQ(typedPath(u" "), u"");
  EXPECT_EQ(typedPath(u"/no/such"), u"/no/such");
}

TEST(FilesystemTest, AVolumeNamesItsFileSystemOrSaysWhyNot) {
  Text error;
  EXPECT_EQ(xGetDriveFileSystem(u"/proc", error), u"proc");
  EXPECT_EQ(error, u"");
  EXPECT_EQ(xGetDriveFileSystem(u"/no such folder", error), u"?");
  EXPECT_NE(error, u"");
}

TEST(FilesystemTest, AnOwnerIsAnAccountUnknownOrEveryone) {
  const OwnerTexts owners;
  EXPECT_EQ(owners.of(true, Text(u"someone")), u"someone");
  EXPECT_EQ(owners.of(true, Text()), u"-Unbekannt-");
  EXPECT_EQ(owners.of(false, Text(u"someone")), u"Jeder");
  platform::FindData data;
  data.ownerId = getuid();
  EXPECT_EQ(owners.of(true, data), platform::GetUserNameW());
  EXPECT_EQ(owners.of(false, data), u"Jeder");
  data.statError = platform::kAccessDenied;
  EXPECT_EQ(owners.of(true, data), u"-Unbekannt-") << "nothing is known of the entry";
  data = {};
  data.ownerId = 0xFFFFFFF0U;
  EXPECT_EQ(owners.of(true, data), u"4294967280") << "no account has that number";
  const TestFolder folder;
  EXPECT_EQ(owners.at(folder.text(), true), platform::GetUserNameW());
  EXPECT_EQ(owners.at(folder.text("missing"), true), u"-Unbekannt-");
  EXPECT_EQ(owners.at(folder.text("missing"), false), u"Jeder");
  EXPECT_TRUE(keepsOwners(folder.text()));
}

TEST(FilesystemTest, ARenameStaysInItsFolder) {
  const TestFolder folder;
  folder.file("a/one");
  folder.file("a/other", 5);
  folder.hardlink("a/twin", "a/one");
  folder.file("outside");
  const Text one = folder.text("a/one");
  for (const TextView name : {u"../gone", u"b/c", u"..", u".", u"", u"twin"}) {
    EXPECT_FALSE(renameInFolder({one}, name).empty()) << toBytes(name);
    EXPECT_TRUE(xExistFile_W(one)) << toBytes(name);
  }
  EXPECT_EQ(renameInFolder({one}, u"one"), u"") << "its own name";
  EXPECT_EQ(renameInFolder({one}, u"other"), u"") << "replaces a file";
  EXPECT_EQ(namesIn(folder.path("a")), (std::vector<std::string>{"other", "twin"}));
  EXPECT_EQ(renameInFolder({folder.text("a")}, u"b\n"), u"") << "a folder, and any name";
  EXPECT_TRUE(xExistFolder_W(folder.text("b\n")));
}

TEST(FilesystemTest, ARenameNeverLeavesTheShownFolderAndReplacesNothingThatCameLater) {
  const TestFolder folder;
  folder.file("source/a/one");
  folder.file("other/one", 3);
  platform::FindData shown;
  ASSERT_EQ(findObject(folder.text("source/a/one"), shown), platform::kSuccess);
  const platform::ShownObject one = {folder.text("source/a/one"), folder.text("source").size(),
                                     shown.identity};
  const auto rename = [&](const platform::ShownObject& object) {
    return renameInFolder(object, u"new");
  };
  folder.rename("source/a", "source/moved");
  folder.symlink("source/a", "../other");
  EXPECT_NE(rename(one), u"") << "a folder became a link";
  EXPECT_NE(rename({one.path, Text::npos, one.identity}), u"") << "and the file is another one";
  EXPECT_EQ(namesIn(folder.path("other")), std::vector<std::string>{"one"});
  unlink(folder.path("source/a").c_str());
  folder.rename("source/moved", "source/a");
  {
    const ScopedFault late({.call = Call::Renameat2, .name = "new", .meanwhile = [&] {
                              folder.write("source/a/new", "came later");
                            }});
    EXPECT_NE(rename(one), u"");
    EXPECT_EQ(late.hits(), 1);
  }
  EXPECT_EQ(readFile(folder.path("source/a/new")), "came later");
  unlink(folder.path("source/a/new").c_str());
  const ScopedFault old({.call = Call::Renameat2, .error = EINVAL});
  EXPECT_EQ(rename(one), u"") << "a file system that does not know the flag";
  EXPECT_EQ(namesIn(folder.path("source/a")), std::vector<std::string>{"new"});
}

TEST(FilesystemTest, HardlinksHaveOneIdentity) {
  const TestFolder folder;
  folder.file("one");
  folder.file("two");
  folder.hardlink("again", "two");
  Text single, first, second, error;
  EXPECT_EQ(xGetHardlinkCount(folder.text("one"), &single, error), 0);
  EXPECT_FALSE(single.empty()) << "told for a file with one name too";
  EXPECT_EQ(xGetHardlinkCount(folder.text("two"), &first, error), 2);
  EXPECT_EQ(xGetHardlinkCount(folder.text("again"), &second, error), 2);
  EXPECT_EQ(first, second);
  EXPECT_NE(first, single);
  EXPECT_EQ(xGetHardlinkCount(folder.text("none"), nullptr, error), 0);
  EXPECT_NE(error.find(u": #2 - "), Text::npos) << toBytes(error);
  EXPECT_TRUE(error.starts_with(u"Die Datei '" + folder.text("none") + u"' konnte nicht"));

  platform::FindData data;
  data.identity.index = 0x00000002'00000005;
  EXPECT_EQ(hardlinkIdentity(data), u"5-2");
  data.identity.index = 0xFFFFFFFF'80000000;
  EXPECT_EQ(hardlinkIdentity(data), u"-2147483648--1");
}

TEST(FilesystemTest, ErrorTexts) {
  EXPECT_EQ(xGetErrorText(true, 0), u"#0 - No information available");
  EXPECT_EQ(xGetErrorText(true, platform::kAccessDenied), u"#5 - Permission denied");
  EXPECT_EQ(xGetErrorText(false, platform::kDiskFull), u"No space left on device");
  EXPECT_FALSE(xGetErrorText(false, 54321).empty());
}

TEST(PathTextTest, WindowsRule) {
  EXPECT_EQ(LongPathPrefix(u"\\\\srv\\share\\x", u'\\'), u"\\\\?\\UNC\\srv\\share\\x");
  EXPECT_EQ(LongPathPrefix(u"C:\\x", u'\\'), u"\\\\?\\C:\\x");
  EXPECT_EQ(LongPathPrefix(u"\\\\?\\C:\\x", u'\\'), u"\\\\?\\UNC\\?\\C:\\x");
  EXPECT_EQ(xGetPath(u"C:\\a", u'\\'), u"C:");
  EXPECT_EQ(xGetPath(u"a.txt", u'\\'), u"");
  EXPECT_EQ(xGetPathWithBackslash(u" C:\\a ", u'\\'), u"C:\\a\\");
  EXPECT_EQ(xGetPathWithBackslash(u"", u'\\'), u"");
  EXPECT_EQ(xRemoveBackslash(u" C:\\a \\", u'\\'), u"C:\\a");
  EXPECT_EQ(xRemoveBackslash(u" C:\\a", u'\\'), u" C:\\a");
  EXPECT_EQ(xGetFileNameWithoutExtension(u"C:\\a.b\\c.tar.gz", u'\\'), u"c.tar");
  EXPECT_EQ(xGetFileName(u"C:\\a/b", u'\\'), u"a/b");
  EXPECT_EQ(xCutAtNull(TextView(u"ab\0c", 4)), u"ab");
}

TEST(PathTextTest, PosixRule) {
  EXPECT_EQ(LongPathPrefix(u"/a", u'/'), u"/a");
  EXPECT_EQ(xGetPath(u"/a", u'/'), u"/");
  EXPECT_EQ(xGetPath(u"/a/b", u'/'), u"/a");
  EXPECT_EQ(xGetPath(u"a", u'/'), u"");
  EXPECT_EQ(xGetPathWithBackslash(u"/ a ", u'/'), u"/ a /") << "blanks belong to the name";
  EXPECT_EQ(xRemoveBackslash(u"/a /", u'/'), u"/a ");
  EXPECT_EQ(xRemoveBackslash(u"/", u'/'), u"/");
  EXPECT_EQ(xGetFileNameWithoutExtension(u"/a.b/c", u'/'), u"c");
  EXPECT_EQ(xGetFileName(u"/a\\b", u'/'), u"a\\b");
  Text root = u"/";
  EXPECT_EQ(xAddBackslash(root, u'/'), u"/");
  EXPECT_EQ(appendName(root, u"usr", u'/'), u"/usr");
}

TEST(PathTextTest, ExtensionsLookForTheDotAlone) {
  EXPECT_EQ(each(fields(u"archive.tar.gz|noext|.profile|.a.b|name."), xGetExtension), u"gz|||b|");
}

TEST(DeletingTest, WhatIsGoneCountsAndWhatStaysIsTold) {
  const TestFolder folder;
  folder.file("file", 2);
  EXPECT_FALSE(xDeleteFile_W({folder.text("missing")}, false).has_value());
  {
    const ScopedFault denied({Call::Unlinkat, "file", EACCES});
    const Error error = xDeleteFile_W({folder.text("file")}, false).value_or(Error());
    EXPECT_EQ(error.number, std::int32_t(platform::kAccessDenied));
    EXPECT_EQ(error.text.find(folder.text("file") + u" (#5 - "), 0U) << toBytes(error.text);
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
    const Error error = xDeleteFile_W({folder.text("closed/file")}, true).value_or(Error());
    EXPECT_EQ(toBytes(error.text), "#5 - Permission denied SetFA: " + folder.path("closed/file") +
                                       " (#5 - Permission denied)");
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
  EXPECT_EQ(namesIn(folder.path("data/Trash/files")).size(), 2U);
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
