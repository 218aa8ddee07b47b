// The list of drives of this machine, with answers that a test defines.

#include "lists/DriveList.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>

#include "export/ListJson.h"
#include "export/ListSave.h"
#include "settings/SavedFolders.h"
#include "tests/testing/Lists.h"
#include "tests/testing/OwnMounts.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;
using platform::DriveAnswer;

constexpr std::int64_t kGB = std::int64_t(1) << 30;

class DriveListTest : public ::testing::Test {
 protected:
  /// Records the queried drives. The answer for "/" is `answer`; all other drives hang.
  std::vector<DriveAnswer> probe(const std::vector<Text>& roots) {
    asked.push_back(roots);
    std::vector<DriveAnswer> answers(roots.size());
    for (std::size_t i = 0; i < roots.size(); ++i) {
      if (roots[i] == u"/") answers[i] = answer;
    }
    return answers;
  }

  std::vector<Text> remembered() const { return Drives_LoadSavedNetworkFolders(file); }

  Text text(Grid::RowIndex row, TextView key) {
    return Text(list.grid().text(row, list.grid().column(key)));
  }

  std::vector<Text> networkPaths() {
    std::vector<Text> paths = texts(list.grid(), u"drive");
    std::erase_if(paths, [](const Text& path) { return !isNetworkPath(path); });
    return paths;
  }

  Text cell(Grid::RowIndex row, TextView key) {
    const CellFormat format(list.grid().columns(), listSizes(options, ListId::Drives), {});
    return list.grid().cellText(format, row, list.grid().column(key));
  }

  const ScopedLocale locale{"C"};
  const TestFolder folder;
  Options options;
  IniStore file{folder.text("settings.ini")};
  DriveAnswer answer{platform::kSuccess, {25 * kGB, 100 * kGB, 4096}};
  std::vector<std::vector<Text>> asked;
  DriveList list{[this](const std::vector<Text>& roots, unsigned) { return probe(roots); }};
};

TEST_F(DriveListTest, ADriveTellsItsSpaceInThreeColumns) {
  std::vector<Text> progress;
  list.Drives_GetAllDrives(file, [&](TextView text) { progress.emplace_back(text); });
  const Grid::RowIndex row = list.rowOfDrive(u"/");
  ASSERT_NE(row, Grid::kNoRow);
  const std::pair<TextView, TextView> cells[] = {
      {u"SizeTotalBytes", u"100.00"},  {u"SizeFreeBytes", u"25.00"},
      {u"SizeUsedBytes", u"75.00"},    {u"PercentSizeFree", u"25.00%"},
      {u"PercentSizeUsed", u"75.00%"}, {u"cluster", u"4"}};
  for (const auto& [key, value] : cells)
    EXPECT_EQ(cell(row, key), value);
  EXPECT_NE(text(row, u"filesystem"), u"");
  EXPECT_NE(text(row, u"type"), u"");
  EXPECT_FALSE(list.hasError(row));
  EXPECT_EQ(list.folderOf(row), u"/");
  EXPECT_GT(list.readAt(), 0);
  EXPECT_EQ(asked.size(), 1U);  // one query for all drives
  EXPECT_EQ(progress.size(), list.grid().rowCount());
  EXPECT_EQ(progress.front(), u"Laufwerk " + text(0, u"drive") + u" (1/" + toText(progress.size()) +
                                  u") wird untersucht...");
  answer = {platform::kSuccess, {0, 0, 512}};
  list.Drives_GetAllDrives(file);
  EXPECT_FALSE(list.hasError(row));
  EXPECT_EQ(cell(row, u"PercentSizeUsed"), u"") << "a drive without room has no shares";
  EXPECT_EQ(list.toolTipValues(row).total, 0);
}

TEST_F(DriveListTest, ADriveThatFailedHasNoValuesInAnyForm) {
  const std::pair<platform::ErrorCode, TextView> cases[] = {
      {platform::kInputOutputError, u"Input/output error"},
      {platform::kNetworkGone, u"Der Laufwerksbuchstabe ist momentan nicht verbunden"},
      {platform::kTimeout, u"Das Laufwerk antwortet nicht."}};
  for (const auto& [error, told] : cases) {
    answer = {error, {}};
    list.Drives_GetAllDrives(file);
    const Grid::RowIndex row = list.rowOfDrive(u"/");
    EXPECT_TRUE(list.hasError(row));
    EXPECT_EQ(list.errorText(row), told);
    const CellFormat format(list.grid().columns(), listSizes(options, ListId::Drives), {});
    for (const TextView key : {u"SizeTotalBytes", u"SizeFreeBytes", u"SizeUsedBytes",
                               u"PercentSizeFree", u"PercentSizeUsed", u"cluster"}) {
      const Column& column = list.grid().column(key);
      Text plain;
      format.appendPlain(list.grid(), row, column, plain);
      EXPECT_EQ(cell(row, key) + plain, u"") << toBytes(key);
      EXPECT_FALSE(list.grid().hasValue(row, column));
    }
    EXPECT_EQ(FormatToolTipText_DriveSize(list.toolTipValues(row), DriveSizeKind::Free), u"");
  }
  std::string json;
  writeListJson(u"drives", u"", list.grid(), 999,
                [&](std::string_view piece) { return json += piece, true; });
  EXPECT_NE(json.find("\"SizeTotalBytes\":null,\"SizeFreeBytes\":null,\"PercentSizeFree\":null"),
            std::string::npos);
  EXPECT_EQ(json.find("inf"), std::string::npos);
  const CellFormat inHeader(list.grid().columns(), {kUnitMB, true, false}, {});
  EXPECT_EQ(inHeader.caption(list.grid().column(u"SizeFreeBytes")), u"Frei (MB)");
  EXPECT_EQ(inHeader.fieldKey(list.grid().column(u"SizeFreeBytes")), u"SizeFreeMB");
  QuietInterface ui;
  const ListToSave save = {
      u"", list.grid(), {}, listSizes(options, ListId::Drives), {{}, list.readAt()}};
  const auto report = [&](ReportFormat format) {
    EXPECT_FALSE(saveList(save, options, format, folder.text("drives"), u";", ui));
    return toBytes(readReport(folder.path("drives")));
  };
  EXPECT_NE(report(ReportFormat::CSV).find(R"("/";"";"";"";"";"";)"), std::string::npos);
  EXPECT_NE(report(ReportFormat::XML).find("<PercentSizeFree/>"), std::string::npos);
  EXPECT_EQ(report(ReportFormat::HTML).find("%</td>"), std::string::npos);
}

TEST_F(DriveListTest, EveryMountIsARowAndTheTipOfADriveNamesTheOthersOfItsDevice) {
  list.setShowsAllMounts(true);
  list.Drives_GetAllDrives(file);
  const std::vector<Text> all = texts(list.grid(), u"drive");
  EXPECT_THAT(all, ::testing::Contains(u"/proc"));
  const std::vector<Text> others = list.toolTipValues(list.rowOfDrive(u"/")).otherPlaces;
  EXPECT_THAT(all, ::testing::IsSupersetOf(others));
  EXPECT_THAT(others, ::testing::Not(::testing::Contains(u"/")));
}

TEST_F(DriveListTest, ADriveHasTheLabelThatTheSystemKeepsForItsDevice) {
  struct stat root;
  ASSERT_EQ(stat("/", &root), 0);
  folder.folder("disk/by-label");
  const std::string link = folder.path("disk/by-label/My\\x20\u00E4 disk");
  if (mknod(link.c_str(), S_IFBLK | 0600, root.st_dev) != 0)
    GTEST_SKIP() << "this user may not make devices";
  runWithOwnMounts([&] {
    mountAt("/dev");
    ASSERT_EQ(mkdir("/dev/disk", 0755), 0);
    mountAt("/dev/disk", folder.path("disk"));
    list.Drives_GetAllDrives(file);
    EXPECT_EQ(text(list.rowOfDrive(u"/"), u"name"), u"My \u00E4 disk");
  });
}

TEST_F(DriveListTest, DrivesWithoutValuesComeFirstInOrder) {
  list.Drives_GetAllDrives(file);
  list.Drives_AddUNCpath(u"//no-such-server/share", file);
  for (const TextView key : {u"PercentSizeFree", u"SizeTotalBytes"}) {
    const Column& column = list.grid().column(key);
    list.grid().sort(column, false);
    EXPECT_FALSE(list.grid().hasValue(0, column));
    list.grid().sort(column, true);
    EXPECT_EQ(text(0, u"drive"), u"/");
  }
  list.Drives_GetAllDrives(file);
  EXPECT_EQ(text(0, u"drive"), u"/");  // the order is kept
}

TEST_F(DriveListTest, OnlyNetworkPathsAreAdded) {
  list.Drives_GetAllDrives(file);
  const Text drives = toText(list.grid().rowCount()) + u" Laufwerk(e)";
  EXPECT_EQ(list.List_Drives_ShowStat(), drives);
  const std::pair<TextView, TextView> cases[] = {
      // The typed path, and the resulting drive; empty: the path is refused.
      {u"", u""},
      {u"//", u""},
      {u"\\\\", u""},
      {u"C:\\x", u""},
      {u"/mnt", u""},
      {u"//server/share", u"//server/share/"},
      {u"\\\\server\\share", u"//server/share/"},
      {u"server:/export/", u"server:/export/"},
  };
  std::vector<Text> expected;
  for (const auto& [typed, drive] : cases) {
    EXPECT_EQ(list.Drives_AddUNCpath(typed, file), !drive.empty()) << toBytes(typed);
    if (!drive.empty()) expected.emplace_back(drive);
  }
  EXPECT_EQ(networkPaths(), expected);
  EXPECT_EQ(remembered(), expected);
  const Grid::RowIndex row = list.rowOfDrive(u"//server/share");
  EXPECT_EQ(text(row, u"type"), u"Netzlaufwerk");
  EXPECT_EQ(text(row, u"filesystem"), u"?");
  EXPECT_EQ(list.errorText(row), u"#53 - Der Netzwerkpfad ist nicht eingehängt.");
  EXPECT_EQ(list.List_Drives_ShowStat(), drives + u" und 3 Netzwerkpfad(e)");
}

TEST_F(DriveListTest, RememberedPathsComeBackAndAreLostOnlyWhenRemoved) {
  Optionen_Speichern_Drives_SaveNetworkFolders({u"//a/b/", u"//a/b/", u"host:/d/"}, file);
  // Stored paths must not be lost if the list was not read yet.
  list.Optionen_Speichern_Drives_SaveNetworkFolders(file);
  EXPECT_TRUE(list.Drives_AddUNCpath(u"//new/x", file));
  const std::vector<Text> all = {u"//a/b/", u"//a/b/", u"host:/d/", u"//new/x/"};
  EXPECT_EQ(remembered(), all);
  list.Drives_GetAllDrives(file);
  EXPECT_EQ(networkPaths(), all);

  EXPECT_FALSE(list.Drives_RemoveDrive(list.rowOfDrive(u"/"), file));
  EXPECT_TRUE(list.Drives_RemoveDrive(list.rowOfDrive(u"host:/d"), file));
  EXPECT_EQ(list.rowOfDrive(u"host:/d"), Grid::kNoRow);
  EXPECT_NE(list.rowOfDrive(u"/"), Grid::kNoRow);
  EXPECT_EQ(remembered(), (std::vector<Text>{u"//a/b/", u"//a/b/", u"//new/x/"}));
}

TEST_F(DriveListTest, ADriveIsRefreshedByAnyPathOnIt) {
  list.Drives_GetAllDrives(file);
  list.Drives_AddUNCpath(u"//a/b", file);
  const std::size_t rows = list.grid().rowCount();
  asked.clear();
  answer = {platform::kInputOutputError, {}};
  list.Drives_RefreshDrive(u"/no/such/folder");
  EXPECT_EQ(asked, (std::vector<std::vector<Text>>{{u"/"}}));
  const Grid::RowIndex row = list.rowOfDrive(u"/");
  EXPECT_TRUE(list.hasError(row));
  EXPECT_EQ(cell(row, u"SizeFreeBytes"), u"");
  answer = {platform::kSuccess, {50 * kGB, 100 * kGB, 4096}};
  list.Drives_RefreshDrive(u"/");
  EXPECT_FALSE(list.hasError(row));
  EXPECT_EQ(cell(row, u"PercentSizeFree"), u"50.00%");
  list.Drives_RefreshDrive(u"//a/b/c");
  EXPECT_TRUE(list.hasError(list.rowOfDrive(u"//a/b")));
  EXPECT_EQ(list.grid().rowCount(), rows);
}

TEST_F(DriveListTest, NothingChangesWhileAReadingTellsItsProgress) {
  list.Drives_GetAllDrives(file);
  const std::size_t rows = list.grid().rowCount();
  int calls = 0;
  list.Drives_GetAllDrives(file, [&](TextView) {
    ++calls;
    list.Drives_GetAllDrives(file);
    list.Drives_RefreshDrive(u"/");
    EXPECT_FALSE(list.Drives_AddUNCpath(u"//a/b", file));
    EXPECT_EQ(list.grid().rowCount(), rows);
  });
  EXPECT_GT(calls, 0);
  EXPECT_EQ(asked.size(), 2U);
}

}  // namespace
}  // namespace ombrelian
