// Tests of workbooks: what a sheet or a cell cannot hold, and how texts read back.

#include "export/XlsxWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "export/WorkbookText.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

/// A list with one column of texts that needs no tree.
class Texts : public CellSource {
 public:
  TextView text(RowIndex row, const Column&) const override { return values[row]; }
  double real(RowIndex, const Column&) const override { return 0; }
  std::int64_t number(RowIndex, const Column&) const override { return 0; }

  std::vector<Text> values;
};

class XlsxWriterTest : public ::testing::Test {
 protected:
  /// Saves the texts and returns what an independent reader finds; it keeps escapes.
  std::string saved(const SheetLimits& limits = {}) {
    static constexpr Column kColumns[] = {{1, 0, u"Name", u"name", CellKind::PlainText}};
    const CellFormat format(kColumns, {}, {});
    const ReportList list = {u"[a]", kFlatShape, cells, format, {kColumns}};
    XlsxWriter writer(list, limits);
    EXPECT_FALSE(writer.open(out.text("r.xlsx")).has_value());
    writer.beginDocument();
    writer.beginSource({});
    for (std::size_t row = 0; row < cells.values.size(); ++row)
      writer.row({.index = row, .number = row + 1});
    writer.endDocument();
    EXPECT_FALSE(writer.commit().has_value());
    cut = writer.cutCells();
    return outputOf("/usr/bin/python3 '" + std::string(OMBRELIAN_SOURCE_DIR) +
                    "/tests/export/dump_xlsx.py' '" + out.path("r.xlsx") + "'");
  }

  const TestFolder out;
  Texts cells;
  std::uint64_t cut = 0;
};

TEST_F(XlsxWriterTest, RowsThatASheetCannotHoldAreInFurtherSheets) {
  cells.values = {u"1", u"", u"3"};
  const std::string first =
      "sheet ' a ' frozen at A2 size A1:A2\n  A1    s 'Name'\n  A2    s '1'\n";
  const std::string second = "sheet ' a  (2)' frozen at A2 size A1:A2\n  A1    s 'Name'\n";
  EXPECT_EQ(saved({.rows = 3}), first + second + "  A2    s '3'\n");
  const std::string rows = saved({.bytes = 1});
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 3 + 2 + 3) << rows;
}

TEST_F(XlsxWriterTest, ATextReadsBackAsItIsOrWithAMarkWhereItIsCut) {
  const Text pair = u"\U0001F600";
  const Text most(SheetLimits::kUnits, u'x');
  const std::tuple<Text, std::string, std::uint64_t> cases[] = {
      {u" a\n\t<&>'\"\u00E4", R"(' a\n\t<&>\'"ä')", 0},
      {u"tail ", "'tail '", 0},
      {u"\x01\r\x1F_x0041_", "'_x0001__x000D__x001F__x005F_x0041_'", 0},
      {pair + u"\xDCFF\xD83D\xFFFE", "'\U0001F600\uFFFD\uFFFD\uFFFD'", 0},
      {most, "'" + toBytes(most) + "'", 0},
      {most + u"x", "'" + toBytes(most.substr(1)) + "\u2026'", 1},
      {most.substr(2) + pair + u"x", "'" + toBytes(most.substr(2)) + "\u2026'", 1}};
  for (const auto& [text, read, cutCells] : cases) {
    cells.values = {text};
    const std::string dump = saved();
    EXPECT_TRUE(dump.ends_with("  A2    s " + read + "\n")) << dump.substr(0, 200);
    EXPECT_EQ(cut, cutCells);
  }
}

TEST_F(XlsxWriterTest, SheetNames) {
  EXPECT_EQ(FixExcelWorkSheetName(u"  a:b\\c/d?e*f[g]  "), u"a b c d e f g ");
  EXPECT_EQ(FixExcelWorkSheetName(u"   "), u"Name");
  EXPECT_EQ(FixExcelWorkSheetName(Text(30, u'a') + u":b"), Text(30, u'a') + u" ");
  EXPECT_EQ(sheetName(Text(40, u'a'), 10), Text(26, u'a') + u" (10)");
}

}  // namespace
}  // namespace ombrelian
