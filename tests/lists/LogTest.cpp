#include "lists/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

class LogTest : public ::testing::Test {
 protected:
  LogTest() { log.setFile(folder.text("Ombrelian.log")); }

  std::string file() const { return testing::readFile(folder.path("Ombrelian.log")); }

  const ScopedLocale locale{"C"};
  testing::TestFolder folder;
  Options options;
  Log log{options};
};

TEST_F(LogTest, ALineForEachEntryByTheFormOfDates) {
  EXPECT_EQ(log.Show_Log(), u"");
  log.LogProtokoll(u"first \xDCFF");
  options.DateFormat = u"dd.mm.yyyy";
  log.LogProtokoll(u"second", true);
  EXPECT_THAT(file(), ::testing::MatchesRegex(
                          "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} - first \xFF\n"
                          "[0-9]{2}\\.[0-9]{2}\\.[0-9]{4} - second\n"));
  // The form of dates shows in the rows that are there already, not in the lines.
  EXPECT_EQ(log.dateText(log.rows()[0]), log.dateText(log.rows()[1]));
  EXPECT_EQ(log.Show_Log(), folder.text("Ombrelian.log"));
  EXPECT_EQ(log.List_Log_ShowStat(), u"2 Einträge");
}

TEST_F(LogTest, TheListGoesOnWithoutAFile) {
  options.DontCreateLogFile = 1;
  log.LogProtokoll(u"not in the file");
  EXPECT_EQ(file(), "");
  options.DontCreateLogFile = 0;
  log.setFile(folder.text("missing/Ombrelian.log"));
  log.LogProtokoll(u"nor this");
  EXPECT_EQ(log.rows().size(), 2U);
  EXPECT_EQ(log.Show_Log(), u"");
}

}  // namespace
}  // namespace ombrelian
