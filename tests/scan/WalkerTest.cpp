#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "tests/testing/Faults.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian {
namespace {

using testing::Call;
using testing::ScopedFault;
using testing::TestFolder;

class WalkerTest : public testing::ScanFixture {};

TEST_F(WalkerTest, TotalsRollUp) {
  folder.file("a/one", 100);
  folder.file("a/deep/two", 30);
  folder.file("a/deep/three", 3);
  folder.folder("empty");
  folder.file("root file", 7);
  const NodeIndex root = scan(folder.text());
  EXPECT_EQ(totals(root), (ScanTotals{140, 4, 3, 0, 0, 0}));
  EXPECT_EQ(totals(find(root, u"a")), (ScanTotals{133, 3, 1, 0, 0, 0}));
  EXPECT_EQ(totals(find(root, u"a/deep")), (ScanTotals{33, 2, 0, 0, 0, 0}));
  EXPECT_EQ(totals(find(root, u"empty")), ScanTotals());
  EXPECT_EQ(tree[root].subfolders, 2);
  EXPECT_EQ(tree[root].name(), folder.text());
  EXPECT_NE(tree.created(root), 0);

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
  int errorRows = 0;
  for (const LogRow& row : log.rows()) {
    if (!row.isError) continue;
    ++errorRows;
    EXPECT_TRUE(row.text.starts_with(u"ERROR: ")) << toBytes(row.text);
    EXPECT_TRUE(row.text.ends_with(u"(" + folder.text("denied/") + u")")) << toBytes(row.text);
  }
  EXPECT_EQ(errorRows, 1);
}

TEST_F(WalkerTest, FailuresOfASource) {
  folder.folder("source");
  {
    const ScopedFault io({Call::Getdents, {}, EIO});
    const NodeIndex root = scan(folder.text("source"));
    EXPECT_TRUE(tree[root].has(FolderNode::IsError));
    EXPECT_EQ(tree[root].errors, 1);
  }
  // A source that vanishes between the question and the walk is an error, unlike a folder.
  const ScopedFault gone({Call::Openat, "source", ENOENT});
  const NodeIndex root = scan(folder.text("source"));
  EXPECT_EQ(tree[root].errors, 1);
}

TEST_F(WalkerTest, AListingThatBreaksOffKeepsWhatWasRead) {
  const testing::TestFolder memory(testing::TestFolder::Place::Memory);
  memory.file("folder/file", 9);
  // Each folder takes two questions there, the source's come first; the folder's second one fails.
  const ScopedFault io({Call::Getdents, {}, EIO, 3, 1});
  const NodeIndex root = scan(memory.text());
  EXPECT_EQ(totals(root), (ScanTotals{9, 1, 1, 1, 0, 0}));
  EXPECT_TRUE(tree[find(root, u"folder")].has(FolderNode::IsError));
}

TEST_F(WalkerTest, AFileThatCannotBeAskedCountsWithoutASize) {
  folder.file("secret", 1000);
  folder.file("other", 1);
  const ScopedFault denied({Call::Statx, "secret", EACCES});
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{1, 2, 0, 1, 0, 0}));
}

TEST_F(WalkerTest, AFolderThatVanishesUnderTheWalkIsEmpty) {
  folder.file("gone/file", 5);
  folder.file("here/file", 3);
  const ScopedFault gone({Call::Openat, "gone", ENOENT});
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{3, 1, 2, 0, 0, 0}));
}

TEST_F(WalkerTest, LinksAreCountedNotFollowed) {
  folder.file("real/file", 10);
  folder.symlink("real/up", "..");
  folder.symlink("toReal", "real");
  folder.symlink("dangling", "nowhere");
  const NodeIndex root = scan(folder.text());
  // A link to a folder is a junction; a dangling one is a file of the link's own length.
  EXPECT_EQ(totals(root), (ScanTotals{17, 2, 3, 0, 0, 2}));
  const NodeIndex link = find(root, u"toReal");
  EXPECT_TRUE(tree[link].has(FolderNode::IsJunction));
  EXPECT_EQ(tree.junctionTarget(link), u"real");
  EXPECT_EQ(tree[link].junctions, 1);
  EXPECT_EQ(tree[link].dateModified, 0) << "what is not entered has no dates";
}

TEST_F(WalkerTest, OptionsForJunctions) {
  folder.file("real/file", 10);
  folder.symlink("real/up", "..");
  folder.symlink("toReal", "real");
  options.NoHardlinks = 1;
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{10, 1, 1, 0, 0, 2}));
  EXPECT_EQ(find(result.lastRoot, u"toReal"), kNoNode);

  // Entered: "toReal" once more, and in it and in "real" the link up, which leads to the source
  // itself and is not followed.
  options.ScanHardlinks = 1;
  const NodeIndex root = scan(folder.text());
  EXPECT_EQ(totals(root), (ScanTotals{20, 2, 4, 0, 0, 3}));
  EXPECT_EQ(tree[find(root, u"toReal")].size, 10);
  EXPECT_NE(tree[find(root, u"toReal")].dateModified, 0);
}

TEST_F(WalkerTest, HardlinksCountOnceIfAsked) {
  folder.file("a/one", 50);
  folder.hardlink("a/two", "a/one");
  folder.folder("b");
  folder.hardlink("b/three", "a/one");
  folder.file("b/alone", 1);
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{151, 4, 2, 0, 0, 0}));
  options.AddHardlinksOnlyOnce = 1;
  // Each run counts afresh.
  for (int run = 0; run < 2; ++run) {
    EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{51, 4, 2, 0, 3, 0}));
  }
}

TEST_F(WalkerTest, ACancelKeepsWhatIsFinished) {
  for (int i = 0; i < 20; ++i)
    folder.file("file" + std::to_string(i), 10);
  int entries = 0;
  ui.onYield = [&] {
    if (++entries == 5) context.ScanCancelState = kScanCancelRequested;
  };
  const NodeIndex root = scan(folder.text());
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(tree[root].size, 0) << "the files of a folder under way stay out of the tree";
  EXPECT_GT(result.sum.Files, 0);
  EXPECT_LT(result.sum.Files, 20);
  EXPECT_EQ(result.sum.Size, result.sum.Files * 10);
  EXPECT_EQ(context.ScanCancelState, kScanIdle);
  EXPECT_EQ(logTexts()[logTexts().size() - 2], u"Der Vorgang wurde vom Anwender abgebrochen!");
}

TEST_F(WalkerTest, OwnersWhereTheyAreKept) {
  folder.file("mine/file", 1);
  folder.folder("foreign");
  options.ShowFolderOwner = 1;
  if (chown(folder.path("foreign").c_str(), 3999999, 0) != 0) GTEST_SKIP() << "needs root";
  const NodeIndex root = scan(folder.text());
  EXPECT_EQ(tree.ownerText(tree[find(root, u"mine")].owner), u"root");
  EXPECT_EQ(tree.ownerText(tree[find(root, u"foreign")].owner), u"-Unbekannt-");
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
  NodeIndex root = scan(folder.text());
  EXPECT_EQ(totals(root), (ScanTotals{101, 2, 3, 0, 0, 0}));
  EXPECT_EQ(find(root, u"keep/deep/cache"), kNoNode);
  // A change takes effect with the next source.
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

TEST_F(WalkerTest, TwoHundredThousandFilesInOneFolder) {
  const TestFolder wide(TestFolder::Place::Memory);
  const int fd = open(wide.path().c_str(), O_RDONLY | O_DIRECTORY);
  for (int i = 0; i < 200'000; ++i) {
    close(openat(fd, ("f" + std::to_string(i)).c_str(), O_WRONLY | O_CREAT, 0644));
  }
  close(fd);
  EXPECT_EQ(totals(scan(wide.text())), (ScanTotals{0, 200'000, 0, 0, 0, 0}));
}

TEST_F(WalkerTest, AMountedFolderIsAJunction) {
  folder.file("real/file", 10);
  folder.folder("real/mounted");
  // In a process of its own, since a mount namespace cannot be left again.
  const pid_t child = fork();
  if (child == 0) {
    constexpr int kSkipped = 77;
    if (unshare(CLONE_NEWNS) != 0 ||
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount(folder.path("real").c_str(), folder.path("real/mounted").c_str(), nullptr, MS_BIND,
              nullptr) != 0) {
      _exit(kSkipped);
    }
    const NodeIndex root = scan(folder.text());
    const NodeIndex node = find(root, u"real/mounted");
    const bool isRight = totals(root) == ScanTotals{10, 1, 2, 0, 0, 1} &&
                         tree[node].has(FolderNode::IsMountPoint) &&
                         tree.junctionTarget(node).ends_with(folder.text("real]"));
    // Entered, the bind mount leads back to its own ancestor.
    options.ScanHardlinks = 1;
    const NodeIndex entered = scan(folder.text());
    _exit(isRight && totals(entered) == ScanTotals{10, 1, 2, 0, 0, 1} ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "mounting is not allowed here";
  EXPECT_EQ(status, 0);
}

/// Writes down what a walk feeds.
class RecordingLists : public DerivedLists {
 public:
  void reset() override { events.push_back("reset"); }
  void feedFile(const File& file) override {
    events.push_back("file " + toBytes(file.name) + " " + std::to_string(file.size) + " links " +
                     std::to_string(file.links));
  }
  void feedFolder(TextView owner) override { events.push_back("owner " + toBytes(owner)); }
  void feedJunction(const Junction& junction) override {
    events.push_back("junction " + toBytes(junction.path.substr(junction.path.rfind(u'/') + 1)) +
                     " -> " + toBytes(junction.target));
  }
  void feedFolderEnd(TextView, const ScanTotals& own) override {
    events.push_back("end " + std::to_string(own.Size) + " " + std::to_string(own.Files));
  }
  void finish(const ScanTotals& total) override {
    events.push_back("finish " + std::to_string(total.Size));
  }

  std::vector<std::string> events;
};

TEST_F(WalkerTest, ListsAreFedByARunOfOneSourceOnly) {
  folder.file("sub/file", 4);
  folder.hardlink("sub/again", "sub/file");
  folder.symlink("sub/link", "..");
  options.CreateListJunction = 1;
  options.CreateListHardlink = 1;
  RecordingLists lists;
  scan(folder.text(), &lists);
  std::sort(lists.events.begin() + 1, lists.events.end() - 3);  // the disk's own order
  EXPECT_EQ(lists.events,
            (std::vector<std::string>{"reset", "file again 4 links 2", "file file 4 links 2",
                                      "junction link -> ..", "end 8 2", "end 0 0", "finish 8"}));

  lists.events.clear();
  std::deque<Text> queue = {folder.text(), folder.text("sub")};
  ScanRun(state(&lists)).Ordnerliste_Abarbeiten(queue);
  EXPECT_TRUE(lists.events.empty());
}

}  // namespace
}  // namespace ombrelian
