// Tests of single deletions, and of random sequences of everything that a user does with a scanned
// tree. Its sums must always be equal to those of a new scan.

#include "scan/Deletion.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "fs/z_Filesystem.h"
#include "scan/ListFeeder.h"
#include "scan/Rename.h"
#include "scan/Rescan.h"
#include "tests/testing/Faults.h"
#include "tests/testing/Lists.h"
#include "tests/testing/ScanFixture.h"
#include "tests/testing/ScopedUser.h"
#include "tests/testing/ScopedVariable.h"
#include "tree/TreeEdit.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;
using namespace ::testing;

/// Answers the question, and can change something before the answer.
struct Asked : QuietInterface {
  bool confirm(TextView text, const std::vector<Text>& lines, TextView) override {
    question = text;
    details.clear();
    for (const Text& line : lines)
      details += toBytes(line) + "\n";
    if (whileAsked) whileAsked();
    return answer;
  }
  void deletionProgress(TextView path, std::uint64_t, std::uint64_t) override {
    if (!path.empty()) progress.emplace_back(path);
  }

  bool answer = true;
  std::vector<Text> progress;  // reported paths
  std::function<void()> whileAsked;
  Text question;
  std::string details;
};

class DeletionFixture : public ScanFixture {
 protected:
  DeletionFixture() { options.FilelistVisible = 1; }

  ScanState asking() { return {options, tree, context, filters, log, asked, nullptr}; }
  Deletion deletion(bool recycle = false) { return Deletion(asking(), nullptr, recycle); }

  TestFolder bin;
  const ScopedVariable home{"XDG_DATA_HOME", bin.path()};
  SystemFileTypes types;
  FileList files{options, types};
  Asked asked;
};

class DeletionTest : public DeletionFixture {
 protected:
  DeletionTest() {
    folder.file("source/a/one", 100);
    folder.file("source/a/sub/two", 20);
    folder.file("source/b/three", 3);
    folder.file("source/top", 4000);
    folder.file("outside/precious", 5);
    root = scan(folder.text("source"));
    log.clearRows();
  }

  bool deleteFolders(const std::vector<NodeIndex>& nodes, bool recycle = false) {
    return deletion(recycle).DeleteFolders(nodes);
  }

  NodeIndex node(TextView path) { return find(root, path); }
  bool exists(const char* name) const { return xExistFile_W(folder.text(name)); }

  /// Shows a folder and returns the ids of the files with these names.
  Deletion::Ids show(const char* name, const std::vector<Text>& names) {
    Text path = folder.text(name);
    files.List_Files_ScanFolder(path, true);
    const std::vector<Text> all = texts(files.grid(), u"name");
    Deletion::Ids ids;
    for (const Text& wanted : names)
      ids.push_back(
          files.grid().id(std::size_t(std::find(all.begin(), all.end(), wanted) - all.begin())));
    return ids;
  }

  NodeIndex root = kNoNode;
};

TEST_F(DeletionTest, TheQuestionCountsWhatTheDiskHasNow) {
  // Files that filters excluded from the scan, and new files, are deleted too.
  folder.file("source/a/new", 1000);
  folder.hardlink("source/a/half", "source/b/three");
  folder.hardlink("source/a/whole1", "source/a/one");
  folder.symlink("source/a/link", "../b");
  asked.answer = false;
  EXPECT_FALSE(deleteFolders({node(u"a")}));
  EXPECT_FALSE(deletion().List_Files_DeleteFiles(files, show("source", {u"top"})));
  EXPECT_TRUE(exists("source/top") && exists("source/a/sub/two") && log.rows().empty());
  deleteFolders({node(u"a")});
  EXPECT_EQ(asked.question,
            u"Soll der Ordner '" + folder.text("source/a") + u"' wirklich gelöscht werden?");
  // One of two names of 3 bytes remains. Both names of 100 bytes are removed; 100 bytes are freed.
  EXPECT_THAT(asked.details,
              AllOf(HasSubstr("Dateien: 5, Ordner: 3, Größe: 1.19 KB"),
                    HasSubstr("3 Namen von Hardlinks; 103 Bytes werden darum nicht frei"),
                    HasSubstr("Verknüpfungen: 1."), HasSubstr("nicht rückgängig")));
  // An object that cannot be deleted is not counted.
  ASSERT_EQ(rename(folder.path("source/a").c_str(), folder.path("moved").c_str()), 0);
  folder.file("source/a/another", 777);
  deleteFolders({node(u"a"), node(u"b")});
  EXPECT_THAT(asked.details, HasSubstr("Dateien: 1, Ordner: 1, Größe: 3 Bytes"));
  EXPECT_THAT(asked.messages, SizeIs(1));
  for (int i = 0; i < 12; ++i)
    folder.folder("many/f" + std::to_string(i));
  root = scan(folder.text("many"));
  std::vector<NodeIndex> all;
  for (NodeIndex child = tree[root].firstChild; child != kNoNode; child = tree[child].nextSibling)
    all.push_back(child);
  deleteFolders(all, true);
  EXPECT_THAT(asked.details, AllOf(HasSubstr("und 2 weitere"), HasSubstr("in den Papierkorb")));
  asked.answer = true;
  const ScopedFault fault({Call::Unlinkat, "", EIO});
  deleteFolders(all);
  EXPECT_THAT(toBytes(asked.messages.back()), HasSubstr("Weitere Fehler: 2."));
}

TEST_F(DeletionTest, AFolderIsDeletedOnceWithItsChild) {
  EXPECT_FALSE(deleteFolders({node(u"Dateien")})) << "the row for direct files is no folder";
  EXPECT_THAT(asked.messages, SizeIs(1));
  EXPECT_TRUE(exists("source/top"));
  EXPECT_TRUE(deleteFolders({node(u"a/sub"), node(u"a")}));
  EXPECT_THAT(logTexts(), ElementsAre(u"GELÖSCHT: " + folder.text("source/a/")));
  EXPECT_EQ(totals(root), (ScanTotals{4003, 2, 1, 0, 0, 0}));
  EXPECT_EQ(tree[root].subfolders, 1);
  // The row for direct files is removed with the last subfolder.
  EXPECT_TRUE(deleteFolders({node(u"b")}));
  EXPECT_FALSE(tree[root].hasChildren());
  EXPECT_EQ(totals(root), (ScanTotals{4000, 1, 0, 0, 0, 0}));
  EXPECT_TRUE(deleteFolders({root}));
  EXPECT_TRUE(tree.empty());
  EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("outside"));
}

TEST_F(DeletionTest, WhatIsSwappedWhileTheQuestionStandsIsLeftAlone) {
  folder.folder("outside/sub");
  folder.file("outside/sub/precious");
  folder.file("outside/three");
  asked.whileAsked = [&] {
    // The path to the folder is replaced, and later the path to a file.
    EXPECT_EQ(rename(folder.path("source/a").c_str(), folder.path("moved").c_str()), 0);
    folder.symlink("source/a", folder.path("outside"));
  };
  EXPECT_FALSE(deleteFolders({node(u"a/sub")}));
  asked.whileAsked = {};
  EXPECT_FALSE(deleteFolders({node(u"a")}));  // now this is noticed before the question
  asked.whileAsked = [&] {
    EXPECT_EQ(rename(folder.path("source/b").c_str(), folder.path("moved b").c_str()), 0);
    folder.symlink("source/b", folder.path("outside"));
  };
  EXPECT_FALSE(deletion().List_Files_DeleteFiles(files, show("source/b", {u"three"})));
  EXPECT_THAT(namesIn(folder.path("outside")), UnorderedElementsAre("precious", "sub", "three"));
  EXPECT_THAT(namesIn(folder.path("outside/sub")), ElementsAre("precious"));
  EXPECT_TRUE(exists("moved/sub/two"));
  EXPECT_TRUE(exists("moved b/three"));
  EXPECT_THAT(asked.messages, SizeIs(3));
  for (const LogRow& row : log.rows()) {
    EXPECT_TRUE(row.isError);
    EXPECT_THAT(toBytes(row.text),
                AllOf(HasSubstr("inzwischen etwas anderes"), HasSubstr("#1006")));
  }
  EXPECT_EQ(totals(root), (ScanTotals{4123, 4, 3, 0, 0, 0}));
}

TEST_F(DeletionTest, EachFailureIsToldAndStaysInTheSums) {
  const std::tuple<testing::Fault, bool, const char*> cases[] = {
      {{Call::Unlinkat, "two", EIO}, false, "two (#1117"},
      {{Call::Unlinkat, "sub", EBUSY}, false, "sub (#32"},
      {{Call::Statx, "a", EIO}, false, "#1117"},
      {{Call::Mkdirat, "Trash", EROFS}, true, "Trash"},  // the bin does not exist yet
      {{Call::Renameat2, "a", EACCES}, true, "(120)"},
      {{Call::Write, "", ENOSPC}, true, "Trash"},
  };
  for (const auto& [makeFail, recycle, inText] : cases) {
    if (!exists("source/a/one")) folder.file("source/a/one", 100);
    if (!exists("source/a/sub/two")) folder.file("source/a/sub/two", 20);
    tree.clear();
    root = scan(folder.text("source"));
    log.clearRows();
    asked.messages.clear();
    {
      const ScopedFault fault(makeFail);
      deleteFolders({node(u"a")}, recycle);
      EXPECT_GT(fault.hits(), 0);
    }
    ASSERT_EQ(log.rows().size(), 1U) << inText;
    EXPECT_TRUE(log.rows()[0].isError);
    EXPECT_THAT(toBytes(log.rows()[0].text),
                AllOf(HasSubstr(inText), HasSubstr(folder.path("source/a"))));
    ASSERT_EQ(asked.messages.size(), 1U);
    EXPECT_THAT(toBytes(asked.messages[0]),
                AllOf(StartsWith("Nicht gelöscht: 1\n\n" + folder.path("source/a")),
                      Not(HasSubstr("#")), Not(HasSubstr("("))));
    EXPECT_NE(node(u"a"), kNoNode);
    // A folder that was removed in part has the sums of a new scan.
    const ScanTotals shown = totals(root);
    EXPECT_EQ(shown, totals(scan(folder.text("source")))) << inText;
  }
}

TEST_F(DeletionTest, FilesGoFromTheListAndFromWhatTheScanCounted) {
  folder.file("source/b/hidden.tmp", 50);
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"*.tmp";
  tree.clear();
  root = scan(folder.text("source"));
  options.FolderList_FilterFilesExclude_Active = 0;  // the filters of the scan count, not these
  const Deletion::Ids ids = show("source/b", {u"three", u"hidden.tmp"});
  {
    const ScopedFault fault({Call::Unlinkat, "three", EPERM});
    EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, ids));
  }
  // A file that the scan excluded changes no sum; a file that failed remains.
  EXPECT_EQ(totals(root), (ScanTotals{4123, 4, 3, 0, 0, 0}));
  EXPECT_EQ(files.grid().rowCount(), 1U);
  EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, ids));
  EXPECT_EQ(totals(root), (ScanTotals{4120, 3, 3, 0, 0, 0}));
  EXPECT_EQ(files.grid().rowCount(), 0U);
  EXPECT_EQ(files.sum(), 0);
  EXPECT_THAT(asked.progress, Not(IsEmpty()));
  // Files are removed from the last row to the first, and each step is reported before it begins.
  folder.file("many/x", 1);
  folder.file("many/y", 3);
  folder.file("many/z", 2);
  log.clearRows();
  asked.progress.clear();
  EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, show("many", {u"z", u"y", u"x"})));
  EXPECT_THAT(logTexts(), ElementsAre(u"GELÖSCHT: " + folder.text("many/x"),
                                      u"GELÖSCHT: " + folder.text("many/z"),
                                      u"GELÖSCHT: " + folder.text("many/y")));
  // A file that vanished counts as deleted.
  const Deletion::Ids gone = show("source", {u"top"});
  ASSERT_EQ(unlink(folder.path("source/top").c_str()), 0);
  EXPECT_TRUE(deletion(true).List_Files_DeleteFiles(files, gone));
  EXPECT_EQ(totals(root), (ScanTotals{120, 2, 3, 0, 0, 0}));
  EXPECT_EQ(logTexts().back(), u"PAPIERKORB: " + folder.text("source/top"));
  EXPECT_EQ(node(u"Dateien"), kNoNode);
}

TEST_F(DeletionTest, ListsOfTheLastRunLoseNoRowsButTheirOwn) {
  options.CreateList100LargestFiles = options.CreateListHardlink = options.CreateListExt = 1;
  folder.hardlink("source/b/other", "source/b/three");
  ListFeeder lists(options, filters, types);
  root = scan(folder.text("source"), &lists);
  const auto rows = [&](ListId list) { return lists.grid(list).rowCount(); };
  Grid& top = lists.grid(ListId::LargestFiles);
  EXPECT_TRUE(deletion().List_TOP_DeleteFiles(top, {top.id(0)}));
  EXPECT_FALSE(exists("source/top"));
  Grid& links = lists.hardlinks().grid();
  EXPECT_TRUE(deletion().List_Hardlinks_DeleteFiles(links, {links.id(1)}));
  EXPECT_EQ(totals(root), (ScanTotals{123, 3, 3, 0, 1, 0})) << "the sums of the tree follow";
  EXPECT_EQ(rows(ListId::LargestFiles), 4U);
  EXPECT_EQ(rows(ListId::Hardlinks), 1U);
  // The deletion of folders and a rescan do not change the lists.
  EXPECT_TRUE(deleteFolders({node(u"a")}));
  EXPECT_EQ(Rescan(state(&lists), nullptr).Report_Rescan(root), root);
  EXPECT_EQ(totals(root), (ScanTotals{3, 1, 1, 0, 0, 0}));
  EXPECT_EQ(rows(ListId::LargestFiles), 4U);
  EXPECT_EQ(rows(ListId::Hardlinks), 1U);
  EXPECT_GT(rows(ListId::Extensions), 0U);
}

TEST_F(DeletionTest, SourcesThatAreOneFolderByTwoPathsFollowTogether) {
  folder.symlink("way", "source");
  folder.symlink("deep", "source/a");
  const NodeIndex linked = scan(folder.text("way"));
  const NodeIndex inner = scan(folder.text("deep"));
  EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, show("way", {u"top"})));
  EXPECT_EQ(totals(root), totals(linked));
  EXPECT_TRUE(deletion().DeleteFolders({find(linked, u"a/sub")}));
  EXPECT_EQ(totals(root), (ScanTotals{103, 2, 2, 0, 0, 0}));
  EXPECT_EQ(totals(linked), totals(root));
  EXPECT_EQ(totals(inner), (ScanTotals{100, 1, 0, 0, 0, 0}));
  EXPECT_TRUE(deletion().DeleteFolders({inner}));  // removes only the link
  EXPECT_EQ(totals(root), (ScanTotals{103, 2, 2, 0, 0, 0}));
  EXPECT_TRUE(exists("source/a/one"));
}

TEST_F(DeletionTest, SourcesBelowALinkFollowARename) {
  folder.symlink("way", "source");
  const NodeIndex outer = scan(folder.text("way/a"));
  const NodeIndex inner = scan(folder.text("way/a/sub"));
  EXPECT_EQ(renameFolder(tree, folder.text("way/a/sub"), u"new"), u"");
  EXPECT_EQ(tree[inner].name(), folder.text("way/a/new"));
  EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, show("way/a/new", {u"two"})));
  EXPECT_EQ(totals(inner), (ScanTotals{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(totals(outer), (ScanTotals{100, 1, 1, 0, 0, 0}));
  EXPECT_EQ(totals(root), (ScanTotals{4103, 3, 3, 0, 0, 0}));
}

TEST_F(DeletionTest, AFolderThatBecameALinkIsNotRenamedIn) {
  folder.file("elsewhere/sub/kept");
  folder.rename("source/a", "moved");
  folder.symlink("source/a", "../elsewhere");
  EXPECT_NE(renameFolder(tree, folder.text("source/a/sub"), u"new"), u"");
  EXPECT_TRUE(exists("elsewhere/sub/kept"));
  EXPECT_NE(find(root, u"a/sub"), kNoNode);
}

TEST_F(DeletionTest, WhatDidNotCountIsNotSubtracted) {
  options.AddHardlinksOnlyOnce = 1;
  folder.hardlink("source/b/twin", "source/a/one");
  root = scan(folder.text("source"));
  // The name that was counted or the other one: it is gone from the disk before it is deleted here.
  for (const char* name : {"one", "twin"}) {
    const std::string where = name == std::string("one") ? "source/a" : "source/b";
    const Deletion::Ids ids = show(where.c_str(), {fromBytes(name)});
    ASSERT_EQ(unlink(folder.path(where + "/" + name).c_str()), 0);
    EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, ids));
    EXPECT_EQ(tree[root].size, name == std::string("one") ? 4123 : 4023);
  }
  // A file that the scan left out is replaced by a rename.
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"*.tmp";
  folder.file("source/b/left.tmp", 50);
  root = scan(folder.text("source"));
  show("source/b", {u"three"});
  EXPECT_EQ(renameFile(tree, files, 1, u"left.tmp"), u"");
  EXPECT_EQ(tree[root].size, 4023);
}

/// A real folder, a tree scanned from it, and random changes of both.
class Sequence : public DeletionFixture {
  unsigned below(unsigned limit) { return unsigned(random_() % limit); }

  template <class List>
  auto pick(const List& list) {
    return list[below(unsigned(list.size()))];
  }

 public:
  void TestBody() override {}

  explicit Sequence(unsigned seed) : random_(seed) {
    asked.whileAsked = [this] { isAsked_ = true; };
    asked.onYield = [this] {
      if (isAsked_ && stopAfter_ > 0 && --stopAfter_ == 0)
        context.ScanCancelState = kScanCancelRequested;
    };
    options.ShowHardlinkCount = std::uint8_t(below(2));
    options.AddHardlinksOnlyOnce = std::uint8_t(below(2));
    if (below(4) == 0) {
      options.FolderList_FilterFilesExclude_Active = 1;
      options.FolderList_FilterFilesExclude_Text = u"*.tmp";
    }
    fillDisk();
    scan(folder.text("source"));
    // A source inside another one shows the same folders.
    if (below(3) == 0 && !folders_.empty()) scan(folder.text(pick(folders_)));
  }

  /// Does one step and returns its log, which helps to find the reason of a difference.
  std::string step() {
    log.clearRows();
    act(below(9));
    std::string said;
    for (const Text& row : logTexts())
      said += "\n  " + toBytes(row);
    return said;
  }

  /// Compares each source of the tree with a new scan of it.
  void expectTrue(const std::string& when) {
    for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
      FolderTree fresh;
      ScanContext freshContext;
      std::deque<Text> queue = {Text(tree[root].name())};
      ScanRun({options, fresh, freshContext, filters, log, ui, nullptr})
          .Ordnerliste_Abarbeiten(queue);
      ASSERT_FALSE(fresh.empty()) << when << ": " << toBytes(tree[root].name()) << " is missing";
      EXPECT_EQ(described(tree, root), described(fresh, fresh.firstRoot())) << when;
    }
  }

  bool isOver() const { return tree.empty(); }

 private:
  /// One of nine actions; frequent actions have more than one number.
  void act(unsigned kind) {
    if (kind <= 2) return deleteFolders(kind == 2);
    if (kind <= 4) return deleteFiles();
    if (kind == 5) return renameSomeFolder();
    if (kind == 6) return renameSomeFile();
    if (kind == 7) return changeAndRescan();
    if (below(6) == 0) Report_RemoveFolders(tree, pick(allNodes()), nullptr);
  }

  void fillDisk() {
    folder.folder("source");
    folders_ = {"source"};
    const unsigned count = 6 + below(12);
    while (folders_.size() <= count) {
      const std::string name = below(3) == 0 ? "same" : "d" + std::to_string(folders_.size());
      folders_.push_back(pick(folders_) + "/" + name);
      folder.folder(folders_.back());
      for (unsigned i = below(6); i > 0; --i)
        makeEntry((below(9) == 0 ? "source" : folders_.back()) + "/f" + std::to_string(++made_));
    }
    for (const std::string& name : folders_) {
      if (below(6) == 0) chmod(folder.path(name).c_str(), 0555);
    }
  }

  void makeEntry(const std::string& name) {
    const unsigned kind = below(8);
    if (kind == 0) return folder.symlink(name, below(2) == 0 ? "." : "nowhere");
    if (kind == 1 && !last_.empty()) return folder.hardlink(name, last_);
    last_ = name + (below(3) == 0 ? ".tmp" : "");
    folder.file(last_, below(5000));
  }

  std::vector<NodeIndex> allNodes() const {
    std::vector<NodeIndex> nodes;
    for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
      for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(tree, node, root))
        nodes.push_back(node);
    }
    return nodes;
  }

  /// Deletes the chosen objects. Sometimes the deletion is stopped, and sometimes objects with a
  /// certain digit in their names cannot be removed.
  template <class Delete>
  void sometimesFailing(unsigned objects, int error, Delete erase) {
    isAsked_ = false;
    stopAfter_ = below(4) == 0 ? int(below(objects)) + 1 : 0;
    std::optional<ScopedFault> fault;
    if (below(3) == 0)
      fault.emplace(testing::Fault{Call::Unlinkat, std::to_string(below(9)), error});
    erase();
  }

  void deleteFolders(bool recycle) {
    const std::vector<NodeIndex> nodes = allNodes();
    std::vector<NodeIndex> chosen;
    for (unsigned i = below(3); chosen.size() <= i;) {
      const NodeIndex node = pick(nodes);
      // The outermost folder is chosen rarely, because nothing remains after it.
      if (tree[node].parent != kNoNode || below(8) == 0) chosen.push_back(node);
    }
    sometimesFailing(12, EIO, [&] { deletion(recycle).DeleteFolders(chosen); });
  }

  /// Shows the files of a folder and deletes some of them.
  void deleteFiles() {
    showSomeFolder();
    Deletion::Ids chosen;
    for (Grid::RowIndex row = 0; row < files.grid().rowCount(); ++row) {
      if (below(2) == 0) chosen.push_back(files.grid().id(row));
    }
    const bool recycle = below(3) == 0;
    const bool isFromTopList = below(3) == 0;
    sometimesFailing(4, EPERM, [&] {
      if (isFromTopList)
        deletion(recycle).List_TOP_DeleteFiles(files.grid(), chosen);
      else
        deletion(recycle).List_Files_DeleteFiles(files, chosen);
    });
  }

  void showSomeFolder() {
    NodeIndex node = pick(allNodes());
    if (!tree[node].has(FolderNode::IsFolder)) node = tree[node].parent;
    Text path = Report_GetFullpathOfNode(tree, node, false, false);
    files.clear();
    if (!tree[node].has(FolderNode::IsJunction)) files.List_Files_ScanFolder(path, true);
  }

  void renameSomeFolder() {
    const NodeIndex node = pick(allNodes());
    if (!tree[node].has(FolderNode::IsFolder) || tree[node].parent == kNoNode) return;
    // Sometimes the new name exists already.
    Text name = below(3) == 0 ? u"same" : u"renamed" + toText(std::int64_t(below(3)));
    if (below(4) == 0) name = tree[tree[tree[node].parent].firstChild].name();
    if (name == tree[node].name()) return;
    renameFolder(tree, Report_GetFullpathOfNode(tree, node, false, false), name);
  }

  void renameSomeFile() {
    if (options.FolderList_FilterFilesExclude_Active == 1) return;  // names decide about the sums
    showSomeFolder();
    const std::vector<Text> names = texts(files.grid(), u"name");
    if (names.empty()) return;
    const Grid::RowIndex row = below(unsigned(names.size()));
    const Text name = below(2) == 0 ? u"file" + toText(std::int64_t(below(4))) : pick(names);
    renameFile(tree, files, row, name);
  }

  /// Simulates another program that writes to a folder, and reads the folder again.
  void changeAndRescan() {
    const NodeIndex node = pick(allNodes());
    if (!tree[node].has(FolderNode::IsFolder) || tree[node].has(FolderNode::IsJunction)) return;
    const Text path = Report_GetFullpathOfNode(tree, node, false, false);
    // The sums of all sources must be as they were scanned, so only one source may show the folder;
    // the folders above must be unchanged by a rescan.
    if (foldersAt(tree, path).size() + sourcesBelow(tree, path).size() > 1) return;
    const std::string inside = toBytes(path).substr(folder.path().size() + 1);
    if (chmod(folder.path(inside).c_str(), 0755) != 0) return;
    folder.file(inside + "/new" + std::to_string(++made_), below(9000));
    const std::string sub = inside + "/sub" + std::to_string(++made_);
    folder.folder(sub);
    folder.file(sub + "/new", 17);
    EXPECT_NE(Rescan(state(), nullptr).Report_Rescan(node), kNoNode);
  }

  /// All data of each folder of a source, in the order of their names. If hardlinks count once, the
  /// counted name depends on chance, so only the sum of all folders is included, and the check that
  /// each folder is the sum of its parts.
  std::vector<std::string> described(const FolderTree& of, NodeIndex root) const {
    std::vector<std::string> lines;
    for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(of, node, root)) {
      const FolderNode& n = of[node];
      std::string line = toBytes(Report_GetFullpathOfNode(of, node, false, false));
      std::int64_t size = n.size;
      if (options.AddHardlinksOnlyOnce == 1 && node != root) {
        size = 0;
        for (NodeIndex part = n.firstChild; part != kNoNode; part = of[part].nextSibling)
          size += of[part].size;
        size = !n.hasChildren() || size == n.size ? 0 : -1;
      }
      for (const std::int64_t number :
           {size, std::int64_t(n.files), std::int64_t(n.folders), std::int64_t(n.subfolders),
            std::int64_t(n.junctions), std::int64_t(n.errors), std::int64_t(n.level),
            std::int64_t(n.flags)})
        line += " " + std::to_string(number);
      lines.push_back(std::move(line));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
  }

  std::mt19937 random_;
  std::vector<std::string> folders_;
  std::string last_;
  int made_ = 0;
  bool isAsked_ = false;
  int stopAfter_ = 0;  // number of objects; 0: no stop
};

constexpr unsigned kSequences = 100;  // sequences in one part; the parts run in parallel

class TreeSequencesTest : public TestWithParam<unsigned> {};

TEST_P(TreeSequencesTest, TheNumbersStayThoseOfANewScan) {
  const ScopedUser user;  // a user without access to read-only folders
  const unsigned first = GetParam() * kSequences;
  for (unsigned seed = first; seed < first + kSequences && !HasFailure(); ++seed) {
    Sequence sequence(seed);
    std::string done = "seed " + std::to_string(seed);
    sequence.expectTrue(done);
    for (int step = 0; step < 8 && !sequence.isOver() && !HasFailure(); ++step) {
      done += "\n" + sequence.step();
      sequence.expectTrue(done);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Parts, TreeSequencesTest, Range(0U, 5U));

}  // namespace
}  // namespace ombrelian
