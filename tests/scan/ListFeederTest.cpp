#include "scan/ListFeeder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <set>

#include "tests/testing/Lists.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

class ListFeederTest : public ScanFixture {
 protected:
  ListFeederTest() { turnAllListsOn(options); }

  /// All cells of a list, row after row, without dates.
  std::vector<Text> cells(ListId list) {
    Grid& grid = lists.grid(list);
    const CellFormat format(grid.columns(), {}, {});
    std::vector<Text> found;
    for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row) {
      for (const Column& column : grid.columns()) {
        if (column.kind != CellKind::Timestamp) found.push_back(grid.cellText(format, row, column));
      }
    }
    return found;
  }

  std::vector<std::int64_t> sizes(ListId list) { return numbers(lists.grid(list), u"size"); }

  SystemFileTypes types;
  ListFeeder lists{options, filters, types};
};

TEST_F(ListFeederTest, AGeneratedTreeGivesWhatSortingEverythingGives) {
  std::vector<std::int64_t> files;
  std::vector<std::int64_t> folders(41);
  for (int i = 0; i < 1500; ++i) {
    const std::size_t number = std::size_t(i) % folders.size();
    files.push_back(std::int64_t(i) * 7919 % 977 + 1);  // with ties
    folders[number] += files.back();
    folder.file(
        "f" + std::to_string(number % 5) + "/f" + std::to_string(number) + "/" + std::to_string(i),
        files.back());
  }
  std::sort(files.begin(), files.end());
  std::sort(folders.begin(), folders.end());
  const auto head = [](std::vector<std::int64_t> all, std::int32_t limit, bool largest) {
    if (largest) std::reverse(all.begin(), all.end());
    all.resize(std::min(all.size(), std::size_t(limit)));
    return all;
  };
  for (const std::int32_t limit : {5, 20, 999}) {
    options.TopMaxCount.fill(limit);
    scan(folder.text(), &lists);
    EXPECT_EQ(sizes(ListId::LargestFiles), head(files, limit, true));
    EXPECT_EQ(sizes(ListId::SmallestFiles), head(files, limit, false));
    EXPECT_EQ(sizes(ListId::LargestFolders), head(folders, limit, true));
    EXPECT_EQ(sizes(ListId::SmallestFolders), head(folders, limit, false));
    EXPECT_EQ(sizes(ListId::NewestFiles).size(), std::size_t(limit));
    EXPECT_EQ(sizes(ListId::OldestFiles).size(), std::size_t(limit));
  }
}

TEST_F(ListFeederTest, HardlinksCountOnceAndStandInTheirList) {
  const TestFolder outside;
  options.AddHardlinksOnlyOnce = 1;
  folder.file("a/one.txt", 100);
  folder.file("b/alone", 7);
  folder.hardlink("b/two.txt", "a/one.txt");
  ASSERT_EQ(link(folder.path("a/one.txt").c_str(), outside.path("three").c_str()), 0);
  const NodeIndex root = scan(folder.text(), &lists);
  EXPECT_EQ(tree[root].size, 107);
  EXPECT_EQ(tree[root].files, 3);
  const Grid& grid = lists.grid(ListId::Hardlinks);
  ASSERT_EQ(numbers(grid, u"links"), (std::vector<std::int64_t>{3, 3}));
  EXPECT_EQ(sizes(ListId::Hardlinks), (std::vector<std::int64_t>{100, 100}));
  EXPECT_EQ(grid.text(0, grid.column(u"id")), grid.text(1, grid.column(u"id")));
  const std::vector<Text> names = texts(grid, u"name");
  const std::vector<Text> paths = texts(grid, u"path");
  EXPECT_EQ((std::set<Text>{paths[0] + names[0], paths[1] + names[1]}),
            (std::set<Text>{folder.text("a/one.txt"), folder.text("b/two.txt")}));
  EXPECT_EQ(sizes(ListId::Extensions), (std::vector<std::int64_t>{200, 7}));  // all names
}

TEST_F(ListFeederTest, TwoRunsGiveTheSame) {
  folder.file("a/x.txt", 10);
  folder.hardlink("a/y.txt", "a/x.txt");
  folder.file("b/empty");
  folder.symlink("b/link", "../a");
  options.CreateList100SmallestFilesIgnore = 1;
  std::vector<std::vector<Text>> first;
  for (int run = 0; run < 2; ++run) {
    scan(folder.text(), &lists);
    EXPECT_EQ(options.CreateList100SmallestFilesIgnoreNumber, 0);
    std::vector<std::vector<Text>> all;
    for (const ListId list : kDerivedLists)
      all.push_back(cells(list));
    if (run == 0) first = all;
    EXPECT_EQ(all, first);
  }
  EXPECT_EQ(sizes(ListId::SmallestFiles), (std::vector<std::int64_t>{0, 10, 10}));
  const Grid& junctions = lists.grid(ListId::Junctions);
  EXPECT_EQ(texts(junctions, u"junction"), std::vector<Text>{folder.text("b/link")});
  EXPECT_EQ(texts(junctions, u"target"), std::vector<Text>{u"../a"});
  const Grid& owners = lists.grid(ListId::Owners);
  if (!context.KeepsOwners) return;
  for (const auto& [key, number] : {std::pair(u"files", 3), {u"folders", 3}, {u"size", 20}})
    EXPECT_EQ(numbers(owners, key), std::vector<std::int64_t>{number});
}

TEST_F(ListFeederTest, RowsAreCompletedAfterTheWalk) {
  folder.file("sub/Photo.Final.JPG", 10);
  scan(folder.text(), &lists);
  for (const ListId list : {ListId::LargestFiles, ListId::OldestFiles}) {
    Grid& grid = lists.grid(list);
    ASSERT_EQ(grid.rowCount(), 1U);
    EXPECT_EQ(grid.text(0, grid.column(u"ext")), u"JPG");
    EXPECT_EQ(grid.text(0, grid.column(u"path")), folder.text("sub/"));
    EXPECT_GT(grid.real(0, grid.column(u"datemodified")), 40'000);
    EXPECT_NE(std::uint32_t(grid.number(0, grid.column(u"attr"))), UINT32_MAX);
  }
  Grid& folders = lists.grid(ListId::LargestFolders);
  ASSERT_EQ(folders.rowCount(), 1U);
  EXPECT_EQ(folders.text(0, folders.column(u"name")), folder.text("sub"));
  EXPECT_NE(folders.number(0, folders.column(u"attr")) & platform::kAttributeDirectory, 0);
}

TEST_F(ListFeederTest, RowsOfFilesKnowWhichFileTheyShow) {
  constexpr int kFiles = 400;  // more than the lists hold before they are trimmed
  for (int i = 0; i < kFiles; ++i)
    folder.file("f" + std::to_string(i % 7) + "/" + std::to_string(i), i * 7919 % kFiles + 1);
  for (int i = 0; i < 20; ++i)
    folder.hardlink("f0/twin" + std::to_string(i), "f0/" + std::to_string(7 * i));
  std::fill(std::begin(options.TopMaxCount), std::end(options.TopMaxCount), 20);
  scan(folder.text(), &lists);
  for (const ListId list : kDerivedLists) {
    const Grid& grid = lists.grid(list);
    const bool isOfFiles = listRow(list).rows == RowKind::File;
    if (isOfFiles) {
      EXPECT_GE(grid.rowCount(), 20U) << toBytes(listRow(list).key);
    }
    for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row) {
      platform::FileIdentity expected;
      if (isOfFiles) {
        struct stat told = {};
        const Text path =
            Text(grid.text(row, grid.column(u"path"))) + Text(grid.text(row, grid.column(u"name")));
        ASSERT_EQ(lstat(toBytes(path).c_str(), &told), 0);
        expected = {told.st_dev, told.st_ino};
      }
      EXPECT_EQ(grid.identity(row), expected) << toBytes(listRow(list).key) << " " << row;
    }
  }
}

TEST_F(ListFeederTest, ListsOfOneRunOutliveARunOfSeveralSources) {
  folder.file("a/x", 10);
  scan(folder.text(), &lists);
  std::deque<Text> queue = {folder.text(), folder.text("a")};
  ScanRun(state(&lists)).Ordnerliste_Abarbeiten(queue);
  EXPECT_EQ(sizes(ListId::LargestFiles), (std::vector<std::int64_t>{10}));
  options.CreateList100LargestFiles = 0;
  scan(folder.text(), &lists);
  EXPECT_TRUE(sizes(ListId::LargestFiles).empty());
}

}  // namespace
}  // namespace ombrelian
