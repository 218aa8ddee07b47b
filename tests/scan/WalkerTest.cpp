// Tests what a run reads, counts, logs and adds to its lists, and what a rescan changes.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <set>

#include "lists/FolderReport.h"
#include "platform/Accounts.h"
#include "scan/ListFeeder.h"
#include "scan/Rescan.h"
#include "tests/testing/Faults.h"
#include "tests/testing/Lists.h"
#include "tests/testing/OwnMounts.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

class WalkerTest : public ScanFixture {};

TEST_F(WalkerTest, TotalsRollUp) {
  folder.file("a/one", 100);
  folder.file("a/deep/two", 30);
  folder.file("a/deep/three", 3);
  folder.folder("empty");
  folder.file("root file", 7);
  const NodeIndex root = scan(folder.text());
  const std::pair<TextView, ScanTotals> cases[] = {{u"", {140, 4, 3, 0, 0, 0}},
                                                   {u"a", {133, 3, 1, 0, 0, 0}},
                                                   {u"a/deep", {33, 2, 0, 0, 0, 0}},
                                                   {u"empty", {}}};
  for (const auto& [path, expected] : cases)
    EXPECT_EQ(totals(find(root, path)), expected) << toBytes(path);
  EXPECT_EQ(tree[root].subfolders, 2);
  EXPECT_EQ(tree[root].name(), folder.text());
  EXPECT_NE(tree.facts(root).created, 0);
  EXPECT_FALSE(tree[root].has(FolderNode::HasOwner));
  options.CreateListOwner = 1;
  const NodeIndex owned = scan(folder.text());
  for (const NodeIndex node : {owned, find(owned, u"a")})
    EXPECT_EQ(tree.ownerText(tree[node].owner), platform::GetUserNameW());
  // Direct files have a row of their own beside subfolders, and only there.
  const NodeIndex pseudo = find(root, u"a/Dateien");
  ASSERT_NE(pseudo, kNoNode);
  EXPECT_FALSE(tree[pseudo].has(FolderNode::IsFolder));
  EXPECT_EQ(tree[pseudo].size, 100);
  EXPECT_EQ(find(root, u"a/deep/Dateien"), kNoNode);
  EXPECT_EQ(tree.MaxFolderDepth(), 2U);
}

TEST_F(WalkerTest, AnUnlistableFolderIsMarkedCountedAndLogged) {
  folder.file("denied/hidden", 5);
  folder.file("open/seen", 3);
  const ScopedFault denied({Call::Openat, "denied", EACCES});
  const NodeIndex root = scan(folder.text());
  const NodeIndex node = find(root, u"denied");
  EXPECT_TRUE(tree[node].has(FolderNode::IsError));
  EXPECT_FALSE(tree.errorText(node).empty());
  EXPECT_EQ(totals(root), (ScanTotals{3, 1, 2, 1, 0, 0}));
  EXPECT_EQ(tree[node].errors, 1);
  const std::vector<LogRow>& rows = log.rows();
  const auto isError = [](const LogRow& row) { return row.isError; };
  ASSERT_EQ(std::count_if(rows.begin(), rows.end(), isError), 1);
  const Text& text = std::find_if(rows.begin(), rows.end(), isError)->text;
  EXPECT_TRUE(text.starts_with(u"ERROR: ")) << toBytes(text);
  EXPECT_TRUE(text.ends_with(u"(" + folder.text("denied/") + u")")) << toBytes(text);
}

TEST_F(WalkerTest, ASourceCannotFillTheLog) {
  const TestFolder many(TestFolder::Place::Memory);
  for (int i = 0; i < 1234; ++i)
    many.folder("denied" + std::to_string(i));
  const ScopedFault denied({Call::Openat, "denied", EACCES});
  const NodeIndex root = scan(many.text());
  EXPECT_EQ(tree[root].errors, 1234);
  const auto isError = [](const LogRow& row) { return row.isError; };
  EXPECT_EQ(std::count_if(log.rows().begin(), log.rows().end(), isError), 1001);
  EXPECT_NE(std::find_if(log.rows().begin(), log.rows().end(),
                         [](const LogRow& row) { return row.text.ends_with(u": 234"); }),
            log.rows().end());
}

TEST_F(WalkerTest, WhatFailsIsCountedWhereItIsNoVanishedFolder) {
  const TestFolder memory(TestFolder::Place::Memory);
  memory.file("sub/file", 9);
  memory.file("other", 1);
  const struct {
    testing::Fault fault;
    ScanTotals totals;
    const char* failed;  // folder that is marked; null: none
  } cases[] = {
      {{Call::Getdents, {}, EIO}, {0, 0, 0, 1, 0, 0}, ""},
      // Each folder needs two calls here, first the source; the second call for "sub" fails.
      {{Call::Getdents, {}, EIO, 3, 1}, {10, 2, 1, 1, 0, 0}, "sub"},
      {{Call::Statx, "other", EACCES}, {9, 2, 1, 1, 0, 0}, nullptr},
      {{Call::Openat, "sub", ENOENT}, {1, 1, 1, 0, 0, 0}, nullptr},
      // If a source vanishes after its check, this is an error; for a folder it is not.
      {{Call::Openat, "ombrelian-test", ENOENT}, {0, 0, 0, 1, 0, 0}, ""},
  };
  for (const auto& c : cases) {
    const ScopedFault fault(c.fault);
    const NodeIndex root = scan(memory.text());
    EXPECT_EQ(totals(root), c.totals) << &c - cases;
    if (c.failed == nullptr) continue;
    EXPECT_TRUE(tree[find(root, fromBytes(c.failed))].has(FolderNode::IsError)) << &c - cases;
  }
}

TEST_F(WalkerTest, ASilentRunTellsItsProgressToo) {
  struct : QuietInterface {
    void scanProgress(TextView, std::int64_t, std::int64_t, std::int64_t) override { ++told; }
    int told = 0;
  } counting;
  context.SilentMode = true;
  std::deque<Text> queue = {folder.text()};
  folder.file("file");
  ScanRun({options, tree, context, filters, log, counting, nullptr}).Ordnerliste_Abarbeiten(queue);
  EXPECT_GT(counting.told, 0);
}

TEST_F(WalkerTest, LinksAreCountedNotFollowed) {
  folder.file("real/file", 10);
  folder.symlink("real/up", "..");
  folder.symlink("toReal", "real");
  folder.symlink("dangling", "nowhere");
  const NodeIndex root = scan(folder.text());
  // A link to a folder is a junction; a dangling link is a file with the length of the link.
  EXPECT_EQ(totals(root), (ScanTotals{17, 2, 3, 0, 0, 2}));
  const NodeIndex link = find(root, u"toReal");
  EXPECT_TRUE(tree[link].has(FolderNode::IsJunction));
  EXPECT_EQ(tree.junctionTarget(link), u"real");
  EXPECT_EQ(tree[link].junctions, 1);
  EXPECT_EQ(tree[link].dateModified, 0) << "what is not entered has no dates";
  // Without the dangling link; the junctions are hidden by an option.
  ASSERT_EQ(unlink(folder.path("dangling").c_str()), 0);
  options.NoHardlinks = 1;
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{10, 1, 1, 0, 0, 2}));
  EXPECT_EQ(find(result.lastRoot, u"toReal"), kNoNode);

  // With followed links, "toReal" is counted too. The links to the source in "real" and in "toReal"
  // are not followed.
  options.ScanHardlinks = 1;
  const NodeIndex entered = scan(folder.text());
  EXPECT_EQ(totals(entered), (ScanTotals{20, 2, 4, 0, 0, 3}));
  EXPECT_EQ(tree[find(entered, u"toReal")].size, 10);
  EXPECT_NE(tree[find(entered, u"toReal")].dateModified, 0);

  // Neither a scan of a folder nor a rescan enters a link to a folder above, on any path to that
  // folder.
  folder.symlink("real/back", folder.path("toReal"));
  EXPECT_EQ(totals(scan(folder.text("toReal"))), (ScanTotals{10, 1, 2, 0, 0, 2}));
  const NodeIndex again = find(scan(folder.text()), u"toReal");
  const ScanTotals before = totals(again);
  Rescan(state(), nullptr).Report_Rescan(again);
  EXPECT_EQ(totals(again), before);
  const NodeIndex refused = find(again, u"up");
  EXPECT_EQ(Rescan(state(), nullptr).Report_Rescan(refused), kNoNode);
}

TEST_F(WalkerTest, HardlinksCountOnceIfAsked) {
  folder.file("a/one", 50);
  folder.hardlink("a/two", "a/one");
  folder.file("b/alone", 1);
  folder.hardlink("b/three", "a/one");
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{151, 4, 2, 0, 0, 0}));
  options.AddHardlinksOnlyOnce = 1;
  for (int run = 0; run < 2; ++run)  // each run counts from zero
    EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{51, 4, 2, 0, 3, 0}));
}

TEST_F(WalkerTest, ACancelKeepsWhatIsFinished) {
  for (int i = 0; i < 20; ++i)
    folder.file("file" + std::to_string(i), 10);
  cancelAfter(5);
  const NodeIndex root = scan(folder.text());
  EXPECT_TRUE(result.cancelled);
  EXPECT_TRUE(tree[root].has(FolderNode::IsIncomplete));
  EXPECT_EQ(tree[root].size, 0) << "the files of a folder under way stay out of the tree";
  EXPECT_GT(result.sum.Files, 0);
  EXPECT_LT(result.sum.Files, 20);
  EXPECT_EQ(result.sum.Size, result.sum.Files * 10);
  EXPECT_EQ(context.ScanCancelState, kScanIdle);
  EXPECT_EQ(logTexts()[logTexts().size() - 2], u"Der Vorgang wurde vom Anwender abgebrochen!");
  // The sources that still wait are dropped.
  cancelAfter(1);
  std::deque<Text> queue = {folder.text(), folder.text()};
  const RunResult cancelled = ScanRun(state()).Ordnerliste_Abarbeiten(queue);
  EXPECT_TRUE(cancelled.cancelled && queue.empty() && !context.ScanBusy);
  EXPECT_EQ(cancelled.sourcesScanned, 1);
}

TEST_F(WalkerTest, WhatFiltersLeaveOutIsNotThere) {
  folder.file("keep/a.jpg", 1);
  folder.file("keep/b.tmp", 10);
  folder.file("cache/c.jpg", 100);
  folder.file("keep/deep/cache/d.jpg", 1000);
  options.FolderList_FilterFolderExclude_Active = 1;
  options.FolderList_FilterFolderExclude_Text = u"*/keep/deep/CACHE";
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"*.TMP";
  context.helpers = 3;
  NodeIndex root = kNoNode;
  {
    const ScopedFault opening({Call::Openat, "cache", EACCES});
    root = scan(folder.text("keep"));
    EXPECT_EQ(opening.hits(), 0) << "it is not read ahead either";
  }
  EXPECT_EQ(totals(root), (ScanTotals{1, 1, 1, 0, 0, 0}));
  root = scan(folder.text());
  EXPECT_EQ(totals(root), (ScanTotals{101, 2, 3, 0, 0, 0}));
  EXPECT_EQ(find(root, u"keep/deep/cache"), kNoNode);
  // A changed option applies from the next source on.
  options.FolderList_FilterFolderExclude_Text = u"cache";
  options.FolderList_FilterFilesExclude_Active = 0;
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{11, 2, 2, 0, 0, 0}));
}

TEST_F(WalkerTest, AHundredThousandLevels) {
  constexpr int kLevels = 100'000;
  const TestFolder deep(TestFolder::Place::Memory);
  const int innermost = deep.chain("d", kLevels);
  const int file = openat(innermost, "file", O_WRONLY | O_CREAT, 0644);
  ASSERT_EQ(ftruncate(file, 77), 0);
  close(file);
  close(innermost);
  const NodeIndex root = scan(deep.text());
  EXPECT_EQ(totals(root), (ScanTotals{77, 1, kLevels, 0, 0, 0}));
  EXPECT_EQ(tree.MaxFolderDepth(), std::uint32_t(kLevels));
  NodeIndex deepest = root;
  while (tree[deepest].hasChildren())
    deepest = tree[deepest].firstChild;
  EXPECT_EQ(tree[deepest].size, 77);
  EXPECT_EQ(Report_GetFullpathOfNode(tree, deepest, true, false).size(), kLevels * 2U - 1);
}

TEST_F(WalkerTest, WhatSomethingIsMountedOnIsAJunction) {
  folder.file("real/file", 10);
  folder.file("real/hosts", 3);
  folder.folder("real/mounted");
  runWithOwnMounts([&] {
    mountAt(folder.path("real/mounted"), folder.path("real"));
    mountAt(folder.path("real/hosts"), folder.path("real/file"));
    options.CreateListJunction = options.CreateList100LargestFiles = 1;
    SystemFileTypes types;
    ListFeeder lists(options, filters, types);
    const NodeIndex root = scan(folder.text(), &lists);
    // The mounted file counts, but without the size of the file that it covers.
    const ScanTotals expected = {10, 2, 2, 0, 0, 2};
    EXPECT_EQ(totals(root), expected);
    EXPECT_EQ(numbers(lists.grid(ListId::LargestFiles), u"size"), std::vector<std::int64_t>{10});
    const Grid& junctions = lists.grid(ListId::Junctions);
    EXPECT_THAT(
        texts(junctions, u"junction"),
        ::testing::UnorderedElementsAre(folder.text("real/hosts"), folder.text("real/mounted")));
    for (const Text& target : texts(junctions, u"target"))
      EXPECT_TRUE(target.ends_with(u"]")) << toBytes(target);
    EXPECT_TRUE(tree[find(root, u"real/mounted")].has(FolderNode::IsMountPoint));
    // With followed links, the bind mount is a folder above itself.
    options.ScanHardlinks = 1;
    EXPECT_EQ(totals(scan(folder.text())), expected);
  });
}

TEST_F(WalkerTest, EntriesWithoutFactsAreOneErrorOfTheirFolderAndInNoListByFacts) {
  folder.file("a/known", 10);
  for (const char* name : {"a/hidden1", "a/hidden2"})
    folder.file(name, 5);
  for (const ListId list : kDerivedLists)
    options.*listRow(list).isOn = 1;
  options.CreateList100OldestFilesDate = 1;
  SystemFileTypes types;
  ListFeeder lists(options, filters, types);
  const ScopedFault denied({Call::Statx, "hidden", EACCES});
  const NodeIndex root = scan(folder.text(), &lists);
  EXPECT_EQ(totals(root), (ScanTotals{10, 3, 1, 1, 0, 0}));
  EXPECT_FALSE(tree.errorText(find(root, u"a")).empty());
  for (const ListId list :
       {ListId::LargestFiles, ListId::SmallestFiles, ListId::NewestFiles, ListId::OldestFiles})
    EXPECT_EQ(texts(lists.grid(list), u"name"), std::vector<Text>{u"known"});
  EXPECT_THAT(texts(lists.grid(ListId::Owners), u"owner"), ::testing::Contains(u"-Unbekannt-"));
}

TEST_F(WalkerTest, LogTellsWhatWasFound) {
  folder.file("sub/file", 2048);
  options.CreateListOwner = 1;
  options.CreateList100OldestFiles = 1;
  options.CreateList100OldestFilesDate = 3;
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"*.tmp";
  scan(folder.text());
  const std::vector<Text> expected = {
      Text(40, u'-'),
      u"Einlesen: " + folder.text(),
      u"Option: Erstelle eine Liste mit den 20 ältesten Dateien (Letzter Zugriff)",
      u"Option: Erstelle eine Liste sortiert nach Besitzern",
      u"Diese Dateien nicht einlesen: *.tmp",
      u"Ordneranzahl: 1",
      u"Dateianzahl: 1",
      u"Dateigröße: 2.00 KB (2,048 Bytes)",
  };
  std::vector<Text> told = logTexts();
  EXPECT_TRUE(told.back().starts_with(u"Zeitaufwand: 00:00:0") && told.back().ends_with(u" s)"));
  told.pop_back();
  EXPECT_EQ(told, expected);
  log.clearRows();
  folder.folder("nothing");
  scan(folder.text("nothing"));
  EXPECT_EQ(logTexts().size(), 6U) << "no counts where nothing was found";
}

TEST_F(WalkerTest, ASourceThatIsInTheTreeIsReplacedInItsPlace) {
  folder.file("one/a/file", 10);
  folder.file("two/file", 5);
  const NodeIndex one = scan(folder.text("one"));
  const NodeIndex two = scan(folder.text("two"));
  folder.file("one/b/more", 7);
  EXPECT_EQ(scan(folder.text("one") + u"/"), one);
  EXPECT_EQ(tree.firstRoot(), one);
  EXPECT_EQ(tree.lastRoot(), two);
  EXPECT_EQ(totals(one), (ScanTotals{17, 2, 2, 0, 0, 0}));
  EXPECT_EQ(totals(two), (ScanTotals{5, 1, 0, 0, 0, 0}));
}

TEST_F(WalkerTest, SumsThatNoNumberHoldsStayAtTheLargest) {
  const TestFolder sparse(TestFolder::Place::Memory);
  for (const char* name : {"a", "b/c"})
    sparse.file(name, INT64_MAX);
  const NodeIndex root = scan(sparse.text());
  EXPECT_EQ(tree[root].size, INT64_MAX);
  EXPECT_EQ(context.Total.Size, INT64_MAX);
}

TEST_F(WalkerTest, SourcesOfOneRunStandSideBySide) {
  folder.file("a/file", 1);
  folder.file("b/file", 2);
  std::deque<Text> queue = {folder.text("a"), folder.text("missing"), folder.text("b/")};
  const RunResult sum = ScanRun(state()).Ordnerliste_Abarbeiten(queue);
  EXPECT_TRUE(sum.sourcesScanned == 2 && sum.sourcesMissing == 1 && sum.sum.Size == 3);
  EXPECT_EQ(tree[tree.firstRoot()].size, 1);
  EXPECT_EQ(tree[tree.lastRoot()].name(), folder.text("b"));
  // The counts in the lines of the second source are those of the run.
  const std::vector<Text> rows = logTexts();
  EXPECT_EQ(std::count(rows.begin(), rows.end(), u"Dateianzahl: 2"), 1);
  EXPECT_NE(log.rows().front().group, log.rows().back().group);
}

TEST_F(WalkerTest, SiblingsAreSortedBySizeAndEqualsKeepTheirOrder) {
  folder.file("small/f", 1);
  folder.file("large/f", 100);
  folder.file("middle/f", 10);
  for (const char* const name : {"e1", "e2", "e3", "e4", "e5"})
    folder.folder(name);
  const NodeIndex root = scan(folder.text());
  std::vector<Text> names;
  for (NodeIndex child = tree[root].firstChild; child != kNoNode; child = tree[child].nextSibling) {
    if (tree[child].size > 0) names.emplace_back(tree[child].name());
    const NodeIndex next = tree[child].nextSibling;
    EXPECT_TRUE(tree[child].size > 0 || next == kNoNode || child < next);
    EXPECT_TRUE(next != kNoNode || tree[root].lastChild == child);
  }
  EXPECT_EQ(names, (std::vector<Text>{u"large", u"middle", u"small"}));
}

class RescanTest : public ScanFixture {
 protected:
  RescanTest() {
    folder.file("grows/sub/file", 1000);
    folder.file("grows/own", 10);
    folder.file("other/file", 1010);
    folder.symlink("link", "other");
    root = scan(folder.text());
  }

  NodeIndex rescan(NodeIndex node) { return Rescan(state(), nullptr).Report_Rescan(node); }
  double percent(TextView path) { return FolderReport(tree, options).percent(find(root, path)); }

  NodeIndex root = kNoNode;
};

TEST_F(RescanTest, WhatGrewReachesAllFoldersAbove) {
  EXPECT_EQ(percent(u"grows"), 50);
  constexpr std::int64_t kGiga = 1'000'000'000;
  folder.file("grows/sub/large", kGiga);
  folder.file("grows/sub/new/file", 1);
  const NodeIndex sub = find(root, u"grows/sub");
  EXPECT_EQ(rescan(sub), sub);
  EXPECT_EQ(totals(root), (ScanTotals{kGiga + 2021, 5, 5, 0, 0, 1}));
  EXPECT_EQ(totals(find(root, u"grows")), (ScanTotals{kGiga + 1011, 4, 2, 0, 0, 0}));
  EXPECT_GT(percent(u"grows"), 99.9);
  EXPECT_EQ(percent(u""), 100);
  // The row of direct files beside it is unchanged; the largest row is first.
  EXPECT_EQ(tree[find(root, u"grows/Dateien")].size, 10);
  EXPECT_EQ(tree[tree[find(root, u"grows")].firstChild].name(), u"sub");
  EXPECT_EQ(context.ScanCancelState, kScanIdle);
  EXPECT_FALSE(context.ScanBusy);
}

TEST_F(RescanTest, LinksAndWhatFailedAreRefusedAndWhatVanishedFails) {
  const NodeIndex link = find(root, u"link");
  EXPECT_EQ(rescan(link), kNoNode);
  EXPECT_EQ(rescan(kNoNode), kNoNode);
  const NodeIndex other = find(root, u"other");
  ASSERT_EQ(rename(folder.path("other").c_str(), folder.path("elsewhere").c_str()), 0);
  EXPECT_EQ(rescan(other), other);
  EXPECT_TRUE(tree[other].has(FolderNode::IsError));
  EXPECT_FALSE(tree.errorText(other).empty());
  EXPECT_EQ(totals(root), (ScanTotals{1010, 2, 4, 0, 0, 1}));
  ASSERT_EQ(rename(folder.path("elsewhere").c_str(), folder.path("other").c_str()), 0);
  EXPECT_EQ(rescan(other), kNoNode);
  // A link that a scan enters can be read again.
  options.ScanHardlinks = 1;
  folder.file("other/new", 4);
  EXPECT_EQ(rescan(link), link);
  EXPECT_EQ(totals(link), (ScanTotals{1014, 2, 0, 0, 0, 0}));
  EXPECT_NE(tree[link].attributes & platform::kAttributeReparsePoint, 0U) << "it stays a link";
}

TEST_F(RescanTest, ACancelLeavesWhatWasFound) {
  for (int i = 0; i < 50; ++i)
    folder.file("grows/many" + std::to_string(i), 1);
  cancelAfter(20);
  const NodeIndex grows = find(root, u"grows");
  EXPECT_EQ(rescan(grows), grows);
  EXPECT_LT(totals(grows).Files, 52);
  EXPECT_EQ(totals(root).Files, totals(grows).Files + 1);
  EXPECT_EQ(context.ScanCancelState, kScanIdle);
  // What was not read to its end is marked up to the source until it is.
  EXPECT_TRUE(tree[grows].has(FolderNode::IsIncomplete) &&
              tree[root].has(FolderNode::IsIncomplete));
  ui.onYield = {};
  rescan(grows);
  EXPECT_FALSE(tree[grows].has(FolderNode::IsIncomplete) ||
               tree[root].has(FolderNode::IsIncomplete));
}

TEST_F(RescanTest, PlacesOfNodesAndNamesAreUsedAgain) {
  for (int i = 0; i < 400; ++i)
    folder.folder("wide/" + std::string(200, 'n') + std::to_string(i));
  rescan(root);
  EXPECT_NE(tree.facts(root).created, 0);
  const std::uint32_t places = tree.nodeCount();
  for (int i = 0; i < 40; ++i)
    EXPECT_EQ(rescan(find(root, u"wide")), find(root, u"wide"));
  EXPECT_LE(tree.nodeCount(), places + 401);
  EXPECT_EQ(tree[tree[find(root, u"wide")].firstChild].nameLength, 203U);
  EXPECT_EQ(tree[find(root, u"wide")].folders, 400);
}

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
  EXPECT_EQ(sizes(ListId::Extensions), (std::vector<std::int64_t>{200, 7}));  // every extension
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
  constexpr int kFiles = 400;  // more than the lists store before they are cut
  std::vector<std::int64_t> all;
  for (int i = 0; i < kFiles; ++i) {
    all.push_back(i * 7919 % kFiles + 1);
    folder.file("f" + std::to_string(i % 7) + "/" + std::to_string(i), all.back());
    if (i % 20 != 0) continue;
    folder.hardlink("f0/twin" + std::to_string(i),
                    "f" + std::to_string(i % 7) + "/" + std::to_string(i));
    all.push_back(all.back());
  }
  std::sort(all.begin(), all.end());
  options.TopMaxCount.fill(20);
  scan(folder.text(), &lists);
  EXPECT_EQ(sizes(ListId::SmallestFiles), (std::vector(all.begin(), all.begin() + 20)));
  EXPECT_EQ(sizes(ListId::LargestFiles), (std::vector(all.rbegin(), all.rbegin() + 20)));
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

}  // namespace
}  // namespace ombrelian
