#include "tests/testing/SilentMount.h"

#include <thread>

#include "fs/Owners.h"
#include "fs/z_Filesystem.h"
#include "lists/FileList.h"
#include "platform/Patience.h"
#include "platform/Removal.h"
#include "platform/ReplacingFile.h"
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

constexpr std::uint64_t kStopAfter = 150;  // milliseconds of patience of the user
constexpr std::uint64_t kSoon = 5000;      // limit for the end of the work, for any machine

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

  const TestFolder links;  // a local folder
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
        EXPECT_LT(GetTickCount() - begin, kSoon);
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

TEST_F(SilentMountTest, AScanOfALocalFolderEndsAtALinkIntoTheMount) {
  links.file("first/file", 10);
  links.symlink("link", folder.path("a"));
  withMount([&] {
    NodeIndex root = scan(links.text());
    EXPECT_EQ(totals(root), (ScanTotals{10, 1, 2, 0, 0, 1}));
    tree.clear();
    mount->silence(FUSE_LOOKUP, SilentMount::kA);
    expectSoon([&] { root = scan(links.text()); });
    EXPECT_TRUE(tree[root].has(FolderNode::IsIncomplete));
    EXPECT_TRUE(hasLogged(u"Das Dateisystem antwortet nicht."));
  });
}

TEST_F(SilentMountTest, ADeletionEndsAndWhatRemainsStaysInTheTree) {
  struct Case {
    std::uint32_t request;
    SilentMount::Object object;
    std::int32_t filesLeft;  // in the tree afterwards
  };
  // While the objects are counted; while the first and the second file are removed.
  constexpr Case kCases[] = {{FUSE_READDIR, SilentMount::kC, 5},
                             {FUSE_UNLINK, SilentMount::kA1, 5},
                             {FUSE_UNLINK, SilentMount::kC1, 2}};
  withMount([&] {
    ui.confirms = true;
    for (const Case& c : kCases) {
      SCOPED_TRACE(c.request * 100 + c.object);
      tree.clear();
      const NodeIndex root = scan(folder.text());
      const NodeIndex target = find(root, c.object == SilentMount::kA1 ? u"a" : u"b");
      mount->silence(c.request, c.object);
      ui.messages.clear();
      expectSoon([&] { Deletion(state(), nullptr, false).DeleteFolders({target}); });
      ASSERT_EQ(ui.messages.size(), 1U);
      EXPECT_NE(ui.messages[0].find(u"Das Dateisystem antwortet nicht."), Text::npos);
      // What is gone is known only after a new scan of the folder, which is marked.
      EXPECT_EQ(totals(tree.firstRoot()).Files < 5, tree[root].has(FolderNode::IsIncomplete));
      EXPECT_GE(totals(tree.firstRoot()).Files, c.filesLeft);
      heal();
    }
  });
}

TEST_F(SilentMountTest, NoQuestionWaitsForEver) {
  struct Case {
    const char* name;
    std::uint32_t request;
    SilentMount::Object object;
    std::function<bool()> isRefused;
  };
  const Text target = folder.text("top");
  SystemFileTypes types;
  FileList files(options, types);
  const auto open = [&](int disposition) {
    platform::ErrorCode error = platform::kSuccess;
    platform::CreateFileW(target, disposition, error);
    return error == platform::kTimeout;
  };
  const Case kCases[] = {
      {"source", FUSE_LOOKUP, SilentMount::kA, [&] { return !xExistFolder_W(folder.text("a")); }},
      {"source behind a link", FUSE_LOOKUP, SilentMount::kA,
       [&] { return !xExistFolder_W(links.text("link/a")); }},
      {"object", FUSE_LOOKUP, SilentMount::kTop,
       [&] {
         platform::FindData data;
         return findObject(target, data) == platform::kTimeout;
       }},
      {"volume", FUSE_LOOKUP, SilentMount::kA, [&] { return !keepsOwners(folder.text("a")); }},
      {"rename", FUSE_RENAME, SilentMount::kAny,
       [&] { return !xMoveFile_W(folder.text("a/a2"), folder.text("a/new")).empty(); }},
      {"delete", FUSE_UNLINK, SilentMount::kA1,
       [&] { return platform::DeleteFileW({folder.text("a/a1")}) == platform::kTimeout; }},
      {"bin", FUSE_LOOKUP, SilentMount::kTop,
       [&] {
         Text detail;
         return platform::RecycleObject({target}, detail) == platform::kTimeout;
       }},
      {"save", FUSE_LOOKUP, SilentMount::kTop,
       [&] { return platform::ReplacingFile::check(target).has_value(); }},
      {"open", FUSE_OPEN, SilentMount::kTop, [&] { return open(platform::kOpenRead); }},
      {"drives", FUSE_STATFS, SilentMount::kAny,
       [&] { return platform::ProbeDrives({folder.text()}, 150)[0].error == platform::kTimeout; }},
      {"files", FUSE_READDIR, SilentMount::kB, [&] {
         Text shown = folder.text("b");
         const auto stop = GetTickCount() + kStopAfter;
         files.List_Files_ScanFolder(shown, true, [&] { return GetTickCount() < stop; });
         return files.failure() && files.failure()->number == std::int32_t(platform::kTimeout);
       }}};
  options.FilelistVisible = 1;
  withMount([&] {
    links.symlink("link", folder.path());
    for (const Case& c : kCases) {
      SCOPED_TRACE(c.name);
      int asked = 0;
      const Patience patience([&](std::chrono::milliseconds waited) {
        ++asked;
        return waited < std::chrono::milliseconds(kStopAfter);
      });
      mount->silence(c.request, c.object);
      const std::uint64_t begin = GetTickCount();
      EXPECT_TRUE(c.isRefused());
      EXPECT_LT(GetTickCount() - begin, kSoon);
      EXPECT_TRUE(asked >= 2 || std::string_view(c.name) == "files");
      // Local objects are not affected.
      EXPECT_TRUE(xExistFolder_W(links.text()));
      heal();
    }
  });
}

}  // namespace
}  // namespace ombrelian::testing
