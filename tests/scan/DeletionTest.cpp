#include "scan/Deletion.h"

#include <errno.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fs/z_Filesystem.h"
#include "scan/ListFeeder.h"
#include "scan/Rescan.h"
#include "tests/testing/Faults.h"
#include "tests/testing/Lists.h"
#include "tests/testing/ScanFixture.h"
#include "tests/testing/ScopedVariable.h"

namespace ombrelian {
namespace {

using ::testing::AllOf;
using testing::Call;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::QuietInterface;
using testing::ScanFixture;
using testing::ScopedFault;
using ::testing::SizeIs;
using testing::TestFolder;
using ::testing::UnorderedElementsAre;

/// Answers the question, and may do something while it stands.
struct Asked : QuietInterface {
  bool confirm(TextView text, const std::vector<Text>& lines) override {
    question = text;
    details = lines;
    if (whileAsked) whileAsked();
    return answer;
  }

  /// All that was told below the names.
  std::string told() const {
    std::string all;
    for (const Text& line : details)
      all += toBytes(line) + "\n";
    return all;
  }

  void deletionProgress(TextView path, std::uint64_t, std::uint64_t) override {
    if (!path.empty()) progress.emplace_back(path);
  }

  bool answer = true;
  std::vector<Text> progress;  // what it told of
  std::function<void()> whileAsked;
  Text question;
  std::vector<Text> details;
};

class DeletionTest : public ScanFixture {
 protected:
  DeletionTest() : bin_("XDG_DATA_HOME", folder.path("bin")) {
    folder.file("source/a/one", 100);
    folder.file("source/a/sub/two", 20);
    folder.file("source/b/three", 3);
    folder.file("source/top", 4000);
    folder.folder("outside");
    folder.file("outside/precious", 5);
    root = scan(folder.text("source"));
    log.clearRows();
  }

  Deletion deletion(bool recycle = false) {
    return Deletion({options, tree, context, filters, log, asked, nullptr}, nullptr, recycle);
  }

  bool deleteFolders(const std::vector<NodeIndex>& nodes, bool recycle = false) {
    return deletion(recycle).DeleteFolders(nodes);
  }

  NodeIndex node(TextView path) { return find(root, path); }
  bool exists(const char* name) const { return xExistFile_W(folder.text(name)); }

  /// Shows a folder and returns the ids of the files with these names.
  Deletion::Ids show(const char* name, const std::vector<Text>& names) {
    options.FilelistVisible = 1;
    Text path = folder.text(name);
    files.List_Files_ScanFolder(path, true);
    const std::vector<Text> all = testing::texts(files.grid(), u"name");
    Deletion::Ids ids;
    for (const Text& wanted : names)
      ids.push_back(
          files.grid().id(Grid::RowIndex(std::find(all.begin(), all.end(), wanted) - all.begin())));
    return ids;
  }

  const testing::ScopedVariable bin_;
  SystemFileTypes types;
  FileList files{options, types};
  Asked asked;
  NodeIndex root = kNoNode;
};

TEST_F(DeletionTest, NoMeansThatNothingHappens) {
  asked.answer = false;
  EXPECT_FALSE(deleteFolders({node(u"a")}));
  EXPECT_FALSE(deletion().List_Files_DeleteFiles(files, show("source", {u"top"})));
  EXPECT_TRUE(exists("source/a/sub/two"));
  EXPECT_THAT(logTexts(), IsEmpty());
  EXPECT_EQ(totals(root), (ScanTotals{4123, 4, 3, 0, 0, 0}));
}

TEST_F(DeletionTest, TheQuestionCountsWhatTheDiskHasNow) {
  // What filters left out of the scan, or came since, goes as well.
  folder.file("source/a/new", 1000);
  folder.hardlink("source/a/half", "source/b/three");
  folder.hardlink("source/a/whole1", "source/a/one");
  folder.symlink("source/a/link", "../b");
  asked.answer = false;
  deleteFolders({node(u"a")});
  EXPECT_EQ(asked.question,
            u"Soll der Ordner '" + folder.text("source/a") + u"' wirklich gelöscht werden?");
  // One name of two of 3 bytes stays; both names of 100 bytes go, which comes free once.
  EXPECT_THAT(asked.told(),
              AllOf(HasSubstr("Dateien: 5, Ordner: 3, Größe: 1.19 KB"),
                    HasSubstr("3 Namen von Hardlinks; 103 Bytes werden darum nicht frei"),
                    HasSubstr("Verknüpfungen: 1."), HasSubstr("nicht rückgängig")));
  // What cannot go is left out.
  ASSERT_EQ(rename(folder.path("source/a").c_str(), folder.path("moved").c_str()), 0);
  folder.file("source/a/another", 777);
  deleteFolders({node(u"a"), node(u"b")});
  EXPECT_THAT(asked.told(), HasSubstr("Dateien: 1, Ordner: 1, Größe: 3 Bytes"));
  EXPECT_THAT(asked.messages, SizeIs(1));
  for (int i = 0; i < 12; ++i)
    folder.folder("many/f" + std::to_string(i));
  root = scan(folder.text("many"));
  std::vector<NodeIndex> all;
  for (NodeIndex child = tree[root].firstChild; child != kNoNode; child = tree[child].nextSibling)
    all.push_back(child);
  deleteFolders(all, true);
  EXPECT_THAT(asked.told(), AllOf(HasSubstr("und 2 weitere"), HasSubstr("in den Papierkorb")));
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
  // The last subfolder takes the row for direct files with it.
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
    // One time the folder itself, one time the way to it.
    EXPECT_EQ(rename(folder.path("source/a").c_str(), folder.path("moved").c_str()), 0);
    folder.symlink("source/a", folder.path("outside"));
  };
  EXPECT_FALSE(deleteFolders({node(u"a/sub")}));
  asked.whileAsked = {};
  EXPECT_FALSE(deleteFolders({node(u"a")}));  // now it is found before anything is asked
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
    EXPECT_THAT(toBytes(row.text), HasSubstr("inzwischen etwas anderes"));
  }
  EXPECT_EQ(totals(root), (ScanTotals{4123, 4, 3, 0, 0, 0}));
}

TEST_F(DeletionTest, EachFailureIsToldAndStaysInTheSums) {
  const struct {
    Call call;
    const char* name;
    int error;
    bool recycle;
    const char* inText;
  } cases[] = {
      {Call::Unlinkat, "two", EIO, false, "two (#1117"},
      {Call::Unlinkat, "sub", EBUSY, false, "sub (#32"},
      {Call::Statx, "a", EIO, false, "#1117"},
      {Call::Mkdirat, "Trash", EROFS, true, "Trash"},  // the bin is not there yet
      {Call::Renameat2, "a", EACCES, true, "(120)"},
      {Call::Write, "", ENOSPC, true, "Trash"},
  };
  for (const auto& one : cases) {
    if (!exists("source/a/one")) folder.file("source/a/one", 100);
    if (!exists("source/a/sub/two")) folder.file("source/a/sub/two", 20);
    tree.clear();
    root = scan(folder.text("source"));
    log.clearRows();
    asked.messages.clear();
    {
      const ScopedFault fault({one.call, one.name, one.error});
      deleteFolders({node(u"a")}, one.recycle);
      EXPECT_GT(fault.hits(), 0);
    }
    ASSERT_EQ(log.rows().size(), 1U) << one.inText;
    EXPECT_TRUE(log.rows()[0].isError);
    EXPECT_THAT(toBytes(log.rows()[0].text),
                AllOf(HasSubstr(one.inText), HasSubstr(folder.path("source/a"))));
    EXPECT_EQ(asked.messages, std::vector<Text>{log.rows()[0].text});
    EXPECT_NE(node(u"a"), kNoNode);
    // What went in part is counted anew, to what a new scan finds.
    const ScanTotals shown = totals(root);
    EXPECT_EQ(shown, totals(scan(folder.text("source")))) << one.inText;
  }
}

TEST_F(DeletionTest, FilesGoFromTheListAndFromWhatTheScanCounted) {
  folder.file("source/b/hidden.tmp", 50);
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"*.tmp";
  const Deletion::Ids ids = show("source/b", {u"three", u"hidden.tmp"});
  {
    const ScopedFault fault({Call::Unlinkat, "three", EPERM});
    EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, ids));
  }
  // What the scan had left out changes no sum; what failed stays.
  EXPECT_EQ(totals(root), (ScanTotals{4123, 4, 3, 0, 0, 0}));
  EXPECT_EQ(files.grid().rowCount(), 1U);
  EXPECT_TRUE(deletion().List_Files_DeleteFiles(files, ids));
  EXPECT_EQ(totals(root), (ScanTotals{4120, 3, 3, 0, 0, 0}));
  EXPECT_EQ(files.grid().rowCount(), 0U);
  EXPECT_EQ(files.sum(), 0);
  EXPECT_THAT(asked.progress, Not(IsEmpty()));
  // Files go from the last row to the first, and each step is told before it is done.
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
  const ScanTotals before = totals(root);
  Grid& top = lists.grid(ListId::LargestFiles);
  EXPECT_TRUE(deletion().List_TOP_DeleteFiles(top, {top.id(0)}));
  EXPECT_FALSE(exists("source/top"));
  Grid& links = lists.hardlinks().grid();
  EXPECT_TRUE(deletion().List_Hardlinks_DeleteFiles(links, {links.id(1)}));
  EXPECT_EQ(totals(root), before);
  EXPECT_EQ(rows(ListId::LargestFiles), 4U);
  EXPECT_EQ(rows(ListId::Hardlinks), 1U);
  // Neither folders that go nor a rescan touch them.
  EXPECT_TRUE(deleteFolders({node(u"a")}));
  EXPECT_EQ(Rescan(state(&lists), nullptr).Report_Rescan(root), root);
  EXPECT_EQ(totals(root), (ScanTotals{3, 1, 1, 0, 0, 0}));
  EXPECT_EQ(rows(ListId::LargestFiles), 4U);
  EXPECT_EQ(rows(ListId::Hardlinks), 1U);
  EXPECT_GT(rows(ListId::Extensions), 0U);
}

}  // namespace
}  // namespace ombrelian
