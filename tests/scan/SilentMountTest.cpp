#include "tests/testing/SilentMount.h"

#include <thread>

#include "fs/z_Filesystem.h"
#include "lists/FileList.h"
#include "platform/Patience.h"
#include "platform/Time.h"
#include "platform/Volumes.h"
#include "scan/Deletion.h"
#include "scan/Rescan.h"
#include "tests/testing/OwnMounts.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian::testing {
namespace {

using namespace std::chrono_literals;
using platform::GetTickCount;
using platform::Patience;

constexpr std::uint64_t kStopAfter = 150;           // milliseconds of patience of the user
constexpr std::uint64_t kSoon = kStopAfter + 1000;  // limit for the end of the work

/// A mount that stops answering while the program works on it.
class SilentMountTest : public ScanFixture {
 protected:
  /// Runs `body` in a process with the mount in place.
  template <class Body>
  void withMount(Body body) {
    runWithOwnMounts([&] {
      SilentMount mounted(folder.path());
      if (!mounted.isMounted()) return;
      mount = &mounted;
      body();
    });
  }

  /// The user stops the work a moment after now, in the event loop.
  void stopSoon() {
    const std::uint64_t end = GetTickCount() + kStopAfter;
    yields = 0;
    ui.onYield = [this, end] {
      ++yields;
      if (GetTickCount() >= end) context.ScanCancelState = kScanCancelRequested;
    };
  }

  /// Runs `work`, which hangs until the user stops it, and checks that it ends soon.
  template <class Work>
  void expectSoon(Work work) {
    stopSoon();
    const std::uint64_t begin = GetTickCount();
    work();
    const std::uint64_t taken = GetTickCount() - begin;
    EXPECT_GE(taken, kStopAfter);
    EXPECT_LT(taken, kSoon);
    EXPECT_GE(yields, 2);
    ui.onYield = nullptr;
  }

  /// Waits until the mount answers again.
  void heal() {
    mount->answer();
    const Patience patience([](std::chrono::milliseconds) { return true; });
    const std::uint64_t end = GetTickCount() + 10'000;
    while (!xExistFolder_W(folder.text("a")) && GetTickCount() < end)
      std::this_thread::sleep_for(10ms);
  }

  bool hasLogged(TextView text) const {
    const std::vector<Text> lines = logTexts();
    return std::any_of(lines.begin(), lines.end(),
                       [&](const Text& line) { return line.find(text) != Text::npos; });
  }

  SilentMount* mount = nullptr;
  int yields = 0;
};

TEST_F(SilentMountTest, ScansAndRescansEndWhenTheUserStopsThem) {
  struct Case {
    std::uint32_t request;
    SilentMount::Object object;
    bool hasA;  // "a" was read before the silence
  };
  constexpr Case kCases[] = {{FUSE_READDIR, SilentMount::kB, true},
                             {FUSE_OPENDIR, SilentMount::kC, true},
                             {FUSE_LOOKUP, SilentMount::kTop, false},
                             {FUSE_LOOKUP, SilentMount::kC1, true},
                             {FUSE_GETATTR, SilentMount::kRoot, false}};
  withMount([&] {
    for (const int helpers : {0, platform::kHelpersByDevice}) {
      context.helpers = helpers;
      for (const Case& c : kCases) {
        SCOPED_TRACE(c.request * 100 + c.object);
        tree.clear();
        mount->silence(c.request, c.object);
        NodeIndex root = kNoNode;
        expectSoon([&] { root = scan(folder.text()); });
        EXPECT_TRUE(result.cancelled);
        EXPECT_TRUE(tree[root].has(FolderNode::IsIncomplete));
        EXPECT_EQ(tree[root].errors, 1);
        EXPECT_TRUE(hasLogged(u"Das Dateisystem antwortet nicht."));
        const NodeIndex a = find(root, u"a");
        EXPECT_EQ(a != kNoNode && totals(a).Files == 2, c.hasA);
        // While the call is still pending, the next one fails at once and leaves no thread behind.
        const std::uint64_t begin = GetTickCount();
        EXPECT_TRUE(tree[scan(folder.text())].has(FolderNode::IsError));
        EXPECT_LT(GetTickCount() - begin, kStopAfter);
        heal();
        tree.clear();
        root = scan(folder.text());
        EXPECT_EQ(totals(root), (ScanTotals{500, 5, 3}));
        mount->silence(c.request, c.object);
        expectSoon([&] { Rescan(state(), nullptr).Report_Rescan(root); });
        EXPECT_TRUE(tree[tree.firstRoot()].has(FolderNode::IsIncomplete));
        heal();
      }
    }
  });
}

}  // namespace
}  // namespace ombrelian::testing
