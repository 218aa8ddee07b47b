#include "frame/StartUp.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <regex>

#include "settings/z_Translate.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/ScopedVariable.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

/// Starts of the program by a user whose home is a new folder.
class StartUpTest : public ::testing::Test {
 protected:
  std::string dataFile(const char* name) const {
    return testing::readFile(home.path(std::string("config/Ombrelian/") + name));
  }

  void writeIni(const char* name, const std::string& content) const {
    home.folder("config/Ombrelian");
    std::ofstream(home.path(std::string("config/Ombrelian/") + name), std::ios::binary) << content;
  }

  const testing::TestFolder home;
  const testing::ScopedVariable config{"XDG_CONFIG_HOME", home.path("config")};
  const testing::ScopedVariable runtime{"XDG_RUNTIME_DIR", home.path()};
};

TEST_F(StartUpTest, ANewUserGetsAFolderAndASettingsFile) {
  CommandLine silent;
  silent.mode = CommandLine::Mode::Silent;
  EXPECT_FALSE(StartUp(silent, u"", 7).isFirstStart()) << "only a window adds the shell verb";
  const StartUp startUp({}, u"\"line\"", 7);
  EXPECT_EQ(startUp.DataPath(), home.text("config/Ombrelian"));
  EXPECT_TRUE(startUp.isFirstStart());
  EXPECT_EQ(testing::readReport(home.path("config/Ombrelian/Ombrelian3.ini")),
            u"[Allgemein]\r\nLang=7\r\n[Optionen]\r\nKontextmenu=1\r\n");
  EXPECT_TRUE(dataFile("debug.log").ends_with(" - Command$=, \"line\"\r\n"));
}

TEST_F(StartUpTest, ANewUserKeepsTwoSettingsOfTheOlderVersion) {
  const std::tuple<const char*, TextView, bool> cases[] = {
      // The older file, the file made from it, and whether this is a first start.
      {"[Optionen]\r\nKontextmenu=0\r\nBigIcons=1\r\n[Allgemein]\r\nLang=12\r\n",
       u"[Optionen]\r\nKontextmenu=0\r\n[Allgemein]\r\nLang=12\r\n", false},
      {"[Allgemein]\nLang=\n", u"[Allgemein]\r\nLang=12\r\n[Optionen]\r\nKontextmenu=1\r\n", true},
      {"[Optionen]\nKontextmenu=-99\n",
       u"[Allgemein]\r\nLang=12\r\n[Optionen]\r\nKontextmenu=1\r\n", true},
  };
  const std::string made = home.path("config/Ombrelian/Ombrelian3.ini");
  for (const auto& [old, content, isFirstStart] : cases) {
    unlink(made.c_str());
    writeIni("Ombrelian.ini", old);
    for (const bool isFirst : {isFirstStart, false}) {
      const StartUp startUp({}, u"", 12);
      EXPECT_EQ(startUp.isFirstStart(), isFirst) << old;
      EXPECT_EQ(testing::readReport(made), content);
    }
    EXPECT_EQ(dataFile("Ombrelian.ini"), old) << "it stays";
  }
}

TEST_F(StartUpTest, OnlyALanguageThatCanBeIsTakenFromTheSettings) {
  const ScopedLocale german("de_DE");
  const std::pair<std::string, bool> cases[] = {{"12", true}, {"", false},    {"x12", false},
                                                {"0", false}, {"-12", false}, {"268", false}};
  for (const auto& [number, isTaken] : cases) {
    writeIni("Ombrelian.ini", "[Allgemein]\r\nLang=" + number + "\r\n");
    Translation translation;
    const bool isTold = !startLanguage({}, translation).empty();  // there are no French texts
    EXPECT_EQ(isTold || translation.LanguageId() != kGerman, isTaken) << number;
    setLanguageTexts(nullptr);
  }
}

TEST_F(StartUpTest, ASettingsFileWithoutItsMarkIsCopiedAndWrittenAgain) {
  const std::string mark = "\xFF\xFE";
  const std::string name = "[S]\nName=\xC3\xA4\n";
  const std::string latin = "[S]\nName=\xE4\n";
  const std::string wide("[\0S\0]\0", 6);
  const struct {
    std::string before;
    std::string after;  // what the file begins with
    bool isCopied;
    TextView name;
  } cases[] = {
      {name, mark + "[", true, u"\u00E4"},    {"\xEF\xBB\xBF" + name, mark + "[", true, u"\u00E4"},
      {latin, mark + "[", true, u"\xDCE4"},   {wide, mark + wide.substr(2), true, u""},
      {mark + wide, mark + wide, false, u""}, {"", mark, false, u""},
  };
  for (const auto& c : cases) {
    unlink(home.path("config/Ombrelian/Ombrelian3.ini.bak").c_str());
    writeIni("Ombrelian3.ini", c.before);
    StartUp startUp({}, u"", 12);
    EXPECT_TRUE(dataFile("Ombrelian3.ini").starts_with(c.after)) << c.before;
    EXPECT_EQ(dataFile("Ombrelian3.ini.bak"), c.isCopied ? c.before : "");
    EXPECT_EQ(startUp.notices().empty(), !c.isCopied);
    EXPECT_EQ(startUp.settings().INI_ReadString(u"Optionen", u"Kontextmenu", u""), u"1");
    EXPECT_EQ(startUp.settings().INI_ReadString(u"S", u"Name", u""), c.name);
  }
}

TEST_F(StartUpTest, AFolderThatIsNotAbsoluteOrThatAnotherUserControlsIsNotUsed) {
  home.folder("config");
  home.folder("users");
  ASSERT_EQ(geteuid() == 0 ? chown(home.path("users").c_str(), 65534, 65534) : 0, 0);
  const std::string users = home.path("users");
  const std::string own = home.path("own");
  const struct {
    std::string config, home;
    Text folder;
    std::size_t notes;
    bool isForAdministrators = false;
  } cases[] = {
      {"", own, fromBytes(own + "/.config"), 0},
      {"relative", own, fromBytes(own + "/.config"), 1},
      {own, "relative", fromBytes(own), 1},
      {users, own, fromBytes(own + "/.config"), 1, true},
      {users + "/deep", own, fromBytes(own + "/.config"), 1, true},
      {home.path("open"), own, fromBytes(own + "/.config"), 1, true},
      {home.path("open/mine"), own, fromBytes(home.path("open/mine")), 0, true},
      {users + "/made/by/an/administrator", own, fromBytes(own + "/.config"), 1, true},
  };
  home.folder("users/made/by/an/administrator");
  // Anybody may put something into this folder, but nobody may replace what is there.
  home.folder("open/mine");
  home.chmod("open", 01777);
  for (const auto& c : cases) {
    if (c.isForAdministrators && geteuid() != 0) continue;
    const testing::ScopedVariable named("XDG_CONFIG_HOME", c.config);
    const testing::ScopedVariable user("HOME", c.home);
    EXPECT_EQ(platform::GetApplicationDataFolder(), c.folder) << c.config << ' ' << c.home;
    const StartUp startUp({}, u"", 7);
    EXPECT_EQ(startUp.notices().size(), c.notes) << c.config << ' ' << c.home;
  }
  const testing::ScopedVariable unnamed("XDG_CONFIG_HOME", "");
  const testing::ScopedVariable none("HOME", geteuid() == 0 ? users : "");
  EXPECT_TRUE(platform::GetApplicationDataFolder().ends_with(u"/.config"));
  EXPECT_FALSE(platform::GetApplicationDataFolder().starts_with(home.text()));
  EXPECT_EQ(testing::namesIn(users), std::vector<std::string>{"made"}) << "nothing is made there";
}

TEST_F(StartUpTest, WhatIsNotAnOwnFileIsRefusedWithAMessage) {
  const char* const names[] = {"Ombrelian3.ini", "Ombrelian.log", "error.log", "debug.log"};
  for (const char* const name : names) {
    const std::string path = home.path("config/Ombrelian/") + name;
    for (const bool isPipe : {true, false}) {
      home.write("victim", "\xFF\xFE");
      home.folder("config/Ombrelian");
      unlink(path.c_str());
      ASSERT_EQ(isPipe ? mkfifo(path.c_str(), 0600) : symlink("../../victim", path.c_str()), 0);
      ASSERT_EQ(geteuid() == 0 ? lchown(path.c_str(), 65534, 65534) : 0, 0);
      if (isPipe || geteuid() == 0) {
        const StartUp startUp({}, u"", 7);
        ASSERT_EQ(startUp.notices().size(), 1U) << name;
        EXPECT_NE(startUp.notices()[0].find(fromBytes(path)), Text::npos) << name;
      }
      EXPECT_EQ(testing::readFile(home.path("victim")), "\xFF\xFE") << name;
      unlink(path.c_str());
    }
  }
  if (geteuid() != 0) return;
  ASSERT_EQ(chown(home.path("config/Ombrelian").c_str(), 65534, 65534), 0);
  const StartUp startUp({}, u"", 7);
  EXPECT_EQ(startUp.DataPath(), u"");
  EXPECT_FALSE(startUp.notices().empty());
}

TEST_F(StartUpTest, OwnFoldersAndFilesAreForTheirOwnerAlone) {
  { const StartUp startUp({}, u"", 7); }
  for (const char* const folder : {"config", "config/Ombrelian"})
    EXPECT_EQ(home.modeOf(folder), 0700U) << folder;
  for (const std::string& name : testing::namesIn(home.path("config/Ombrelian")))
    EXPECT_EQ(home.modeOf("config/Ombrelian/" + name), 0600U) << name;
}

TEST_F(StartUpTest, AHomeThatCannotBeWrittenIsDoneWithout) {
  home.file("file");
  const testing::ScopedVariable file("XDG_CONFIG_HOME", home.path("file"));
  const StartUp startUp({}, u"", 7);
  EXPECT_EQ(startUp.DataPath(), home.text("file/Ombrelian"));
}

TEST_F(StartUpTest, FaultsAreReportedAndCounted) {
  StartUp startUp({}, u"\"the line\"", 7);
  startUp.errorLog().setScreen(800, 600);
  const std::string line = std::to_string(__LINE__ + 2);
  for (int i = 0; i < 2; ++i) {
    Guarded(u"mod", u"proc", [] { throw Fault({13, u"step 7", u"went wrong"}); }, {u"value"});
  }
  EXPECT_EQ(startUp.errorLog().Errcount(), 2);
  const std::string log = dataFile("error.log");
  const std::string rows[] = {"Modul: mod\r\n",
                              "Func: proc\r\n",
                              "Line: " + line + "\r\n",
                              "Err: 13 - went wrong\r\n",
                              "Command: \"the line\"\r\n",
                              "Screen: 800x600\r\n",
                              "Errcount: 2\r\n",
                              "Debug0: value\r\n",
                              "IniCreate: 20"};
  for (const std::string& row : rows) {
    EXPECT_NE(log.find(row), std::string::npos) << row;
  }
  // What every machine reports of itself.
  for (const char* const fact : {"SysUp: [0-9]+d [0-9:]+", "OS: [^ ].* Version: [0-9].*",
                                 "PhysRAM: [1-9][0-9]* MB Free / [1-9][0-9]* MB Total",
                                 "MemLoad: [0-9]+%", "RAM used: [1-9][0-9]* MB", "Comp: .+"}) {
    EXPECT_TRUE(std::regex_search(log, std::regex("\r\n" + std::string(fact) + "\r\n"))) << fact;
  }
}

TEST_F(StartUpTest, ARestartWaitsForTheOldProcess) {
  EXPECT_TRUE(WaitForMutexGone(u"Waited", 0, 1)) << "nobody holds it";
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const platform::NamedMutex mutex = platform::CreateMutexW(u"Waited");
    if (write(ready[1], mutex.isHeld() ? "y" : "n", 1) != 1) _exit(2);
    usleep(300'000);
    _exit(0);
  }
  char held = 0;
  ASSERT_EQ(read(ready[0], &held, 1), 1);
  EXPECT_EQ(held, 'y');
  EXPECT_FALSE(WaitForMutexGone(u"Waited", 20, 10));
  EXPECT_TRUE(WaitForMutexGone(u"Waited", 10'000, 10));
  waitpid(child, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
}

}  // namespace
}  // namespace ombrelian
