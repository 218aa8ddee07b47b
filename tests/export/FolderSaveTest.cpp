#include "export/FolderSave.h"

#include <algorithm>

#include "tests/testing/ScanFixture.h"
#include "tests/testing/ScopedLocale.h"

namespace ombrelian {
namespace {

/// Saves trees that are made by hand, so that every value is known.
class FolderSaveTest : public ::testing::Test {
 protected:
  NodeIndex add(NodeIndex parent, TextView name, std::int64_t size, std::int32_t files,
                bool isFolder = true) {
    const NodeIndex node =
        parent == kNoNode ? tree.addRoot(name) : tree.addChild(parent, name, isFolder);
    tree[node].size = size;
    tree[node].files = files;
    return node;
  }

  /// "/src" with "deep" (and "inner" in it), files of its own, and a second source.
  void SetUp() override {
    root = add(kNoNode, u"/src", 3000, 7);
    deep = add(root, u"deep", 2000, 4);
    add(deep, u"inner", 500, 1);
    add(deep, u"Dateien", 1500, 3, false);
    add(root, u"Dateien", 1000, 3, false);
    tree.facts(root).created = toDate({2026, 11, 22, 13, 14, 15});
    other = add(kNoNode, u"/", 0, 0);
    tree.facts(other).created = toDate({2026, 11, 22});
  }

  std::vector<Text> save(TextView name, std::int32_t levels = kAllLevels,
                         std::int32_t delimiter = kKeepDelimiter, TextView custom = {}) {
    report.applySettings();
    FolderSave saving(report, options, ui);
    const Failure failure = saving.SAVE(out.text(toBytes(name)), levels, delimiter, custom);
    EXPECT_FALSE(failure.has_value());
    return testing::lines(testing::readReport(out.path(toBytes(name))));
  }

  /// The first cell of each CSV line below the header.
  std::vector<Text> namesSaved(std::int32_t levels) {
    std::vector<Text> names;
    for (const Text& line : save(u"r.csv", levels)) {
      names.push_back(line.substr(1, line.find(u'"', 1) - 1));
    }
    names.erase(names.begin());
    return names;
  }

  const ScopedLocale locale{"C"};
  testing::TestFolder out;
  Options options;
  FolderTree tree;
  FolderReport report{tree, options};
  testing::QuietInterface ui;
  NodeIndex root = kNoNode;
  NodeIndex deep = kNoNode;
  NodeIndex other = kNoNode;
};

TEST_F(FolderSaveTest, LevelsDecideWhichRowsAreWritten) {
  using Names = std::vector<Text>;
  const Names all = {u"/src",           u"/src/deep", u"/src/deep/inner", u"/src/deep/[Dateien]",
                     u"/src/[Dateien]", u"/"};
  EXPECT_EQ(namesSaved(kAllLevels), all);
  EXPECT_EQ(namesSaved(2), all);
  EXPECT_EQ(namesSaved(1), (Names{u"/src", u"/src/deep", u"/src/[Dateien]", u"/"}));
  EXPECT_EQ(namesSaved(0), (Names{u"/src", u"/src/[Dateien]", u"/"}));

  // What the stored settings choose: what is expanded.
  EXPECT_EQ(namesSaved(kKeepLevels), (Names{u"/src", u"/"}));
  report.setExpanded(root, true);
  EXPECT_EQ(namesSaved(kKeepLevels), (Names{u"/src", u"/src/deep", u"/src/[Dateien]", u"/"}));
  options.LevelOpt = 1;
  options.Levels = 0;
  EXPECT_EQ(namesSaved(kKeepLevels), (Names{u"/src", u"/src/[Dateien]", u"/"}));

  // Only the selected row's source, which needs a selected row.
  options.FolderOpt = 1;
  EXPECT_EQ(namesSaved(0), (Names{u"/src", u"/src/[Dateien]", u"/"}));

  // A selected row that is no source stands with its full path, and only what is below it.
  report.select(deep);
  EXPECT_EQ(namesSaved(kAllLevels),
            (Names{u"/src/deep", u"/src/deep/inner", u"/src/deep/[Dateien]"}));
}

TEST_F(FolderSaveTest, HeadOfADrive) {
  const std::vector<Text> lines = save(u"r.txt", 0, 2);
  const auto second = std::find(lines.begin() + 3, lines.end(), u"");
  EXPECT_TRUE(std::any_of(second, lines.end(),
                          [](const Text& line) { return line.starts_with(u"Pfad: /"); }));
  EXPECT_EQ(lines[2], u"Pfad: /src");
  EXPECT_EQ(lines[3], u"Erstellt: 2026-11-22 13:14:15");
}

TEST_F(FolderSaveTest, ACancelledSaveIsWholeUpToItsLastRow) {
  ui.asksUntilSaveIsCancelled = 0;
  EXPECT_EQ(save(u"r.csv"), std::vector<Text>{u"\"NAME\"\t\"GRÖßE (BYTES)\""});
}

TEST_F(FolderSaveTest, WithoutRowsNothingIsWritten) {
  tree.clear();
  FolderSave saving(report, options, ui);
  EXPECT_FALSE(saving.SAVE(out.text("r.csv"), kAllLevels, 0, {}).has_value());
  EXPECT_TRUE(testing::namesIn(out.path()).empty());
}

TEST(ReportFormatTest, TheNamesEndDecides) {
  const struct {
    TextView name;
    ReportFormat format;
  } cases[] = {{u"a.txt", ReportFormat::TXT},   {u"A.CSV", ReportFormat::CSV},
               {u"a.Html", ReportFormat::HTML}, {u"a.htm", ReportFormat::TXT},
               {u"a.xml", ReportFormat::XML},   {u"a.xlsx", ReportFormat::XLSX},
               {u"csv", ReportFormat::TXT},     {u"", ReportFormat::TXT}};
  for (const auto& c : cases)
    EXPECT_EQ(formatOfFileName(c.name), c.format) << toBytes(c.name);
}

}  // namespace
}  // namespace ombrelian
