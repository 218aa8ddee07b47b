#include "export/FolderSave.h"

#include "tests/testing/SaveFixture.h"

namespace ombrelian {
namespace {

using Names = std::vector<Text>;

class FolderSaveTest : public testing::SaveFixture {
 protected:
  /// "/src" with "deep" (and "inner" in it), files of its own, and a second source.
  FolderSaveTest() {
    root = add(kNoNode, u"/src", 3000);
    deep = add(root, u"deep", 2000);
    add(deep, u"inner", 500);
    add(deep, u"Dateien", 1500, false);
    add(root, u"Dateien", 1000, false);
    tree.setCreated(root, toDate({2026, 11, 22, 13, 14, 15}));
    add(kNoNode, u"/");
  }

  Names saved(const std::string& name, std::int32_t levels) {
    EXPECT_FALSE(save(name, levels).has_value());
    return testing::lines(testing::readReport(out.path(name)));
  }

  const ScopedLocale locale{"C"};
  NodeIndex root = kNoNode;
  NodeIndex deep = kNoNode;
};

TEST_F(FolderSaveTest, LevelsDecideWhichRowsAreWritten) {
  const Names all = {u"/src",           u"/src/deep", u"/src/deep/inner", u"/src/deep/[Dateien]",
                     u"/src/[Dateien]", u"/"};
  const Names first = {u"/src", u"/src/deep", u"/src/[Dateien]", u"/"};
  const Names none = {u"/src", u"/src/[Dateien]", u"/"};
  const struct {
    std::int32_t levels;
    Names names;
    std::function<void()> prepare = {};
  } cases[] = {
      {kAllLevels, all},
      {2, all},
      {1, first},
      {0, none},
      // What the stored settings choose: what is expanded.
      {kKeepLevels, {u"/src", u"/"}},
      {kKeepLevels, first, [&] { report.setExpanded(root, true); }},
      {kKeepLevels, none, [&] { options.LevelOpt = 1, options.Levels = 0; }},
      // Only the selected row's source, which needs a selected row.
      {0, none, [&] { options.FolderOpt = 1; }},
      // A selected row that is no source stands with its full path, and only what is below it.
      {kAllLevels,
       {u"/src/deep", u"/src/deep/inner", u"/src/deep/[Dateien]"},
       [&] { report.select(deep); }},
  };
  for (const auto& c : cases) {
    if (c.prepare) c.prepare();
    Names names;
    for (const Text& line : saved("r.csv", c.levels))
      names.push_back(line.substr(1, line.find(u'"', 1) - 1));
    names.erase(names.begin());  // the captions
    EXPECT_EQ(names, c.names) << &c - cases;
  }
}

TEST_F(FolderSaveTest, EachSourceHasAHead) {
  const Names lines = saved("r.txt", 0);
  EXPECT_EQ(lines[2], u"Pfad: /src");
  EXPECT_EQ(lines[3], u"Erstellt: 2026-11-22 13:14:15");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), u"Pfad: /"), 1);
}

TEST_F(FolderSaveTest, ACancelledSaveIsWholeUpToItsLastRowAndNoneIsWrittenWithoutRows) {
  ui.asksUntilSaveIsCancelled = 0;
  EXPECT_EQ(saved("r.csv", kAllLevels), Names{u"\"NAME\"\t\"GRÖßE (BYTES)\""});
  tree.clear();
  EXPECT_FALSE(save("none.csv").has_value());
  EXPECT_EQ(testing::namesIn(out.path()), std::vector<std::string>{"r.csv"});
}

TEST(ReportFormatTest, TheNamesEndDecides) {
  const std::pair<TextView, ReportFormat> cases[] = {
      {u"a.txt", ReportFormat::TXT}, {u"A.CSV", ReportFormat::CSV}, {u"a.Html", ReportFormat::HTML},
      {u"a.htm", ReportFormat::TXT}, {u"a.xml", ReportFormat::XML}, {u"a.xlsx", ReportFormat::XLSX},
      {u"csv", ReportFormat::TXT},   {u"", ReportFormat::TXT}};
  for (const auto& [name, format] : cases)
    EXPECT_EQ(formatOfFileName(name), format) << toBytes(name);
}

}  // namespace
}  // namespace ombrelian
