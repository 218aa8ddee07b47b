#include "platform/ReplacingFile.h"

#include <sys/wait.h>
#include <unistd.h>

#include "tests/testing/Testing.h"

namespace ombrelian::platform {
namespace {

using namespace ombrelian::testing;
using Names = std::vector<std::string>;

class ReplacingFileTest : public ::testing::Test {
 protected:
  /// Makes the next file get a temporary name, as on a file system without nameless files.
  Fault noNamelessFiles() const {
    return {.call = Call::Openat, .name = ".", .error = EOPNOTSUPP, .times = 1};
  }

  /// Begins a file in a process that is then killed.
  void killWhileWriting() const {
    if (fork() == 0) {
      ReplacingFile file;
      file.open(folder.text("report"));
      file.write("half");
      _exit(0);
    }
    wait(nullptr);
  }

  const TestFolder folder{TestFolder::Place::Memory};
};

TEST_F(ReplacingFileTest, AKilledProcessLeavesNothing) {
  folder.write("report", "old");
  killWhileWriting();
  EXPECT_EQ(namesIn(folder.path()), Names{"report"});
  EXPECT_EQ(readFile(folder.path("report")), "old");
}

TEST_F(ReplacingFileTest, AFileRemovesWhatWasLeftBetweenTheStepsOfAReplacement) {
  folder.write(".ombrelian-12.tmp", "whole but never renamed");
  ReplacingFile file;
  EXPECT_FALSE(file.open(folder.text("a")) || file.write("1") || file.commit());
  EXPECT_EQ(namesIn(folder.path()), Names{"a"});
}

TEST_F(ReplacingFileTest, TheNextFileRemovesWhatAKilledProcessLeftButNotWhatIsInUse) {
  std::optional<ScopedFault> fault(noNamelessFiles());
  killWhileWriting();
  EXPECT_EQ(namesIn(folder.path()).size(), 1U);
  fault.emplace(noNamelessFiles());
  ReplacingFile inUse;
  EXPECT_FALSE(inUse.open(folder.text("first")) || inUse.write("1"));
  EXPECT_EQ(namesIn(folder.path()).size(), 1U) << "the old one is gone, the new one is there";
  folder.write(".ombrelian-kept.txt", "");
  fault.emplace(noNamelessFiles());
  ReplacingFile second;
  EXPECT_FALSE(second.open(folder.text("second")) || second.write("2") || second.commit());
  EXPECT_FALSE(inUse.commit());
  EXPECT_EQ(namesIn(folder.path()), (Names{".ombrelian-kept.txt", "first", "second"}));
}

}  // namespace
}  // namespace ombrelian::platform
