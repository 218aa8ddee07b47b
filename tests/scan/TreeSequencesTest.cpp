// Whatever a user does to a scanned tree, its numbers are those of a new scan.

#include <errno.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "scan/Deletion.h"
#include "scan/Rename.h"
#include "scan/Rescan.h"
#include "tests/testing/Faults.h"
#include "tests/testing/ScanFixture.h"
#include "tests/testing/ScopedUser.h"
#include "tests/testing/ScopedVariable.h"
#include "tree/TreeEdit.h"

namespace ombrelian {
namespace {

using testing::Call;
using testing::QuietInterface;
using testing::ScanFixture;
using testing::ScopedFault;
using testing::ScopedUser;
using testing::TestFolder;

/// Says yes to what is asked, and may stop what was begun.
class YesInterface : public QuietInterface {
 public:
  bool confirm(TextView, const std::vector<Text>&) override {
    isAsked = true;
    return true;
  }
  bool GetInputState() override { return true; }
  void yield() override {
    if (isAsked && stopAfter > 0 && --stopAfter == 0) {
      context->ScanCancelState = kScanCancelRequested;
    }
  }

  ScanContext* context = nullptr;
  bool isAsked = false;
  int stopAfter = 0;  // objects; 0: never
};

/// One real folder, a tree that was scanned from it, and things that happen to both.
class Sequence : public ScanFixture {
  unsigned below(unsigned limit) { return unsigned(random_() % limit); }

  template <class List>
  auto pick(const List& list) {
    return list[below(unsigned(list.size()))];
  }

 public:
  void TestBody() override {}

  explicit Sequence(unsigned seed) : random_(seed) {
    ui_.context = &context;
    options.ShowHardlinkCount = std::uint8_t(below(2));
    options.FilelistVisible = 1;
    if (below(4) == 0) {
      options.FolderList_FilterFilesExclude_Active = 1;
      options.FolderList_FilterFilesExclude_Text = u"*.tmp";
    }
    fillDisk();
    scan(folder.text("source"));
    // A source within another shows the same folders.
    if (below(3) == 0 && !folders_.empty()) scan(folder.text(pick(folders_)));
  }

  /// Returns what was done, for who looks for the reason of a difference.
  std::string step() {
    log.clearRows();
    const unsigned kind = below(9);
    act(kind);
    std::string said = std::to_string(kind);
    for (const Text& row : logTexts())
      said += "\n  " + toBytes(row);
    return said;
  }

  /// Compares each source that is in the tree with a scan of it into another.
  void expectTrue(const std::string& when) {
    for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
      FolderTree fresh;
      ScanContext freshContext{platform::localeTextRules()};
      std::deque<Text> queue = {Text(tree[root].name())};
      ScanRun({options, fresh, freshContext, filters, freshLog_, quiet_, nullptr})
          .Ordnerliste_Abarbeiten(queue);
      ASSERT_FALSE(fresh.empty()) << when << ": " << toBytes(tree[root].name()) << " is missing";
      EXPECT_EQ(described(tree, root), described(fresh, fresh.firstRoot())) << when;
    }
  }

  bool isOver() const { return tree.empty(); }

 private:
  /// One of nine; what happens often stands more than once.
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
    const int count = 6 + int(below(12));
    for (int i = 0; i < count; ++i) {
      folders_.push_back(pick(folders_) + "/" + (below(3) == 0 ? "same" : "d" + std::to_string(i)));
      folder.folder(folders_.back());
      fillFolder(folders_.back());
    }
    if (below(2) == 0) fillFolder("source");
    for (const std::string& name : folders_) {
      if (below(6) == 0) chmod(folder.path(name).c_str(), 0555);
    }
  }

  void fillFolder(const std::string& where) {
    for (unsigned i = below(6); i > 0; --i) {
      const std::string name = where + "/f" + std::to_string(++made_);
      const unsigned kind = below(8);
      if (kind == 0) {
        folder.symlink(name, below(2) == 0 ? "." : "nowhere");
      } else if (kind == 1 && !last_.empty() && access(folder.path(last_).c_str(), F_OK) == 0) {
        folder.hardlink(name, last_);
      } else {
        last_ = name + (below(3) == 0 ? ".tmp" : "");
        folder.file(last_, below(5000));
      }
    }
  }

  ScanState stateOf(UserInterface& user) {
    return {options, tree, context, filters, log, user, nullptr};
  }

  std::vector<NodeIndex> allNodes() const {
    std::vector<NodeIndex> nodes;
    for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
      for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(tree, node, root))
        nodes.push_back(node);
    }
    return nodes;
  }

  /// Now and then, objects with some digit in their names that cannot be removed while it lives.
  std::unique_ptr<ScopedFault> sometimesFailing(int error) {
    if (below(3) != 0) return nullptr;
    return std::make_unique<ScopedFault>(
        testing::Fault{Call::Unlinkat, std::to_string(below(9)), error});
  }

  void deleteFolders(bool recycle) {
    const std::vector<NodeIndex> nodes = allNodes();
    std::vector<NodeIndex> chosen;
    for (unsigned i = below(3); chosen.size() <= i;) {
      const NodeIndex node = pick(nodes);
      // The outermost folder goes seldom, or nothing would be left to do.
      if (tree[node].parent != kNoNode || below(8) == 0) chosen.push_back(node);
    }
    ui_.isAsked = false;
    ui_.stopAfter = below(4) == 0 ? int(below(12)) + 1 : 0;
    const auto fault = sometimesFailing(EIO);
    Deletion(stateOf(ui_), nullptr, recycle).DeleteFolders(chosen);
  }

  /// Shows the files of a folder and deletes some of them.
  void deleteFiles() {
    FileList files(options, types_);
    showSomeFolder(files);
    Deletion::Ids chosen;
    for (Grid::RowIndex row = 0; row < files.grid().rowCount(); ++row) {
      if (below(2) == 0) chosen.push_back(files.grid().id(row));
    }
    ui_.isAsked = false;
    ui_.stopAfter = below(4) == 0 ? int(below(4)) + 1 : 0;
    const auto fault = sometimesFailing(EPERM);
    Deletion(stateOf(ui_), nullptr, below(3) == 0).List_Files_DeleteFiles(files, chosen);
  }

  void showSomeFolder(FileList& files) {
    NodeIndex node = pick(allNodes());
    if (!tree[node].has(FolderNode::IsFolder)) node = tree[node].parent;
    Text path = Report_GetFullpathOfNode(tree, node, false, false);
    if (!tree[node].has(FolderNode::IsJunction)) files.List_Files_ScanFolder(path, true);
  }

  void renameSomeFolder() {
    const NodeIndex node = pick(allNodes());
    if (!tree[node].has(FolderNode::IsFolder) || tree[node].parent == kNoNode) return;
    // Now and then a name that something has already.
    Text name = u"renamed" + toText(std::int64_t(below(3)));
    if (below(3) == 0) name = u"same";
    if (below(4) == 0 && tree[tree[node].parent].hasChildren()) {
      name = tree[tree[tree[node].parent].firstChild].name();
    }
    if (name == tree[node].name()) return;
    renameFolder(tree, Report_GetFullpathOfNode(tree, node, false, false), name);
  }

  void renameSomeFile() {
    if (options.FolderList_FilterFilesExclude_Active == 1) return;  // names decide what counts
    FileList files(options, types_);
    showSomeFolder(files);
    if (files.grid().rowCount() == 0) return;
    const auto row = Grid::RowIndex(below(unsigned(files.grid().rowCount())));
    const auto other = Grid::RowIndex(below(unsigned(files.grid().rowCount())));
    const Text name = below(2) == 0 ? u"file" + toText(std::int64_t(below(4)))
                                    : Text(files.grid().text(other, files.grid().column(u"name")));
    renameFile(tree, files, row, name);
  }

  /// Something else writes to a folder, which is then read anew.
  void changeAndRescan() {
    const NodeIndex node = pick(allNodes());
    if (!tree[node].has(FolderNode::IsFolder) || tree[node].has(FolderNode::IsJunction)) return;
    const Text path = Report_GetFullpathOfNode(tree, node, false, false);
    // All sources are to be as they were found, which takes one that shows the folder alone; and
    // what a rescan leaves unchanged above is to stay the same.
    if (foldersAt(tree, path).size() + sourcesBelow(tree, path).size() > 1) return;
    const std::string inside = toBytes(path).substr(folder.path().size() + 1);
    if (chmod(folder.path(inside).c_str(), 0755) != 0) return;
    folder.file(inside + "/new" + std::to_string(++made_), below(9000));
    const std::string sub = inside + "/sub" + std::to_string(++made_);
    folder.folder(sub);
    folder.file(sub + "/new", 17);
    EXPECT_NE(Rescan(stateOf(quiet_), nullptr).Report_Rescan(node), kNoNode);
  }

  /// All that is told of each folder of a source, in the order of their names.
  static std::vector<std::string> described(const FolderTree& of, NodeIndex root) {
    std::vector<std::string> lines;
    for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(of, node, root)) {
      const FolderNode& n = of[node];
      std::string line = toBytes(Report_GetFullpathOfNode(of, node, false, false));
      for (const std::int64_t number :
           {n.size, std::int64_t(n.files), std::int64_t(n.folders), std::int64_t(n.subfolders),
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
  YesInterface ui_;
  QuietInterface quiet_;
  Log freshLog_{options};
  SystemFileTypes types_;
};

constexpr unsigned kSequences = 100;  // of one part; the parts run side by side

class TreeSequencesTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(TreeSequencesTest, TheNumbersStayThoseOfANewScan) {
  const ScopedUser user;  // whom read-only folders keep out
  const TestFolder bin;
  const testing::ScopedVariable home("XDG_DATA_HOME", bin.path());
  const unsigned first = GetParam() * kSequences;
  for (unsigned seed = first; seed < first + kSequences && !HasFailure(); ++seed) {
    Sequence sequence(seed);
    sequence.expectTrue("seed " + std::to_string(seed) + ", scanned");
    for (int step = 0; step < 8 && !sequence.isOver() && !HasFailure(); ++step) {
      const std::string done = sequence.step();
      sequence.expectTrue("seed " + std::to_string(seed) + ", step " + std::to_string(step) + ": " +
                          done + "\n");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Parts, TreeSequencesTest, ::testing::Range(0U, 5U));

}  // namespace
}  // namespace ombrelian
