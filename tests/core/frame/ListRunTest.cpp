#include "core/frame/ListRun.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/frame/SilentRun.h"
#include "lists/ListTables.h"
#include "tests/testing/ConsoleRun.h"
#include "tests/testing/Faults.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using testing::Call;
using testing::ScopedFault;
using testing::TestFolder;

testing::Outcome run(const std::vector<Text>& arguments) {
  return testing::runOnConsole(runLists, arguments);
}

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size())
    ++count;
  return count;
}

class ListRunTest : public ::testing::Test {
 protected:
  ListRunTest() {
    for (int i = 1; i <= 30; ++i)
      source.file("sub/" + std::to_string(i) + ".e" + std::to_string(i), i);
    source.hardlink("sub/again", "sub/1.e1");
    source.symlink("link", "sub");
  }

  const ScopedLocale locale{"C"};
  TestFolder source;
};

TEST_F(ListRunTest, EveryListComesOut) {
  const testing::Outcome json = run({u"--lists", u"--json", source.text()});
  EXPECT_EQ(json.status, kExitDone) << json.errors;
  EXPECT_EQ(std::count(json.output.begin(), json.output.end(), '\n'), kLists);
  for (int list = 0; list < kLists; ++list) {
    EXPECT_EQ(
        occurrences(json.output, "{\"list\":\"" + toBytes(listFacts(ListId(list)).key) + "\""), 1U);
  }
  EXPECT_EQ(occurrences(json.output, "\"extname\":"), 31U);  // all rows
  EXPECT_EQ(occurrences(json.output, "\"links\":2"), 2U);
  EXPECT_EQ(occurrences(json.output, "\"target\":\"sub\""), 1U);

  const testing::Outcome text = run({u"--lists", source.text()});
  EXPECT_EQ(text.status, kExitDone);
  EXPECT_EQ(occurrences(text.output, "Liste mit "), std::size_t(kLists));
  EXPECT_EQ(occurrences(text.output, "\n.E"), 20U);
}

TEST_F(ListRunTest, RowsLimitsAndWidens) {
  const struct {
    TextView rows;
    std::size_t files;  // in the list of the largest files
    std::size_t extensions;
  } cases[] = {{u"0", 0, 0}, {u"2", 2, 2}, {u"25", 25, 25}, {u"99999999999", 31, 31}};
  for (const auto& c : cases) {
    const testing::Outcome json =
        run({u"--lists", u"--rows", Text(c.rows), u"--json", source.text()});
    const std::string first = json.output.substr(0, json.output.find('\n'));
    EXPECT_EQ(occurrences(first, "\"name\":"), c.files) << toBytes(c.rows);
    EXPECT_EQ(occurrences(json.output, "\"extname\":"), c.extensions) << toBytes(c.rows);
  }
}

TEST_F(ListRunTest, TheExitStatusTellsWhatWasMissed) {
  EXPECT_EQ(run({u"--lists", source.text("missing")}).status, kExitNothing);
  const ScopedFault fault({.call = Call::Openat, .name = "sub", .error = EACCES});
  const testing::Outcome outcome = run({u"--lists", source.text()});
  EXPECT_EQ(outcome.status, kExitPartial);
  EXPECT_NE(outcome.errors.find("/sub/"), std::string::npos) << outcome.errors;
  EXPECT_FALSE(outcome.output.empty());
}

}  // namespace
}  // namespace ombrelian
