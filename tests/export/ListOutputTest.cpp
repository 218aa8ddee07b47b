// Lists as JSON and as text.

#include <gtest/gtest.h>

#include <map>

#include "export/ListText.h"
#include "lists/ListTable.h"
#include "platform/FindData.h"
#include "tests/testing/ScopedLocale.h"

namespace ombrelian {
namespace {

/// Reads JSON as its rules have it, and knows nothing of who wrote it. Numbers stay text. Leaves
/// are kept by their way from the root: "/rows/0/name". Returns false on anything malformed.
class JsonReader {
 public:
  explicit JsonReader(std::string_view json) : rest_(json) {}

  bool read() { return value("") && rest_ == "\n"; }

  std::map<std::string, Text> leaves;

 private:
  bool take(char c) {
    if (rest_.empty() || rest_[0] != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool value(const std::string& way) {
    if (take('{')) return members(way, '}', true);
    if (take('[')) return members(way, ']', false);
    if (!rest_.empty() && rest_[0] == '"') return string(leaves[way]);
    const std::size_t length = std::min(rest_.find_first_of(",]}"), rest_.size());
    const std::string_view word = rest_.substr(0, length);
    const bool isNumber = word.find_first_not_of("-0123456789.") == std::string_view::npos;
    leaves[way] = fromAscii(word);
    rest_.remove_prefix(length);
    return length > 0 && (isNumber || word == "null");
  }

  bool members(const std::string& way, char end, bool named) {
    if (take(end)) return true;
    for (int i = 0;; ++i) {
      Text name = toText(i);
      if (named && (!string(name) || !take(':'))) return false;
      if (!value(way + "/" + toBytes(name))) return false;
      if (take(end)) return true;
      if (!take(',')) return false;
    }
  }

  bool string(Text& text) {
    std::string raw;
    text.clear();
    if (!take('"')) return false;
    while (!take('"')) {
      if (rest_.empty() || static_cast<unsigned char>(rest_[0]) < 0x20) return false;
      if (!take('\\')) {
        raw += rest_[0];
        rest_.remove_prefix(1);
        continue;
      }
      const Text piece = fromBytes(raw);
      if (isMalformed(piece)) return false;
      text += piece;
      raw.clear();
      if (take('u')) {
        text += char16_t(std::stoi(std::string(rest_.substr(0, 4)), nullptr, 16));
        rest_.remove_prefix(4);
      } else {
        text += char16_t(rest_[0]);
        rest_.remove_prefix(1);
      }
    }
    const Text tail = fromBytes(raw);
    if (isMalformed(tail)) return false;
    text += tail;
    return true;
  }

  /// What fromBytes made of something else than UTF-8: a lone low surrogate.
  static bool isMalformed(const Text& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      const bool isLow = (text[i] & 0xFC00) == 0xDC00;
      if (isLow && (i == 0 || (text[i - 1] & 0xFC00) != 0xD800)) return true;
    }
    return false;
  }

  std::string_view rest_;
};

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

TEST(ListOutputTest, JsonReadsBack) {
  JsonReader reader("");
  for (const std::size_t limit : {0U, 1U, 3U, 100U}) {
    const std::string text = json(sample(), limit);
    reader = JsonReader(text);
    ASSERT_TRUE(reader.read()) << text;
    EXPECT_EQ(reader.leaves["/list"], u"key");
    EXPECT_EQ(reader.leaves["/title"], u"A \"title\"");
    EXPECT_EQ(reader.leaves["/count"], u"3");
    EXPECT_EQ(reader.leaves.count("/rows/2/name"), limit > 2 ? 1U : 0U);
  }
  EXPECT_EQ(reader.leaves["/rows/0/name"], u"a\"b\n");
  EXPECT_EQ(reader.leaves["/rows/1/name"], u"\xDCFF");
  EXPECT_EQ(reader.leaves["/rows/2/name"], u"\xDCFE");
  EXPECT_EQ(reader.leaves["/rows/0/size"], u"9007199254740993");
  EXPECT_EQ(reader.leaves["/rows/2/size"], u"9007199254740995");
  EXPECT_EQ(reader.leaves["/rows/0/datemodified"], u"2026-11-22T23:05:09");
  EXPECT_EQ(reader.leaves["/rows/1/datemodified"], u"null");
  EXPECT_EQ(reader.leaves["/rows/0/attr"], u"H");
  EXPECT_EQ(reader.leaves["/rows/1/attr"], u"");
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
  EXPECT_FALSE(writeListText(u"", u"", grid, visibleColumns(grid.columns(), all), format, 9,
                             [](std::string_view) { return false; }));
}

TEST(ListOutputTest, AFullOutputIsTold) {
  EXPECT_FALSE(writeListJson(u"key", u"", sample(), 3, [](std::string_view) { return false; }));
}

}  // namespace
}  // namespace ombrelian
