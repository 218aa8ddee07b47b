#include "scan/Rescan.h"

#include <unistd.h>

#include "lists/FolderReport.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian {
namespace {

class RescanTest : public testing::ScanFixture {
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
  // The row of direct files beside it stays as it was; the largest comes first.
  EXPECT_EQ(tree[find(root, u"grows/Dateien")].size, 10);
  EXPECT_EQ(tree[tree[find(root, u"grows")].firstChild].name(), u"sub");
  EXPECT_EQ(context.ScanCancelState, kScanIdle);
  EXPECT_FALSE(context.ScanBusy);
}

TEST_F(RescanTest, TheRowOfDirectFilesStandsForItsFolder) {
  folder.file("grows/own2", 5);
  EXPECT_EQ(rescan(find(root, u"grows/Dateien")), find(root, u"grows"));
  EXPECT_EQ(totals(root), (ScanTotals{2025, 4, 4, 0, 0, 1}));
  folder.file("top", 7);
  EXPECT_EQ(rescan(root), root);
  EXPECT_EQ(totals(root), (ScanTotals{2032, 5, 4, 0, 0, 1}));
  EXPECT_NE(tree.created(root), 0);
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
  // A link that a scan enters can be read through.
  options.ScanHardlinks = 1;
  folder.file("other/new", 4);
  EXPECT_EQ(rescan(link), link);
  EXPECT_EQ(totals(link), (ScanTotals{1014, 2, 0, 0, 0, 0}));
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
}

TEST_F(RescanTest, PlacesOfNodesAndNamesAreUsedAgain) {
  for (int i = 0; i < 400; ++i)
    folder.folder("wide/" + std::string(200, 'n') + std::to_string(i));
  rescan(root);
  const std::uint32_t places = tree.nodeCount();
  for (int i = 0; i < 40; ++i)
    EXPECT_EQ(rescan(find(root, u"wide")), find(root, u"wide"));
  EXPECT_LE(tree.nodeCount(), places + 401);
  EXPECT_EQ(tree[tree[find(root, u"wide")].firstChild].nameLength, 203U);
  EXPECT_EQ(tree[find(root, u"wide")].folders, 400);
}

TEST_F(RescanTest, ASourceIsRemovedFromAnyOfItsRows) {
  const NodeIndex second = scan(folder.text("grows"));
  EXPECT_EQ(Report_RemoveFolders(tree, find(root, u"grows/sub"), nullptr), folder.text());
  EXPECT_EQ(tree.firstRoot(), second);
  EXPECT_EQ(tree.lastRoot(), second);
  EXPECT_EQ(Report_RemoveFolders(tree, second, nullptr), folder.text("grows"));
  EXPECT_TRUE(tree.empty());
  EXPECT_EQ(tree.MaxFolderDepth(), 0U);
  EXPECT_EQ(Report_RemoveFolders(tree, kNoNode, nullptr), u"");
}

}  // namespace
}  // namespace ombrelian
