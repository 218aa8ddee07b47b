#include "lists/Grid.h"

#include <algorithm>
#include <cassert>
#include <numeric>

#include "format/Attributes.h"
#include "platform/Locale.h"

namespace ombrelian {
namespace {

/// Sorts places with `compare`, which returns a negative value, 0 or a positive value for two
/// places.
template <class Compare>
void sortBy(std::vector<std::uint32_t>& order, bool descending, Compare compare) {
  std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return descending ? compare(b, a) < 0 : compare(a, b) < 0;
  });
}

/// Makes room for `count` more elements, so that adding them cannot throw.
template <class Element>
void makeRoom(std::vector<Element>& elements, std::size_t count) {
  const std::size_t needed = elements.size() + count;
  if (needed > elements.capacity()) elements.reserve(std::max(needed, 2 * elements.capacity()));
}

template <class Value>
int threeWay(Value a, Value b) {
  return a < b ? -1 : int(b < a);
}

}  // namespace

Grid::Grid(Columns columns) : columns_(columns) { clear(); }

const Column& Grid::column(TextView key) const {
  const auto found = std::find_if(columns_.begin(), columns_.end(),
                                  [&](const Column& column) { return column.key == key; });
  assert(found != columns_.end());
  return *found;
}

Grid::RowIndex Grid::addRow() {
  // A lack of memory must not leave a part of a row.
  makeRoom(cells_, columns_.size());
  makeRoom(bands_, 1);
  makeRoom(ids_, 1);
  makeRoom(rows_, 1);
  for (const Column& column : columns_) {
    Cell empty = {0};
    if (column.isReal()) empty.real = 0;
    if (column.kind == CellKind::Attributes) empty.number = kAttributesInvalid;
    cells_.push_back(empty);
  }
  bands_.push_back(0);
  ids_.push_back(std::uint32_t(rows_.size()));
  rows_.push_back(std::uint32_t(ids_.size() - 1));
  return ids_.size() - 1;
}

void Grid::removeRows(const std::vector<std::uint32_t>& ids) {
  for (const std::uint32_t id : ids) {
    if (id < rows_.size()) rows_[id] = kGone;
  }
  const std::size_t width = columns_.size();
  RowIndex kept = 0;
  for (RowIndex row = 0; row < ids_.size(); ++row) {
    if (rows_[ids_[row]] == kGone) continue;
    if (kept != row) {
      std::copy_n(&cells_[row * width], width, &cells_[kept * width]);
      bands_[kept] = bands_[row];
      ids_[kept] = ids_[row];
    }
    ++kept;
  }
  cells_.resize(kept * width);
  bands_.resize(kept);
  ids_.resize(kept);
  noteRows();
}

void Grid::noteRows() {
  for (RowIndex row = 0; row < ids_.size(); ++row)
    rows_[ids_[row]] = std::uint32_t(row);
}

void Grid::setIdentity(RowIndex row, platform::FileIdentity identity) {
  const std::size_t id = ids_[row];
  if (identities_.size() <= id) identities_.resize(id + 1);
  identities_[id] = identity;
}

void Grid::set(RowIndex row, const Column& column, TextView value) {
  std::int64_t& last = lastTexts_[std::size_t(column.id - 1)];
  if (value.empty()) {
    cell(row, column).number = 0;
    return;
  }
  if (texts_[std::size_t(last)] != value) {
    texts_.push_back(pool_.keep(value));
    last = std::int64_t(texts_.size() - 1);
  }
  cell(row, column).number = last;
}

std::vector<std::uint32_t> Grid::sortedOrder(const Column& column, bool descending) const {
  std::vector<std::uint32_t> order(rowCount());
  std::iota(order.begin(), order.end(), 0U);
  if (column.isText()) {
    const TextRules& rules = platform::localeTextRules();
    sortBy(order, descending, [&](std::uint32_t a, std::uint32_t b) {
      if (number(a, column) == number(b, column)) return 0;  // both cells have the same text
      return rules.compare(text(a, column), text(b, column), false);
    });
  } else if (column.kind == CellKind::Attributes) {
    sortBy(order, descending, [&](std::uint32_t a, std::uint32_t b) {
      if (number(a, column) == number(b, column)) return 0;
      return xFormatFileAttribute(std::uint32_t(number(a, column)), false, {})
          .compare(xFormatFileAttribute(std::uint32_t(number(b, column)), false, {}));
    });
  } else if (column.isReal()) {
    sortBy(order, descending, [&](std::uint32_t a, std::uint32_t b) {
      return threeWay(real(a, column), real(b, column));
    });
  } else {
    sortBy(order, descending, [&](std::uint32_t a, std::uint32_t b) {
      return threeWay(number(a, column), number(b, column));
    });
  }
  return order;
}

void Grid::reorder(const std::vector<std::uint32_t>& order) {
  std::vector<Cell> cells;
  std::vector<std::uint8_t> bands;
  std::vector<std::uint32_t> ids;
  cells.reserve(cells_.size());
  bands.reserve(bands_.size());
  ids.reserve(ids_.size());
  for (const std::uint32_t row : order) {
    const auto begin = cells_.begin() + std::ptrdiff_t(row * columns_.size());
    cells.insert(cells.end(), begin, begin + std::ptrdiff_t(columns_.size()));
    bands.push_back(bands_[row]);
    ids.push_back(ids_[row]);
  }
  cells_.swap(cells);
  bands_.swap(bands);
  ids_.swap(ids);
  noteRows();
}

void Grid::sort(const Column& column, bool descending) {
  reorder(sortedOrder(column, descending));
  sortColumn_ = &column;
  sortedDescending_ = descending;
}

void Grid::clear() {
  cells_.clear();
  bands_.clear();
  ids_.clear();
  rows_.clear();
  identities_.clear();
  pool_.clear();
  texts_.assign(1, TextView());
  lastTexts_.assign(columns_.size(), 0);
  sortColumn_ = nullptr;
  sortedDescending_ = false;
}

}  // namespace ombrelian
