#include "fs/z_Filesystem.h"

#include <unistd.h>

#include "fs/Links.h"
#include "fs/Owners.h"
#include "fs/PathText.h"
#include "fs/Renaming.h"
#include "platform/Accounts.h"
#include "tests/testing/RecordingSink.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

using testing::TestFolder;

TEST(FilesystemTest, WhatExists) {
  const TestFolder folder;
  folder.file("file", 3'000'000'000);
  folder.symlink("dangling", "nowhere");
  folder.symlink("toRoot", "/");
  const auto isFile = [&](const char* name) { return toText(xExistFile_W(folder.text(name))); };
  const auto isFolder = [&](const char* name) { return toText(xExistFolder_W(folder.text(name))); };
  EXPECT_EQ(testing::each({"file", "dangling", "toRoot", "", "nowhere"}, isFile), u"1|1|1|1|0");
  EXPECT_EQ(testing::each({"file", "dangling", "toRoot", "", "nowhere"}, isFolder), u"0|0|1|1|0");
  EXPECT_TRUE(xExistFolder_W(u"/"));
  EXPECT_FALSE(xExistFile_W(u"") || xExistFolder_W(u""));
  EXPECT_EQ(xGetFileAttributesWide(folder.text("nowhere")), 0U);
  platform::FindData data;
  ASSERT_EQ(platform::FindFirstFileW(folder.text("file"), data), platform::kSuccess);
  EXPECT_EQ(xGetFileSizeByWFD_W(data), 3'000'000'000);
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
  const Failure blocked = xCreatePath(folder.text("file/below"));
  ASSERT_TRUE(blocked.has_value());
  EXPECT_EQ(blocked->number, std::int32_t(platform::kNotADirectory));
  const Failure relative = xCreatePath(u"relative/path");
  ASSERT_TRUE(relative.has_value());
  EXPECT_EQ(relative->text,
            u"Der Ordnerpfad 'relative/path' ist ungültig und kann nicht erstellt werden!");
  ASSERT_TRUE(xCreatePath(u"/").has_value());
  // By the other rule a share is there already, and a drive's root cannot be made.
  EXPECT_FALSE(xCreatePath(u"\\\\srv\\share", u'\\').has_value());
  EXPECT_TRUE(xCreatePath(u"C:\\", u'\\').has_value());
}

TEST(FilesystemTest, DatesThatNoCalendarHasAreToldOnce) {
  testing::RecordingSink sink;
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

TEST(FilesystemTest, AnOwnerIsAnAccountUnknownOrEveryone) {
  const OwnerTexts owners;
  EXPECT_EQ(owners.of(true, Text(u"someone")), u"someone");
  EXPECT_EQ(owners.of(true, Text()), u"-Unbekannt-");
  EXPECT_EQ(owners.of(false, Text(u"someone")), u"Jeder");
  EXPECT_EQ(owners.of(true, 0xFFFFFFF0U), u"-Unbekannt-") << "no account has that number";
  EXPECT_EQ(owners.of(false, 0U), u"Jeder");
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
    EXPECT_FALSE(renameInFolder(one, name).empty()) << toBytes(name);
    EXPECT_TRUE(xExistFile_W(one)) << toBytes(name);
  }
  EXPECT_EQ(renameInFolder(one, u"one"), u"") << "its own name";
  EXPECT_EQ(renameInFolder(one, u"other"), u"") << "replaces a file";
  EXPECT_EQ(testing::namesIn(folder.path("a")), (std::vector<std::string>{"other", "twin"}));
  EXPECT_EQ(renameInFolder(folder.text("a"), u"b\n"), u"") << "a folder, and any name";
  EXPECT_TRUE(xExistFolder_W(folder.text("b\n")));
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
  EXPECT_EQ(testing::each(testing::fields(u"archive.tar.gz|noext|.profile|name."), xGetExtension),
            u"gz||profile|");
}

}  // namespace
}  // namespace ombrelian
