// Compares whole reports with files that a person has checked. After an intended change
//
//   scripts/golden.sh
//
// writes the files again; check the difference before you commit it. The files are UTF-8 with plain
// line ends (a line feed inside a line is written as "\n"). The script and the style of a page are
// left out, and a workbook is stored as the output of an independent reader.

#include <fstream>

#include "export/HtmlWriter.h"
#include "export/ListSave.h"
#include "export/SortScript.h"
#include "frame/CommandTable.h"
#include "lists/Log.h"
#include "platform/FindData.h"
#include "settings/SettingsTable.h"
#include "settings/z_Translate.h"
#include "tests/testing/SaveFixture.h"
#include "tests/testing/ScopedZone.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

const std::string kFolder = std::string(OMBRELIAN_SOURCE_DIR) + "/tests/export/golden/";

/// A report in the form of a golden file.
std::string readReportOf(const std::string& path, ReportFormat format) {
  if (format == ReportFormat::XLSX)
    return outputOf("/usr/bin/python3 '" + kFolder + "../dump_xlsx.py' '" + path + "'");
  Text text = replaceAll(readReport(path), u"\r\n", u"\r");
  text = replaceAll(replaceAll(text, u"\n", u"\\n"), u"\r", u"\n");
  text = replaceAll(text, kSortScript, u"...");
  return toBytes(replaceAll(text, GetTableHtmlStyles(), u"<style>...</style>"));
}

class GoldenTest : public SaveFixture {
 protected:
  /// Compares with the golden file of the same name; for a workbook, this is a dump.
  void compare(const std::string& name, const std::string& written) {
    const std::string path = kFolder + name + (name.ends_with(".xlsx") ? ".dump" : "");
    if (std::getenv("OMBRELIAN_WRITE_GOLDEN") != nullptr) {
      std::ofstream(path, std::ios::binary) << written;
    }
    EXPECT_EQ(written, readFile(path)) << name;
  }

  const ScopedZone zone{"UTC"};
};

TEST_F(GoldenTest, DefaultsOfAllSettings) {
  std::string all;
  for (const SettingRow& row : settingsTable()) {
    forEachKey(row, [&](int list, int column) {
      all += toBytes(Text(row.section) + u"/" + settingKey(row, list, column) + u"=" +
                     settingText(row, Options(), list, column)) +
             "\n";
      return true;
    });
  }
  compare("defaults.txt", all);
}

TEST_F(GoldenTest, TheTableOfCommandsInTheManual) {
  Translation english;
  EXPECT_EQ(english.Init_Sprache({fromBytes(OMBRELIAN_SOURCE_DIR), 9, false}), u"");
  setLanguageTexts(&english);
  compare("../../../docs/commands.md", toBytes(commandPage()));
  setLanguageTexts(nullptr);
}

class GoldenFolderTest : public GoldenTest {
 protected:
  void SetUp() override {
    root = add(kNoNode, u"/src", 4'200'000);
    deep = add(root, u"deep", 2'800'000);
    add(deep, u"inner", 1'000'000);
    add(deep, u"Dateien", 1'800'000, false);
    odd = add(root, u"<a href='x'>&]]>\"\n_x0041_", 900);
    add(odd, u"\u05D0\u05D1 \xDCFF ", 0);
    add(root, u"Dateien", 1'399'100, false);
    tree.facts(root).created = toDate({2026, 11, 22, 13, 14, 15});
    const NodeIndex other = add(kNoNode, u"/other & more", 0);
    tree.facts(other).created = toDate({2026, 11, 23});
    tree.facts(other).filters.excludedFiles = u"*.tmp,<b>&";
    cutOff(tree[other]);
    FolderNode& node = tree[deep];
    node.folders = node.subfolders = 1;
    node.hardlinks = 1234;
    node.errors = 2;
    node.junctions = 3;
    node.attributes = platform::kAttributeDirectory | platform::kAttributeHidden;
    node.owner = tree.ownerNumber(u"someone");
    node.set(FolderNode::HasOwner);
    node.dateModified = fileTimeFromUnix(1'000'036'000, 999'999'999);  // 9 September 2001
    node.dateCreate = fileTimeFromUnix(-3'000'000'000, 0);             // 1874
    tree.setJunctionTarget(deep, u"/else \"where\"");
  }

  /// Saves in each of the formats and compares.
  void check(const std::string& name, const std::vector<ReportFormat>& formats,
             std::int32_t levels) {
    for (const ReportFormat format : formats) {
      const std::string file = nameOf(format, name);
      const Failure failure = save(file, levels);
      EXPECT_FALSE(failure.has_value()) << toBytes(failure->text);
      compare(file, readReportOf(out.path(file), format));
    }
  }

  using Format = ReportFormat;

  NodeIndex root = kNoNode;
  NodeIndex deep = kNoNode;
  NodeIndex odd = kNoNode;
};

TEST_F(GoldenFolderTest, EveryColumnOfTwoSources) {
  const ScopedLocale german("de_DE");
  options.FolderColumnVisible.fill(1);
  options.FileSizeFormat = 1;
  options.DateFormat = u"dd.mm.yyyy hh:nn";
  options.Delimiter = 1;
  check("folders-all", {std::begin(kFormats), std::end(kFormats)}, kAllLevels);
}

TEST_F(GoldenFolderTest, ASelectedRowWithIndentAndLines) {
  const ScopedLocale english("en_US");
  options.FolderOpt = 1;
  options.ShowIndent = 1;
  options.DividingLine = 1;
  options.Delimiter = kCustomDelimiter;
  options.LevelOpt = 1;
  options.Levels = 2;
  report.select(deep);
  check("folders-selected", {Format::TXT, Format::HTML, Format::XML}, kKeepLevels);
}

TEST_F(GoldenFolderTest, WhatIsExpanded) {
  const ScopedLocale posix("C");
  options.FolderColumnVisible = {1, 0, 0, 1, 1};  // hidden sizes; the name cannot be hidden
  options.FolderColumnIndex[4] = 1;               // files are the first column
  options.LevelOpt = 2;
  report.setExpanded(root, true);
  report.setExpanded(odd, true);
  check("folders-expanded", {Format::TXT, Format::CSV, Format::HTML, Format::XML}, kKeepLevels);
}

TEST_F(GoldenFolderTest, ACancelledSaveIsWellFormed) {
  const ScopedLocale posix("C");
  for (const Format format : {Format::CSV, Format::HTML, Format::XML, Format::XLSX}) {
    ui.asksUntilSaveIsCancelled = 5;
    check("folders-cancelled", {format}, kAllLevels);
  }
}

/// Tests of one file for each format with all lists, one below the other.
class GoldenListTest : public GoldenTest {
 protected:
  /// Two rows with a different value in every column.
  Grid sample(ListId list) {
    Grid grid(listRow(list).columns());
    for (int i = 0; i < 2; ++i) {
      const Grid::RowIndex row = grid.addRow();
      for (const Column& column : grid.columns())
        fill(grid, row, column, i);
    }
    sortAsOpened(grid, list);
    return grid;
  }

  static void fill(Grid& grid, Grid::RowIndex row, const Column& column, int i) {
    const Text suffix = i == 0 ? u" <&'\"> " : u"";
    switch (column.kind) {
      case CellKind::PlainText:
        return grid.set(row, column, TextView(Text(column.key) + suffix));
      case CellKind::Percent:
        return grid.set(row, column, i == 0 ? 66.667 : 0.0);
      case CellKind::Timestamp:
        return grid.set(row, column, i == 0 ? toDate({2026, 11, 22, 1, 2, column.id}) : 0.0);
      case CellKind::Attributes:
        return grid.set(row, column, std::int64_t(platform::kAttributeHidden));
      case CellKind::Choice:
        return grid.set(row, column, std::int64_t(i));
      default:
        return grid.set(row, column, std::int64_t(i == 0 ? 123'456'789 : 0) * column.id);
    }
  }

  std::string saved(const ListToSave& list, ReportFormat format) {
    const std::string path = out.path(nameOf(format));
    const Failure failure = saveList(list, options, format, fromBytes(path), u";", ui);
    EXPECT_FALSE(failure.has_value()) << toBytes(failure->text);
    return "=== " + toBytes(list.title) + "\n" + readReportOf(path, format) + "\n";
  }

  std::string allLists(ReportFormat format) {
    const ReportSource source = {u"/src/", toDate({2026, 11, 22, 13, 14, 15})};
    std::string all;
    for (const ListId list :
         {ListId::LargestFiles, ListId::NewestFiles, ListId::SmallestFolders, ListId::Hardlinks,
          ListId::Junctions, ListId::Owners, ListId::Extensions}) {
      const Grid grid = sample(list);
      all += saved({listTitle(options, list), grid, listLayout(options, list),
                    listSizes(options, list), source},
                   format);
    }
    Grid log(Log::columns());
    fill(log, log.addRow(), log.columns()[0], 0);
    fill(log, log.addRow(), log.columns()[1], 0);
    return all +
           saved({listTitle(options, ListId::Log), log, {}, {}, {{}, source.created}}, format);
  }
};

TEST_F(GoldenListTest, EveryListInEveryFormat) {
  const ScopedLocale posix("C");
  options.HardlinkColumnVisible.fill(1);
  for (const ReportFormat format : kFormats) {
    options.SaveFiles.DividingLine = format == ReportFormat::TXT ? 1 : 0;
    compare(nameOf(format, "lists"), allLists(format));
  }
}

}  // namespace
}  // namespace ombrelian
