// Tests of saved reports: the rows of a tree, and a full disk or sheet, after which the file with
// the name of the report must be complete, and lists as JSON and as text.

#include "export/FolderSave.h"

#include <signal.h>
#include <sys/resource.h>

#include <fstream>

#include "export/FolderFeed.h"
#include "export/ListText.h"
#include "lists/ListTable.h"
#include "platform/FindData.h"
#include "tests/testing/Faults.h"
#include "tests/testing/SaveFixture.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;
using Names = std::vector<Text>;

class FolderSaveTest : public SaveFixture {
 protected:
  /// A source "/src" with "deep" (with "inner" in it) and its own files, and a second source.
  FolderSaveTest() {
    root = add(kNoNode, u"/src", 3000);
    deep = add(root, u"deep", 2000);
    add(deep, u"inner", 500);
    add(deep, u"Dateien", 1500, false);
    add(root, u"Dateien", 1000, false);
    tree.facts(root).created = toDate({2026, 11, 22, 13, 14, 15});
    add(kNoNode, u"/");
  }

  Names saved(const std::string& name, std::int32_t levels) {
    EXPECT_FALSE(save(name, levels).has_value());
    return lines(readReport(out.path(name)));
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
      // The stored settings choose the expanded folders.
      {kKeepLevels, {u"/src", u"/"}},
      {kKeepLevels, first, [&] { report.setExpanded(root, true); }},
      {kKeepLevels, none, [&] { options.LevelOpt = 1, options.Levels = 0; }},
      // Only the source of the selected row is saved. Without a selected row no source is saved.
      {0, none, [&] { options.FolderOpt = 1; }},
      // A selected row that is no source is saved with its full path and its subfolders only.
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

TEST_F(FolderSaveTest, EachSourceHasAHeadAndInputIsServed) {
  int yields = 0;
  ui.onYield = [&] { ++yields; };
  saved("r.csv", 0);
  EXPECT_GT(yields, 1) << "not only at the end";
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
  EXPECT_EQ(namesIn(out.path()), std::vector<std::string>{"r.csv"});
}

TEST_F(FolderSaveTest, ALongPathMakesOnlyItsOwnRowLong) {
  NodeIndex node = add(kNoNode, u"/src");
  for (NodeIndex source = tree.firstRoot(); source != kNoNode; source = tree[source].nextSibling)
    tree.facts(source).created = toDate({2026, 11, 22});
  for (int i = 0; i < 300; ++i)
    add(node, u"short" + toText(i));
  std::size_t longPaths = 0;
  for (std::size_t i = 1; i <= 60; ++i) {
    node = add(node, Text(250, u'x'));
    longPaths += i * 251;
  }
  for (const ReportFormat format : kFormats) {
    ASSERT_FALSE(save(nameOf(format)).has_value());
    const std::string bytes = readFile(out.path(nameOf(format)));
    // Two bytes a character; what is not a path takes at most 300 characters a row.
    EXPECT_LT(bytes.size(), 2 * (longPaths + 361 * 300)) << nameOf(format);
  }
  for (const Text& line : lines(readReport(out.path("report.txt"))))
    EXPECT_FALSE(line.ends_with(u" ")) << toBytes(line);
}

TEST_F(FolderSaveTest, NothingIsGivenAfterASinkRefusedARow) {
  struct Sink : ReportSink {
    bool beginSource(const ReportSource& source) override {
      return told.push_back(source.path), true;
    }
    bool row(const ReportRow& row) override {
      return told.push_back(Text(row.name)), told.size() < 3;
    }
    void endSource() override { told.push_back(u"end"); }
    Names told;
  } sink;
  FolderFeed(report, {}, root, false).feed(sink);
  EXPECT_EQ(sink.told, (Names{u"/src", u"/src", u"/src/deep", u"end"})) << "no second source";
}

TEST_F(FolderSaveTest, TheProgressCountsTheRowsThatAreWritten) {
  using Kind = LevelLimit::Kind;
  EXPECT_EQ(FolderFeed(report, {Kind::All}, root, false).rowCount(), 6U);
  EXPECT_EQ(FolderFeed(report, {Kind::All}, root, true).rowCount(), 5U);
  EXPECT_EQ(FolderFeed(report, {Kind::Expanded}, root, false).rowCount(), 2U);
  EXPECT_EQ(FolderFeed(report, {Kind::Number, 1}, root, true).rowCount(), 3U);
}

TEST(ReportFormatTest, TheNamesEndDecides) {
  const std::pair<TextView, ReportFormat> cases[] = {
      {u"a.txt", ReportFormat::TXT}, {u"A.CSV", ReportFormat::CSV}, {u"a.Html", ReportFormat::HTML},
      {u"a.htm", ReportFormat::TXT}, {u"a.xml", ReportFormat::XML}, {u"a.xlsx", ReportFormat::XLSX},
      {u"csv", ReportFormat::TXT},   {u"", ReportFormat::TXT}};
  for (const auto& [name, format] : cases)
    EXPECT_EQ(formatOfFileName(name), format) << toBytes(name);
}

/// Limits the size of all files of this process to `bytes` during its life.
class ScopedFileLimit {
 public:
  explicit ScopedFileLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit = {bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~ScopedFileLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    signal(SIGXFSZ, handler_);
  }
  ScopedFileLimit(const ScopedFileLimit&) = delete;
  ScopedFileLimit& operator=(const ScopedFileLimit&) = delete;

 private:
  rlimit old_ = {};
  void (*handler_)(int);
};

class FullDiskTest : public SaveFixture, public ::testing::WithParamInterface<ReportFormat> {};

TEST_P(FullDiskTest, AnOlderReportStaysUntilTheNewOneIsWhole) {
  const NodeIndex root = add(kNoNode, u"/src");
  tree.facts(root).created = toDate({2026, 11, 22});
  for (int i = 0; i < 200; ++i)
    add(root, u"folder " + toText(i * 7919), i * 104'729);
  options.FolderColumnVisible.fill(1);
  const std::string name = nameOf(GetParam());
  const std::string path = out.path(name);
  ASSERT_FALSE(save(name).has_value());
  const std::string whole = readFile(path);
  int failures = 0;
  for (rlim_t limit = 0; limit < whole.size() + whole.size() / 8; limit += 1 + limit / 23) {
    std::ofstream(path) << "old";
    Failure failure;
    {
      const ScopedFileLimit full(limit);
      failure = save(name);
    }
    // EXPECT_EQ would print both contents.
    EXPECT_TRUE(readFile(path) == (failure ? "old" : whole)) << "limit " << limit;
    EXPECT_EQ(namesIn(out.path()), std::vector<std::string>{name});
    failures += failure.has_value();
    EXPECT_FALSE(failure && failure->text.empty()) << limit;
  }
  EXPECT_GT(failures, 20);
  for (const testing::Fault& makeFail :
       {testing::Fault{Call::Write, {}, ENOSPC},
        {Call::Close, {}, EDQUOT},
        {Call::Fdatasync, {}, EIO},
        {Call::Openat, out.path().substr(out.path().rfind('/') + 1), EACCES},
        {Call::Renameat, {}, EACCES}}) {
    std::ofstream(path) << "old";
    const ScopedFault fault(makeFail);
    const Failure failure = save(name);
    EXPECT_TRUE(failure.has_value()) << int(makeFail.call);
    EXPECT_TRUE(readFile(path) == "old") << int(makeFail.call);
    EXPECT_EQ(namesIn(out.path()), std::vector<std::string>{name}) << int(makeFail.call);
  }
}

TEST_P(FullDiskTest, ADeviceThatFailsOnceAtAnyBlockLeavesTheOlderReport) {
  const NodeIndex root = add(kNoNode, u"/src");
  for (int i = 0; i < 12'000; ++i)
    add(root, u"folder " + toText(i * 7919), i * 104'729);
  options.FolderColumnVisible.fill(1);
  const std::string name = nameOf(GetParam());
  const std::string path = out.path(name);
  int block = 0;
  for (bool isReached = true; isReached; ++block) {
    std::ofstream(path) << "old";
    const ScopedFault fault({Call::Write, {}, EIO, block, 1});
    const Failure failure = save(name);
    isReached = fault.hits() > 0;
    EXPECT_EQ(failure.has_value(), isReached) << block;
    EXPECT_EQ(readFile(path) == "old", isReached) << block;
    EXPECT_EQ(namesIn(out.path()), std::vector<std::string>{name}) << block;
  }
  EXPECT_GT(block, 1);
}

TEST_P(FullDiskTest, TheEndOfASaveRunsAsideAndItsExceptionIsAFailure) {
  add(kNoNode, u"/src");
  const std::string name = nameOf(GetParam());
  int jobs = 0;
  ui.beforeAside = [&] {
    ++jobs;
    EXPECT_TRUE(namesIn(out.path()).empty());
    throw std::bad_alloc();
  };
  EXPECT_TRUE(save(name).has_value());
  EXPECT_TRUE(namesIn(out.path()).empty());
  ui.beforeAside = [&] { ++jobs; };
  EXPECT_FALSE(save(name).has_value());
  EXPECT_EQ(jobs, 2);
}

INSTANTIATE_TEST_SUITE_P(Formats, FullDiskTest, ::testing::ValuesIn(kFormats),
                         [](const auto& format) { return toBytes(fileExtension(format.param)); });

Grid sample() {
  Grid grid(listRow(ListId::LargestFiles).columns());
  const Text names[] = {u"a\"\\\n\x1F\x7F", u"\xDCFF", u"\u00E4\U0001F600\xDC80\xD83D"};
  for (const Text& name : names) {
    const Grid::RowIndex row = grid.addRow();
    grid.set(row, grid.column(u"name"), TextView(name));
    grid.set(row, grid.column(u"size"), (std::int64_t(1) << 53) + 1 + std::int64_t(row));
  }
  grid.set(0, grid.column(u"datemodified"), toDate({2026, 11, 22, 23, 5, 9, 0}));
  grid.set(0, grid.column(u"attr"), std::int64_t(platform::kAttributeHidden));
  return grid;
}

std::string json(const Grid& grid, std::size_t limit) {
  std::string out;
  EXPECT_TRUE(writeListJson(u"key", u"A \"title\"", grid, limit, [&](std::string_view bytes) {
    out += bytes;
    return true;
  }));
  return out;
}

/// The values that an independent JSON reader finds, written in ASCII.
std::string readBack(const std::string& json) {
  const TestFolder folder;
  std::ofstream(folder.path("json"), std::ios::binary) << json;
  return outputOf("/usr/bin/python3 -c \"import json; print(ascii(json.load(open('" +
                  folder.path("json") + "', encoding='utf-8'))))\"");
}

TEST(ListOutputTest, JsonReadsBack) {
  const std::string empty = "'ext': '', 'type': '', 'attr': ";
  const std::string noDates = "'datecreate': None, 'dateaccess': None, 'path': ''}";
  std::string expected = R"({'list': 'key', 'title': 'A "title"', 'count': 3, 'rows': [{'name': )"
                         R"('a"\\\n\x1f\x7f', 'size': 9007199254740993, )" +
                         empty + "'H', 'datemodified': '2026-11-22T23:05:09', " + noDates;
  EXPECT_EQ(readBack(json(sample(), 1)), expected + "]}\n");
  for (const char* const row : {R"('\udcff', 'size': 9007199254740994)",
                                R"('\xe4\U0001f600\udc80\ud83d', 'size': 9007199254740995)"})
    expected +=
        std::string(", {'name': ") + row + ", " + empty + "'', 'datemodified': None, " + noDates;
  for (const std::size_t limit : {3U, 100U})
    EXPECT_EQ(readBack(json(sample(), limit)), expected + "]}\n");
}

TEST(ListOutputTest, TextIsAligned) {
  const ScopedLocale locale("C");
  Grid grid(listRow(ListId::Owners).columns());
  for (const auto& [name, size] : {std::pair(u"\U0001F600\u00E4", 5), {u"long\nname", 12'345}}) {
    const Grid::RowIndex row = grid.addRow();
    grid.set(row, grid.column(u"owner"), TextView(name));
    grid.set(row, grid.column(u"size"), std::int64_t(size));
    grid.set(row, grid.column(u"percent"), 12.0);
    grid.set(row, grid.column(u"files"), std::int64_t(size));
  }
  const ColumnLayout all;
  const CellFormat format(grid.columns(), {}, {});
  std::string out;
  const ByteSink sink = [&](std::string_view bytes) {
    out += bytes;
    return true;
  };
  EXPECT_TRUE(
      writeListText(u"Title", u"2", grid, visibleColumns(grid.columns(), all), format, 9, sink));
  EXPECT_EQ(out,
            "Title (2)\n"
            "Besitzer   Größe (Bytes)  Prozent  Dateien  Ordner\n"
            "\U0001F600\u00E4                     5      12%        5\n"
            "long\uFFFDname         12,345      12%   12,345\n"
            "\n");
  const ByteSink full = [](std::string_view) { return false; };
  EXPECT_FALSE(writeListText(u"", u"", grid, visibleColumns(grid.columns(), all), format, 9, full));
  EXPECT_FALSE(writeListJson(u"key", u"", grid, 3, full));
}

}  // namespace
}  // namespace ombrelian
