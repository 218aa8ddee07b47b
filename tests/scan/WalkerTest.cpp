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
  const std::pair<TextView, ScanTotals> cases[] = {{u"", {140, 4, 3, 0, 0, 0}},
                                                   {u"a", {133, 3, 1, 0, 0, 0}},
                                                   {u"a/deep", {33, 2, 0, 0, 0, 0}},
                                                   {u"empty", {}}};
  for (const auto& [path, expected] : cases)
    EXPECT_EQ(totals(find(root, path)), expected) << toBytes(path);
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
  const std::vector<LogRow>& rows = log.rows();
  const auto isError = [](const LogRow& row) { return row.isError; };
  ASSERT_EQ(std::count_if(rows.begin(), rows.end(), isError), 1);
  const Text& text = std::find_if(rows.begin(), rows.end(), isError)->text;
  EXPECT_TRUE(text.starts_with(u"ERROR: ")) << toBytes(text);
  EXPECT_TRUE(text.ends_with(u"(" + folder.text("denied/") + u")")) << toBytes(text);
}

TEST_F(WalkerTest, WhatFailsIsCountedWhereItIsNoVanishedFolder) {
  const TestFolder memory(TestFolder::Place::Memory);
  memory.file("sub/file", 9);
  memory.file("other", 1);
  const struct {
    testing::Fault fault;
    ScanTotals totals;
    const char* failed;  // the folder that is marked
  } cases[] = {
      {{Call::Getdents, {}, EIO}, {0, 0, 0, 1, 0, 0}, ""},
      // Each folder takes two questions there, the source's come first; the folder's second fails.
      {{Call::Getdents, {}, EIO, 3, 1}, {10, 2, 1, 1, 0, 0}, "sub"},
      {{Call::Statx, "other", EACCES}, {9, 2, 1, 1, 0, 0}, nullptr},
      {{Call::Openat, "sub", ENOENT}, {1, 1, 1, 0, 0, 0}, nullptr},
      // A source that vanishes between the question and the walk is an error, unlike a folder.
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
  struct : testing::QuietInterface {
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
  // A link to a folder is a junction; a dangling one is a file of the link's own length.
  EXPECT_EQ(totals(root), (ScanTotals{17, 2, 3, 0, 0, 2}));
  const NodeIndex link = find(root, u"toReal");
  EXPECT_TRUE(tree[link].has(FolderNode::IsJunction));
  EXPECT_EQ(tree.junctionTarget(link), u"real");
  EXPECT_EQ(tree[link].junctions, 1);
  EXPECT_EQ(tree[link].dateModified, 0) << "what is not entered has no dates";
  // The dangling one aside, entered or left out by the options.
  ASSERT_EQ(unlink(folder.path("dangling").c_str()), 0);
  options.NoHardlinks = 1;
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{10, 1, 1, 0, 0, 2}));
  EXPECT_EQ(find(result.lastRoot, u"toReal"), kNoNode);

  // Entered: "toReal" once more, and in it and in "real" the link up, which leads to the source
  // itself and is not followed.
  options.ScanHardlinks = 1;
  const NodeIndex entered = scan(folder.text());
  EXPECT_EQ(totals(entered), (ScanTotals{20, 2, 4, 0, 0, 3}));
  EXPECT_EQ(tree[find(entered, u"toReal")].size, 10);
  EXPECT_NE(tree[find(entered, u"toReal")].dateModified, 0);
}

TEST_F(WalkerTest, HardlinksCountOnceIfAsked) {
  folder.file("a/one", 50);
  folder.hardlink("a/two", "a/one");
  folder.file("b/alone", 1);
  folder.hardlink("b/three", "a/one");
  EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{151, 4, 2, 0, 0, 0}));
  options.AddHardlinksOnlyOnce = 1;
  for (int run = 0; run < 2; ++run)  // each counts afresh
    EXPECT_EQ(totals(scan(folder.text())), (ScanTotals{51, 4, 2, 0, 3, 0}));
}

TEST_F(WalkerTest, ACancelKeepsWhatIsFinished) {
  for (int i = 0; i < 20; ++i)
    folder.file("file" + std::to_string(i), 10);
  cancelAfter(5);
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
    add("file " + toBytes(file.name), file.size, file.links);
  }
  void feedFolder(TextView owner) override { add("owner " + toBytes(owner), 0, 0); }
  void feedJunction(const Junction& junction) override {
    add("to " + toBytes(junction.target), std::int64_t(junction.path.size()), 0);
  }
  void feedFolderEnd(TextView, const ScanTotals& own) override { add("end", own.Size, own.Files); }
  void finish(const ScanTotals& total) override { add("finish", total.Size, 0); }

  std::vector<std::string> events;

 private:
  void add(const std::string& what, std::int64_t a, std::int64_t b) {
    events.push_back(what + " " + std::to_string(a) + " " + std::to_string(b));
  }
};

TEST_F(WalkerTest, ListsAreFedByARunOfOneSourceOnly) {
  folder.file("sub/file", 4);
  folder.hardlink("sub/again", "sub/file");
  folder.symlink("sub/link", "..");
  options.CreateListJunction = 1;
  options.CreateListHardlink = 1;
  const Text link = folder.text("sub/link");
  RecordingLists lists;
  scan(folder.text(), &lists);
  std::sort(lists.events.begin() + 1, lists.events.end() - 3);  // the disk's own order
  EXPECT_EQ(lists.events, (std::vector<std::string>{"reset", "file again 4 2", "file file 4 2",
                                                    "to .. " + std::to_string(link.size()) + " 0",
                                                    "end 8 2", "end 0 0", "finish 8 0"}));

  lists.events.clear();
  std::deque<Text> queue = {folder.text(), folder.text("sub")};
  ScanRun(state(&lists)).Ordnerliste_Abarbeiten(queue);
  EXPECT_TRUE(lists.events.empty());
}

}  // namespace
}  // namespace ombrelian
