#include "services/ShellVerb.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "tests/testing/ScopedUser.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

constexpr const char* kFiles[] = {
    "applications/ombrelian.desktop", "kio/servicemenus/ombrelian.desktop",
    "nemo/actions/ombrelian.nemo_action", "nautilus/scripts/Ombrelian"};

class ShellVerbTest : public ::testing::Test {
 protected:
  /// Whether the command succeeds; its output is that of the test.
  static bool runs(const std::string& command) { return std::system(command.c_str()) == 0; }

  Text set(bool isWanted) const { return setShellVerb(isWanted, program, home.text("share")); }
  std::string file(const char* name) const { return home.path(std::string("share/") + name); }

  const TestFolder home;
  const Text program = home.text("a \"b\" $c `d` %f 'e' \\g/ombrelian");
};

TEST_F(ShellVerbTest, EveryFileStartsThisProgramWithTheFolderAndRemovalLeavesNothing) {
  home.folder("outer/my %u folder");
  const std::string shown = home.path("outer/my %u folder");
  const std::string name = toBytes(program).substr(home.path().size() + 1);
  home.write(name, "#!/bin/sh\nprintf '%s\\n' \"$@\" >'" + home.path("given") + "'\n");
  home.chmod(name, 0755);
  EXPECT_EQ(set(true), u"");
  EXPECT_TRUE(runs("desktop-file-validate '" + file(kFiles[0]) + "' >&2"));
  const std::pair<std::string, std::string> starts[] = {
      {"gio launch '" + file(kFiles[0]) + "' '" + shown + "'", shown + "\n"},
      {"'" + file(kFiles[3]) + "' '" + shown + "'", "--\n" + shown + "\n"},
      {"cd '" + shown + "' && '" + file(kFiles[3]) + "'", "--\n" + shown + "\n"}};
  for (const auto& [command, given] : starts) {
    std::filesystem::remove(home.path("given"));
    EXPECT_TRUE(runs(command)) << command;
    for (int wait = 0; wait < 500 && readFile(home.path("given")) != given; ++wait)
      usleep(10'000);
    EXPECT_EQ(readFile(home.path("given")), given) << command;
  }
  // The two other formats have the same rules for their command.
  const auto exec = [&](const char* entry) {
    const std::string text = readFile(file(entry));
    const std::size_t at = text.find("\nExec=");
    return text.substr(at, text.find('\n', at + 1) - at);
  };
  EXPECT_EQ(exec(kFiles[1]), exec(kFiles[0]));
  EXPECT_EQ(exec(kFiles[2]), exec(kFiles[0]));
  EXPECT_EQ(set(false), u"");
  EXPECT_FALSE(home.has("share"));
}

TEST_F(ShellVerbTest, WhatIsThereStaysAndARepairKeepsWhatToRemove) {
  home.folder("share/applications");
  home.write("share/kio/servicemenus/ombrelian.desktop", "[Desktop Entry]\n");
  home.chmod("share/kio/servicemenus/ombrelian.desktop", 0755);
  EXPECT_EQ(set(true), u"");
  home.write("share/applications/ombrelian.desktop",
             "# Made by Ombrelian, with new folders: 0\n[Desktop Entry]\nExec=/old/place\n");
  EXPECT_EQ(set(true), u"");
  EXPECT_NE(readFile(file(kFiles[0])).find("MimeType=inode/directory;"), std::string::npos);
  struct stat before;
  struct stat after;
  ASSERT_EQ(stat(file(kFiles[2]).c_str(), &before), 0);
  EXPECT_EQ(set(true), u"");
  ASSERT_EQ(stat(file(kFiles[2]).c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino) << "it was right already";
  EXPECT_EQ(set(false), u"");
  EXPECT_EQ(readFile(file(kFiles[1])), "[Desktop Entry]\n") << "somebody else made it";
  EXPECT_EQ(home.modeOf("share/kio/servicemenus/ombrelian.desktop"), 0755U);
  EXPECT_TRUE(home.has("share/applications"));
  EXPECT_FALSE(home.has("share/applications/ombrelian.desktop"));
  EXPECT_FALSE(home.has("share/nemo") || home.has("share/nautilus"));
}

TEST_F(ShellVerbTest, AFolderThatCannotBeWrittenIsReported) {
  const ScopedUser user;
  const TestFolder closed;
  closed.chmod("", 0555);
  EXPECT_EQ(toBytes(setShellVerb(true, program, closed.text())),
            closed.path("applications/ombrelian.desktop") + ": Permission denied");
  closed.chmod("", 0755);
}

}  // namespace
}  // namespace ombrelian
