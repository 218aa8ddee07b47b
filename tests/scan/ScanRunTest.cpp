#include "scan/ScanRun.h"

#include "tests/testing/ScanFixture.h"

namespace ombrelian {
namespace {

class ScanRunTest : public testing::ScanFixture {};

TEST_F(ScanRunTest, LogTellsWhatWasFound) {
  folder.file("sub/file", 2048);
  options.CreateListOwner = 1;
  options.CreateList100OldestFiles = 1;
  options.CreateList100OldestFilesDate = 3;
  scan(folder.text());
  const std::vector<Text> expected = {
      Text(40, u'-'),
      u"Einlesen: " + folder.text(),
      u"Option: Erstelle eine Liste mit den 20 ältesten Dateien (Letzter Zugriff)",
      u"Option: Erstelle eine Liste sortiert nach Besitzern",
      u"Ordneranzahl: 1",
      u"Dateianzahl: 1",
      u"Dateigröße: 2.00 KB (2,048 Bytes)",
      u"Zeitaufwand: 00:00:00",
  };
  EXPECT_EQ(logTexts(), expected);
  log.clearRows();
  folder.folder("nothing");
  scan(folder.text("nothing"));
  EXPECT_EQ(std::count_if(log.rows().begin(), log.rows().end(),
                          [](const LogRow& row) { return row.text.find(u"anzahl") != Text::npos; }),
            0);
}

TEST_F(ScanRunTest, SourcesOfOneRunStandSideBySide) {
  folder.file("a/file", 1);
  folder.file("b/file", 2);
  std::deque<Text> queue = {folder.text("a"), folder.text("missing"), folder.text("b/")};
  ScanRun run(state());
  const RunResult sum = run.Ordnerliste_Abarbeiten(queue);
  EXPECT_EQ(sum.sourcesScanned, 2);
  EXPECT_EQ(sum.sourcesMissing, 1);
  EXPECT_EQ(sum.sum.Size, 3);
  EXPECT_EQ(tree[tree.firstRoot()].size, 1);
  EXPECT_EQ(tree[tree.lastRoot()].size, 2);
  EXPECT_EQ(tree[tree.lastRoot()].name(), folder.text("b"));
  // The counts of the second source's lines are those of the run.
  const std::vector<Text> texts = logTexts();
  EXPECT_EQ(std::count(texts.begin(), texts.end(), u"Dateianzahl: 2"), 1);
  EXPECT_NE(log.rows().front().group, log.rows().back().group);
}

TEST_F(ScanRunTest, CancelDropsWhatWaits) {
  folder.file("a/file", 1);
  folder.file("b/file", 2);
  cancelAfter(1);
  std::deque<Text> queue = {folder.text("a"), folder.text("b")};
  const RunResult cancelled = ScanRun(state()).Ordnerliste_Abarbeiten(queue);
  EXPECT_TRUE(cancelled.cancelled);
  EXPECT_EQ(cancelled.sourcesScanned, 1);
  EXPECT_TRUE(queue.empty());
  EXPECT_FALSE(context.ScanBusy);
}

TEST_F(ScanRunTest, SiblingsAreSortedBySizeAndEqualsKeepTheirOrder) {
  folder.file("small/f", 1);
  folder.file("large/f", 100);
  folder.file("middle/f", 10);
  for (const char* const name : {"e1", "e2", "e3", "e4", "e5"})
    folder.folder(name);
  const NodeIndex root = scan(folder.text());
  std::vector<Text> names;
  std::vector<NodeIndex> empties;
  for (NodeIndex child = tree[root].firstChild; child != kNoNode; child = tree[child].nextSibling)
    tree[child].size == 0 ? empties.push_back(child) : names.push_back(Text(tree[child].name()));
  EXPECT_EQ(names, (std::vector<Text>{u"large", u"middle", u"small"}));
  EXPECT_EQ(empties.size(), 5U);
  EXPECT_TRUE(std::is_sorted(empties.begin(), empties.end()));
  EXPECT_EQ(tree[root].lastChild, empties.back());
}

}  // namespace
}  // namespace ombrelian
