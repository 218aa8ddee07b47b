#include "lists/Column.h"

#include <algorithm>

namespace ombrelian {
namespace {

bool isShown(const Column& column, std::span<const std::uint8_t> visible) {
  const auto id = std::size_t(column.id);
  return id >= visible.size() || visible[id] == 1;
}

void putInOrder(std::vector<const Column*>& shown, const ColumnLayout& layout) {
  const auto position = [&](const Column* column) {
    const auto id = std::size_t(column->id);
    return id < layout.positions.size() ? layout.positions[id] : column->id;
  };
  std::stable_sort(shown.begin(), shown.end(),
                   [&](const Column* a, const Column* b) { return position(a) < position(b); });
}

std::vector<const Column*> shownColumns(Columns columns, const ColumnLayout& layout) {
  std::vector<const Column*> shown;
  for (const Column& column : columns) {
    if (&column == columns.data() || isShown(column, layout.visible)) shown.push_back(&column);
  }
  return shown;
}

}  // namespace

std::vector<const Column*> visibleColumns(Columns columns, const ColumnLayout& layout) {
  std::vector<const Column*> shown = shownColumns(columns, layout);
  putInOrder(shown, layout);
  return shown;
}

std::vector<const Column*> visibleColumnsAndNumber(Columns columns, const ColumnLayout& layout) {
  std::vector<const Column*> shown = shownColumns(columns, layout);
  const bool isNumbered = !layout.visible.empty() && layout.visible.front() == 1;
  if (isNumbered) shown.insert(shown.begin(), &kRowNumberColumn);
  putInOrder(shown, layout);
  return shown;
}

}  // namespace ombrelian
