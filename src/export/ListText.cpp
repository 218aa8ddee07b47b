#include "export/ListText.h"

#include <algorithm>

namespace ombrelian {
namespace {

constexpr TextView kGap = u"  ";

/// Width of a text in code points; a lone surrogate counts as one.
std::size_t widthOf(TextView text) {
  std::size_t width = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isSecond =
        at > 0 && (text[at] & 0xFC00) == 0xDC00 && (text[at - 1] & 0xFC00) == 0xD800;
    if (!isSecond) ++width;
  }
  return width;
}

Text withoutControls(Text text) {
  for (char16_t& unit : text) {
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029) {
      unit = u'\uFFFD';
    }
  }
  return text;
}

/// The cells of the table and the widths of its columns.
class Table {
 public:
  explicit Table(std::size_t columns) : widths_(columns) {}

  void add(Text cell) {
    std::size_t& width = widths_[cells_.size() % widths_.size()];
    cells_.push_back(withoutControls(std::move(cell)));
    width = std::max(width, widthOf(cells_.back()));
  }

  std::size_t rowCount() const { return cells_.size() / widths_.size(); }

  Text line(std::size_t row, const std::vector<const Column*>& columns) const {
    Text line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const Text& cell = cells_[row * widths_.size() + i];
      const Text padding(widths_[i] - widthOf(cell), u' ');
      if (i > 0) line += kGap;
      if (columns[i]->isLeftAligned()) {
        line.append(cell).append(padding);
      } else {
        line.append(padding).append(cell);
      }
    }
    line.erase(line.find_last_not_of(u' ') + 1);
    return line;
  }

 private:
  std::vector<std::size_t> widths_;  // width of each column
  std::vector<Text> cells_;          // cells of one row after the other
};

}  // namespace

bool writeListText(TextView title, TextView status, const Grid& grid,
                   const std::vector<const Column*>& columns, const CellFormat& format,
                   std::size_t limit, const ByteSink& sink) {
  Table table(columns.size());
  for (const Column* const column : columns)
    table.add(format.caption(*column));
  for (Grid::RowIndex row = 0; row < std::min(limit, grid.rowCount()); ++row) {
    for (const Column* const column : columns)
      table.add(grid.cellText(format, row, *column));
  }
  std::string out = toBytes(Text(title).append(u" (").append(status).append(u")\n"));
  for (std::size_t row = 0; row < table.rowCount(); ++row)
    out += toBytes(table.line(row, columns) += u'\n');
  return sink(out += "\n");
}

}  // namespace ombrelian
