// The list of the files in one folder, with real folders.

#include "lists/FileList.h"
#include "lists/ListTable.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <numeric>

#include "fs/z_Filesystem.h"
#include "platform/Accounts.h"
#include "platform/Time.h"
#include "tests/testing/Faults.h"
#include "tests/testing/Lists.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;
using namespace ::testing;
using Rows = std::vector<Grid::RowIndex>;

class FileListTest : public Test {
 protected:
  FileListTest() { options.FilelistVisible = 1; }

  bool show(const FileList::GoOn& goOn = {}) {
    Text path = folder.text();
    return list.List_Files_ScanFolder(path, true, goOn);
  }

  std::vector<Text> names() { return texts(list.grid(), u"name"); }

  TextView text(Grid::RowIndex row, TextView key) {
    return list.grid().text(row, list.grid().column(key));
  }

  Grid::RowIndex rowOf(TextView name) {
    const std::vector<Text> all = names();
    return Grid::RowIndex(std::find(all.begin(), all.end(), name) - all.begin());
  }

  /// The identity of the file of a row according to the system.
  platform::FileIdentity identityOnDisk(Grid::RowIndex row) {
    struct stat told = {};
    EXPECT_EQ(lstat(toBytes(list.fullPath(row)).c_str(), &told), 0);
    return {told.st_dev, told.st_ino};
  }

  const ScopedLocale locale{"C"};
  TestFolder folder;
  Options options;
  MadeUpTypes types;
  FileList list{options, types};
};

TEST_F(FileListTest, FilesAloneAreListedTheLargestFirst) {
  folder.file("small.TXT", 5);
  folder.file("large.txt", 5'000'000'000);
  folder.file("none", 0);
  folder.file("sub/inner", 77);
  folder.symlink("link.txt", "large.txt");
  folder.symlink("linkedFolder", "sub");
  folder.file("bad\xff.TXT", 6);
  Text path = folder.text();
  const Date before = toDate(platform::GetLocalTime());
  ASSERT_TRUE(list.List_Files_ScanFolder(path, false));
  EXPECT_GE(list.readAt(), before);
  EXPECT_EQ(path, folder.text() + u"/");
  EXPECT_EQ(list.folder(), path);
  const Text bad = fromBytes("bad\xff.TXT");
  EXPECT_EQ(names(), (std::vector<Text>{u"large.txt", u"link.txt", bad, u"small.TXT", u"none"}));
  EXPECT_EQ(list.sum(), 5'000'000'000 + 9 + 6 + 5);
  EXPECT_EQ(text(2, u"fullpath"), folder.text() + u"/" + bad);
  EXPECT_EQ(toBytes(list.fullPath(2)), folder.path("bad\xff.TXT"));
  EXPECT_EQ(text(2, u"path"), path);
  EXPECT_EQ(text(2, u"ext"), u"TXT");
  EXPECT_EQ(texts(list.grid(), u"type"),
            (std::vector<Text>{u"type txt", u"type txt", u"type txt", u"type txt", u"type "}));
  EXPECT_EQ(types.questions, 3);  // "txt" in two spellings, and no extension
  const Grid& grid = list.grid();
  EXPECT_EQ(grid.number(0, grid.column(u"attr")), 0x200);  // the file has no blocks
  EXPECT_EQ(grid.number(1, grid.column(u"attr")) & 0x400, 0x400);
  EXPECT_FALSE(list.failure());
}

TEST_F(FileListTest, DatesAreThoseOfTheFileItself) {
  for (const std::int64_t second : {1'720'000'000L, 86'400L, -5'000'000'000L, 0L}) {
    const std::string name = "f" + std::to_string(second);
    folder.file(name);
    const struct timespec times[2] = {{second + 60, 0}, {second, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, folder.path(name).c_str(), times, 0), 0);
  }
  show();
  const Grid& grid = list.grid();
  ASSERT_EQ(grid.rowCount(), 4U);
  for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row) {
    const Text path = list.fullPath(row);
    EXPECT_EQ(grid.real(row, grid.column(u"datemodified")), xGetFileModifyDate(path));
    EXPECT_EQ(grid.real(row, grid.column(u"datecreate")), xGetFileCreateDate(path));
    EXPECT_EQ(grid.real(row, grid.column(u"dateaccess")), xGetFileAccessDate(path));
  }
}

TEST_F(FileListTest, TheSameFolderIsReadAgainOnlyWhenForcedAndKeepsItsOrder) {
  folder.file("b", 1);
  Text path = folder.text();
  EXPECT_TRUE(list.List_Files_ScanFolder(path, false));
  list.grid().sort(list.grid().column(u"name"), false);
  folder.file("a");
  EXPECT_FALSE(list.List_Files_ScanFolder(path, false));
  EXPECT_EQ(names(), std::vector<Text>{u"b"});
  EXPECT_TRUE(list.List_Files_ScanFolder(path, true));
  EXPECT_EQ(names(), (std::vector<Text>{u"a", u"b"}));
  folder.file("c", 3);
  EXPECT_TRUE(list.List_Files_Refresh());
  EXPECT_EQ(names(), (std::vector<Text>{u"a", u"b", u"c"}));
  list.clear();
  EXPECT_EQ(names().size(), 0U);
  show();
  EXPECT_EQ(names(), (std::vector<Text>{u"a", u"b", u"c"}));
  options.FilelistVisible = 0;
  EXPECT_TRUE(list.List_Files_ScanFolder(path, false));
  EXPECT_TRUE(names().empty() && list.folder().empty());
  EXPECT_FALSE(list.List_Files_Refresh());
}

TEST_F(FileListTest, TheFilterHoldsOnlyWhereItIsOn) {
  folder.file("a.jpg");
  folder.file("b.JPG");
  folder.file("c.txt");
  const std::tuple<std::uint8_t, TextView, std::size_t> cases[] = {
      {0, u"*.jpg", 3}, {1, u"*.jpg", 2}, {1, u"*.png", 0}, {1, u"*.png,c*", 1}};
  for (const auto& [active, pattern, rows] : cases) {
    options.FileList_Filter_Active = active;
    options.FileList_Filter_Text = pattern;
    show();
    EXPECT_EQ(names().size(), rows) << toBytes(pattern);
  }
}

TEST_F(FileListTest, AReadThatIsEndedKeepsWhatItHad) {
  for (int i = 0; i < 3000; ++i)
    folder.file("f" + std::to_string(i), i);
  int questions = 0;
  show([&] { return ++questions < 3; });
  EXPECT_EQ(questions, 3);
  const std::vector<std::int64_t> sizes = numbers(list.grid(), u"size");
  EXPECT_TRUE(!sizes.empty() && sizes.size() <= 1536U) << sizes.size();
  EXPECT_TRUE(std::is_sorted(sizes.rbegin(), sizes.rend()));
  EXPECT_EQ(list.sum(), std::accumulate(sizes.begin(), sizes.end(), std::int64_t(0)));
  EXPECT_FALSE(list.failure());
}

TEST_F(FileListTest, NothingChangesWhileAReadAsks) {
  for (int i = 0; i < 600; ++i)
    folder.file("f" + std::to_string(i));
  folder.file("other/g");
  Text other = folder.text("other");
  list.List_Files_ScanFolder(other, false);
  int questions = 0;
  show([&] {
    ++questions;
    EXPECT_TRUE(list.isReading());
    EXPECT_EQ(list.folder(), other);
    EXPECT_FALSE(list.List_Files_Refresh());
    list.clear();
    EXPECT_EQ(names(), std::vector<Text>{u"g"});
    return true;
  });
  EXPECT_GT(questions, 0);
  EXPECT_EQ(names().size(), 600U);
}

TEST_F(FileListTest, WhatCannotBeReadIsTold) {
  Text missing = folder.text("missing");
  EXPECT_TRUE(list.List_Files_ScanFolder(missing, false));
  EXPECT_EQ(names().size(), 0U);
  ASSERT_TRUE(list.failure());
  EXPECT_EQ(list.failure()->number, 2);
  EXPECT_EQ(list.List_Files_ShowFileStat(), u"0 Datei(en)");

  folder.file("dumb", 9);
  const ScopedFault fault({Call::Statx, "dumb", EACCES});
  show();
  ASSERT_EQ(names(), std::vector<Text>{u"dumb"});
  EXPECT_FALSE(list.failure());
  const CellFormat format(list.grid().columns(), listSizes(options, ListId::Files), {});
  EXPECT_EQ(list.grid().cellText(format, 0, list.grid().column(u"attr")), u"");
}

TEST_F(FileListTest, OwnersAreReadWhereTheyAreShownOrAskedFor) {
  folder.file("mine");
  options.FileColumnVisible[9] = 0;
  show();
  EXPECT_EQ(text(0, u"owner"), u"");
  const Text user = platform::GetUserNameW();
  EXPECT_EQ(list.readOwner(0), user);
  EXPECT_EQ(text(0, u"owner"), user);
  options.FileColumnVisible[9] = 1;
  const bool isForeign = chown(folder.path("mine").c_str(), 3'999'999'999U, gid_t(-1)) == 0;
  show();
  EXPECT_EQ(text(0, u"owner"), isForeign ? u"3999999999" : TextView(user));
}

TEST_F(FileListTest, TheStatusTellsSumsInTheUnitsOfTheList) {
  constexpr std::int64_t kMB = std::int64_t(1) << 20;
  folder.file("a", kMB);
  folder.file("b", 3 * kMB);
  show();
  EXPECT_EQ(list.List_Files_ShowFileStat(), u"2 Datei(en) mit insgesamt 4.00 MB");
  EXPECT_EQ(list.List_Files_ShowFileStat(Rows{0}),
            u"2 Datei(en) mit insgesamt 4.00 MB / 1 ausgewählte Datei(en) mit 3.00 MB");
  options.FileSizeFormatFiles = 0;
  EXPECT_EQ(list.List_Files_ShowFileStat(), u"2 Datei(en) mit insgesamt 4,194,304 Bytes");
  options.FileSizeFormatFiles = kUnitFitting;
  EXPECT_EQ(list.List_Files_ShowFileStat(Rows{0}),
            u"2 Datei(en) mit insgesamt 4.0 MB / 1 ausgewählte Datei(en) mit 3.0 MB");
}

TEST_F(FileListTest, ARenamedFileKeepsItsRow) {
  folder.file("old.txt", 7);
  folder.file("other", 9);
  show();
  const Grid::RowIndex row = rowOf(u"old.txt");
  const std::uint32_t id = list.grid().id(row);
  const Text target = fromBytes("new\xfe.JPG");
  EXPECT_FALSE(list.nameIsTaken(row, target));
  EXPECT_EQ(list.rename(row, target).error, u"");
  EXPECT_EQ(list.grid().rowOf(id), row);
  for (const auto& [key, value] :
       {std::pair(u"name", target), {u"ext", u"JPG"}, {u"type", u"type jpg"}})
    EXPECT_EQ(text(row, key), value);
  EXPECT_EQ(toBytes(list.fullPath(row)), folder.path("new\xfe.JPG"));
  EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("new\xfe.JPG", "other"));
}

TEST_F(FileListTest, ARenameReplacesAfterTheNameWasToldToBeTaken) {
  options.FileList_Filter_Active = 1;
  options.FileList_Filter_Text = u"a,b,c";
  folder.file("a", 7);
  folder.file("b", 9);
  folder.file("hidden", 11);
  show();
  const std::tuple<TextView, TextView, std::optional<std::int64_t>> cases[] = {
      {u"a", u"b", 9}, {u"b", u"hidden", 11}, {u"hidden", u"c", std::nullopt}};
  for (const auto& [from, to, replaced] : cases) {
    EXPECT_EQ(list.nameIsTaken(rowOf(from), to), replaced.has_value());
    const FileList::Renaming done = list.rename(rowOf(from), to);
    EXPECT_EQ(done.error, u"");
    ASSERT_EQ(done.replaced.has_value(), replaced.has_value()) << toBytes(to);
    if (replaced) {
      EXPECT_EQ(xGetFileSizeByWFD_W(*done.replaced), *replaced);
    }
    EXPECT_EQ(names(), std::vector<Text>{Text(to)});
    EXPECT_EQ(list.sum(), 7);
    EXPECT_EQ(list.grid().identity(0), identityOnDisk(0));
  }
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"c"});
}

TEST_F(FileListTest, RowsThatGoTakeTheirBytesAndLeaveTheOthersTheirs) {
  for (int i = 0; i < 40; ++i)
    folder.file("f" + std::to_string(i), 100 + i);
  folder.symlink("link", "f0");
  folder.file("dumb", 9);
  const ScopedFault fault({Call::Statx, "dumb", EACCES});
  show();
  list.grid().sort(list.grid().column(u"name"), true);
  std::vector<std::uint32_t> ids;
  for (int i = 0; i < 30; ++i)
    ids.push_back(list.grid().id(rowOf(u"f" + toText(i))));
  ids.push_back(ids.front());
  list.removeRows(ids);
  list.removeRows(ids);
  ASSERT_EQ(names().size(), 12U);
  EXPECT_EQ(list.sum(), 1000 + 345 + 2);
  for (Grid::RowIndex row = 0; row < names().size(); ++row) {
    const bool isKnown = text(row, u"name") != u"dumb";
    EXPECT_EQ(list.grid().identity(row), isKnown ? identityOnDisk(row) : platform::FileIdentity());
  }
}

TEST_F(FileListTest, ARenameThatCannotBeLeavesAllAsItWas) {
  folder.file("a", 7);
  folder.file("sub/kept", 1);
  folder.hardlink("twin", "a");
  show();
  const std::tuple<TextView, TextView, bool> cases[] = {
      {u"", u"", false},
      {u"a", u"", false},
      {u"sub/a", u"Ein Dateiname darf kein '/' enthalten.", false},
      {u"../a", u"Ein Dateiname darf kein '/' enthalten.", false},
      {u"sub", u"Einen Ordner 'sub' gibt es dort schon. Ein Ordner wird nicht ersetzt.", false},
      {u"twin", u"'a' und 'twin' sind zwei Namen derselben Datei.", true},
  };
  for (const auto& [name, error, isTaken] : cases) {
    EXPECT_EQ(list.nameIsTaken(rowOf(u"a"), name), isTaken) << toBytes(name);
    EXPECT_EQ(list.rename(rowOf(u"a"), name).error, error) << toBytes(name);
    EXPECT_EQ(list.grid().rowCount(), 2U);
    EXPECT_EQ(text(rowOf(u"a"), u"fullpath"), folder.text("a"));
    EXPECT_TRUE(xExistFile(folder.text("a")));
  }
}

}  // namespace
}  // namespace ombrelian
