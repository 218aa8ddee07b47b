// Every exception in a procedure is a failure that the caller gets, at any place in the procedure.

#include "export/ListSave.h"
#include "fs/Deleting.h"
#include "fs/Recycling.h"
#include "fs/z_Filesystem.h"
#include "scan/Deletion.h"
#include "scan/ListFeeder.h"
#include "scan/Rename.h"
#include "scan/Rescan.h"
#include "settings/z_INI.h"
#include "support/Guard.h"
#include "tests/testing/Allocations.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

struct Thrown : std::exception {
  const char* what() const noexcept override { return "thrown by the test"; }
};

/// Throws at chosen calls, and counts the runs.
struct Faulty : QuietInterface {
  void scanBegins() override { ++begun, throwIf(atBegin); }
  void scanEnds() override { ++ended; }
  void scanProgress(TextView, std::int64_t, std::int64_t, std::int64_t) override {
    throwIf(atProgress);
  }
  static void throwIf(bool wanted) {
    if (wanted) throw Thrown();
  }
  bool confirm(TextView, const std::vector<Text>&, TextView) override { return true; }

  bool atBegin = false, atProgress = false;
  int begun = 0, ended = 0;
};

class FaultsInRunsTest : public ScanFixture {
 protected:
  FaultsInRunsTest() {
    folder.file("a/one", 100);
    folder.file("a/two", 10);
    folder.file("b/three", 1);
  }

  ScanState faulty() { return {options, tree, context, filters, log, window, nullptr}; }

  RunResult run() {
    std::deque<Text> queue = {folder.text()};
    result = ScanRun(faulty()).Ordnerliste_Abarbeiten(queue);
    EXPECT_TRUE(queue.empty());
    return result;
  }

  void expectIdle(int runs) {
    EXPECT_TRUE(window.begun == runs && window.ended == runs) << window.begun << window.ended;
    EXPECT_FALSE(context.ScanBusy || context.IgnoresCancel);
    EXPECT_EQ(context.ScanCancelState, kScanIdle);
    EXPECT_TRUE(!log.rows().empty() && log.rows().back().isError);
  }

  Faulty window;
};

TEST_F(FaultsInRunsTest, ARunThatThrowsIsOverAndIncomplete) {
  window.atBegin = true;
  const RunResult none = run();
  EXPECT_TRUE(none.failed && !none.isComplete());
  expectIdle(1);
  window.atBegin = false;
  window.atProgress = true;
  const RunResult some = run();
  EXPECT_FALSE(some.isComplete());
  EXPECT_EQ(some.sum.Errors, 1);
  EXPECT_TRUE(tree[some.lastRoot].has(FolderNode::IsError));
  EXPECT_NE(tree.errorText(some.lastRoot).find(u"thrown by the test"), Text::npos);
  EXPECT_TRUE(window.ended == 2 && !context.ScanBusy);
  window.atProgress = false;
  EXPECT_TRUE(run().isComplete());
}

TEST_F(FaultsInRunsTest, RescanAndDeletionEndTheirRunsToo) {
  const NodeIndex root = scan(folder.text());
  struct : RowsOnShow {
    void change(const std::function<void()>&) override { throw Thrown(); }
  } rows;
  EXPECT_EQ(Rescan(faulty(), &rows).Report_Rescan(find(root, u"a")), kNoNode);
  expectIdle(1);
  EXPECT_TRUE(Deletion(faulty(), &rows, false).DeleteFolders({find(root, u"a")}))
      << "something is gone";
  expectIdle(2);
  ASSERT_EQ(window.messages.size(), 1U);
  EXPECT_NE(window.messages[0].find(u"thrown by the test"), Text::npos);
}

/// Makes each allocation fail once, in every procedure whose empty result means success. The result
/// must be a failure, or the action must be complete.
TEST_F(FaultsInRunsTest, NoLackOfMemoryIsTakenForSuccess) {
  const auto at = [&](const char* name) { return folder.text(name); };
  const char* const kName = "a name that no short text holds, one";
  const char* const kOther = "a name that no short text holds, two";
  const char* const kDeep = "made/of several folders with long names/deep";
  const char* const kInner = "gone/with a file of a long name";
  const auto makeFile = [&](const char* name) {
    if (!xExistFile_W(at(name))) folder.file(name, 1);
  };
  scan(folder.text());
  std::optional<IniStore> store;
  const Grid grid(listRow(ListId::Owners).columns());
  const struct {
    const char* name;
    std::function<void()> prepare;
    std::function<bool()> succeeds;  // result of the procedure
    std::function<bool()> isDone;    // state of the disk
  } procedures[] = {
      {"xMoveFile_W", [&] { makeFile(kName); },
       [&] { return xMoveFile_W(at(kName), at(kOther)).empty(); },
       [&] { return xExistFile_W(at(kOther)); }},
      {"xCreatePath", [] {}, [&] { return !xCreatePath(at(kDeep)); },
       [&] { return xExistFolder_W(at(kDeep)); }},
      {"renameFolder", [&] { folder.folder("b"); },
       [&] { return renameFolder(tree, at("b"), u"a new name of some length").empty(); },
       [&] { return xExistFolder_W(at("a new name of some length")); }},
      {"xDeleteFile_W", [&] { makeFile(kName); }, [&] { return !xDeleteFile_W({at(kName)}, true); },
       [&] { return !xExistFile_W(at(kName)); }},
      {"xDeleteFolderSHwide", [&] { makeFile(kInner); },
       [&] { return xDeleteFolderSHwide({at("gone")}, false).code == platform::kSuccess; },
       [&] { return !xExistFile_W(at("gone")); }},
      {"flush",
       [&] {
         store.emplace(at("settings with a long name.ini"));
         xDeleteFile_W({at("settings with a long name.ini")}, true);
         store->INI_WriteString(u"a section of some length", u"a long key", u"value");
       },
       [&] { return !store->flush(); },
       [&] { return xExistFile_W(at("settings with a long name.ini")); }},
      {"saveList", [] {},
       [&] {
         return !saveList({u"a title of some length", grid, {}, {}, {}}, options, ReportFormat::CSV,
                          at("a report with a long name.csv"), u",", window);
       },
       [&] { return xExistFile_W(at("a report with a long name.csv")); }},
  };
  for (const auto& procedure : procedures) {
    int failures = 0;
    bool isThrough = false;
    for (int number = 1; !isThrough && number < 3000; ++number) {
      procedure.prepare();
      bool answer = false;
      {
        const FailingAllocation failing(number);
        try {
          answer = procedure.succeeds();
        } catch (const std::bad_alloc&) {  // thrown by the arguments, before the procedure
        }
        isThrough = !failing.hasFailed();
      }
      failures += !answer;
      EXPECT_TRUE(!answer || procedure.isDone()) << procedure.name << " " << number;
    }
    EXPECT_TRUE(isThrough) << procedure.name;
    EXPECT_GT(failures, 0) << procedure.name << ": no allocation of it failed";
  }
}

TEST_F(FaultsInRunsTest, AGuardAnswersWithTheReason) {
  const auto text = GuardedOr(
      u"module", u"procedure",
      []() -> Text {
        throw Fault({9, u"there", u"out of range"});
      },
      errorTextOf);
  EXPECT_EQ(text, u"#9 - out of range");
  int asked = 0;
  const auto again = GuardedOr(
      u"module", u"procedure", []() -> Text { throw Thrown(); },
      [&](const Error& error) {
        if (++asked == 1) throw std::bad_alloc();
        return errorTextOf(error);
      });
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(again, u"#51");
  EXPECT_FALSE(Guarded(u"module", u"procedure", []() -> bool { throw Thrown(); }));
}

}  // namespace
}  // namespace ombrelian
