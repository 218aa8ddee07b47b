#include "frame/ListRun.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "frame/SilentRun.h"
#include "lists/ListTable.h"
#include "tests/testing/ConsoleRun.h"
#include "tests/testing/Faults.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

Outcome run(const std::vector<Text>& arguments) { return runOnConsole(runLists, arguments); }

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at)
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
  const Outcome json = run({u"--lists", u"--json", source.text()});
  EXPECT_EQ(json.status, kExitDone) << json.errors;
  EXPECT_EQ(std::count(json.output.begin(), json.output.end(), '\n'), kDerivedLists.size());
  for (const ListId list : kDerivedLists) {
    EXPECT_EQ(occurrences(json.output, "{\"list\":\"" + toBytes(listRow(list).key) + "\""), 1U);
  }
  EXPECT_EQ(occurrences(json.output, "\"extname\":"), 31U);  // all rows
  EXPECT_EQ(occurrences(json.output, "\"links\":2"), 2U);
  EXPECT_EQ(occurrences(json.output, "\"target\":\"sub\""), 1U);

  const Outcome text = run({u"--lists", source.text()});
  EXPECT_EQ(text.status, kExitDone);
  EXPECT_EQ(occurrences(text.output, "Liste mit "), kDerivedLists.size());
  EXPECT_EQ(occurrences(text.output, "\n.E"), 20U);
}

TEST_F(ListRunTest, RowsLimitsAndWidens) {
  const struct {
    TextView rows;
    std::size_t files;  // in the list of the largest files
    std::size_t extensions;
  } cases[] = {{u"0", 0, 0}, {u"2", 2, 2}, {u"25", 25, 25}, {u"99999999999", 31, 31}};
  for (const auto& c : cases) {
    const Outcome json = run({u"--lists", u"--rows", Text(c.rows), u"--json", source.text()});
    const std::string first = json.output.substr(0, json.output.find('\n'));
    EXPECT_EQ(occurrences(first, "\"name\":"), c.files) << toBytes(c.rows);
    EXPECT_EQ(occurrences(json.output, "\"extname\":"), c.extensions) << toBytes(c.rows);
  }
}

TEST_F(ListRunTest, SavesEveryListUnderItsName) {
  const TestFolder out;
  const Text folder = out.text("new");
  const auto save = [&](TextView format) {
    return run({u"--lists", u"--save", folder, u"--format", Text(format), u"-d1", source.text()});
  };
  for (const TextView format : {u"csv", u"html"}) {
    const Outcome outcome = save(format);
    EXPECT_EQ(outcome.status, kExitDone) << outcome.errors;
    EXPECT_EQ(occurrences(outcome.output, "." + toBytes(format) + "\n"), kDerivedLists.size() + 2U);
  }
  const std::string path = out.path("new/");
  EXPECT_EQ(namesIn(path).size(), 2 * (kDerivedLists.size() + 2U));
  EXPECT_EQ(lines(readReport(path + "extensions.csv")).size(), 32U);
  EXPECT_EQ(lines(readReport(path + "junctions.csv"))[1],
            u"\"" + source.text("link") + u"\";\"sub\";\"Symbolischer Link\"");
  EXPECT_EQ(lines(readReport(path + "folders.csv")).size(), 4U);
  EXPECT_GT(lines(readReport(path + "log.csv")).size(), 2U);

  // What cannot be written is told before the scan, or list by list.
  const Outcome missing = run({u"--lists", u"--save", out.text("no/such"), source.text()});
  EXPECT_EQ(missing.status, kExitNothing);
  EXPECT_NE(missing.errors.find("no/such"), std::string::npos) << missing.errors;
  out.folder("new/owners.xml");
  const Outcome taken = save(u"xml");
  EXPECT_EQ(taken.status, kExitNothing);
  EXPECT_NE(taken.errors.find("owners.xml"), std::string::npos) << taken.errors;
  EXPECT_EQ(occurrences(taken.output, ".xml\n"), kDerivedLists.size() + 1U);
}

TEST_F(ListRunTest, TheExitStatusTellsWhatWasMissed) {
  EXPECT_EQ(run({u"--lists", source.text("missing")}).status, kExitNothing);
  const ScopedFault fault({.call = Call::Openat, .name = "sub", .error = EACCES});
  const Outcome outcome = run({u"--lists", source.text()});
  EXPECT_EQ(outcome.status, kExitPartial);
  EXPECT_NE(outcome.errors.find("/sub/"), std::string::npos) << outcome.errors;
  EXPECT_FALSE(outcome.output.empty());
}

}  // namespace
}  // namespace ombrelian
