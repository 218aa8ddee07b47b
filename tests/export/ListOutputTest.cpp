// Lists as JSON and as text.

#include <gtest/gtest.h>

#include <fstream>

#include "export/ListText.h"
#include "lists/ListTable.h"
#include "platform/FindData.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

TEST(ListOutputTest, JsonTextIsUtf8WithoutLoss) {
  const struct {
    Text text;
    std::string json;
  } cases[] = {
      {u"plain", "\"plain\""},
      {u"\"\\\n\x1F\x7F", R"("\"\\\u000a\u001f\u007f")"},
      {u"\u00E4\u20AC", "\"\u00E4\u20AC\""},
      {u"\U0001F600", "\"\U0001F600\""},
      {u"\xDCFF", R"("\udcff")"},
      {u"\U0001F600\xDC80", "\"\U0001F600\\udc80\""},
      {u"\xD83D", R"("\ud83d")"},
      {fromBytes("\xED\xB3\xBF"), R"("\udced\udcb3\udcbf")"},
  };
  for (const auto& c : cases) {
    std::string out;
    appendJsonText(c.text, out);
    EXPECT_EQ(out, c.json);
  }
}

Grid sample() {
  Grid grid(listRow(ListId::LargestFiles).columns());
  const Text names[] = {u"a\"b\n", u"\xDCFF", u"\xDCFE"};
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

/// What a reader of JSON that is not ours finds, written in ASCII.
std::string readBack(const std::string& json) {
  const testing::TestFolder folder;
  std::ofstream(folder.path("json"), std::ios::binary) << json;
  return testing::outputOf("/usr/bin/python3 -c \"import json; print(ascii(json.load(open('" +
                           folder.path("json") + "', encoding='utf-8'))))\"");
}

TEST(ListOutputTest, JsonReadsBack) {
  const std::string empty = "'ext': '', 'type': '', 'attr': ";
  const std::string noDates = "'datecreate': None, 'dateaccess': None, 'path': ''}";
  std::string expected =
      R"({'list': 'key', 'title': 'A "title"', 'count': 3, 'rows': [{'name': 'a"b\n', 'size': )"
      "9007199254740993, " +
      empty + "'H', 'datemodified': '2026-11-22T23:05:09', " + noDates;
  EXPECT_EQ(readBack(json(sample(), 1)), expected + "]}\n");
  for (const char* const row :
       {R"('\udcff', 'size': 9007199254740994)", R"('\udcfe', 'size': 9007199254740995)"})
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
