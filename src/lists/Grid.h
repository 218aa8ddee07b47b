#pragma once

#include "lists/CellFormat.h"
#include "platform/FindData.h"
#include "tree/NamePool.h"

namespace ombrelian {

/// The rows of one list: raw values, eight bytes a cell, in the columns of its table. Window,
/// exports, print and clipboard all read this.
class Grid : public CellSource {
 public:
  /// `columns` must outlive the grid; their ids count from 1.
  explicit Grid(Columns columns);

  Columns columns() const { return columns_; }

  /// The column of that field key, which must exist.
  const Column& column(TextView key) const;

  RowIndex rowCount() const { return ids_.size(); }

  /// Appends a row of empty cells.
  RowIndex addRow();

  /// Removes a row; the rows below it move up.
  void removeRow(RowIndex row) { removeRows({ids_[row]}); }

  /// Rows go by their ids, all of them in one pass; ids that no row has any more are passed over.
  void removeRows(const std::vector<std::uint32_t>& ids);

  /// What stands for a row while rows move: it stays through sorts and removals, and no other row
  /// gets it before clear().
  std::uint32_t id(RowIndex row) const { return ids_[row]; }

  /// Where the row with that id is now; kNoRow: it is gone, or never was.
  RowIndex rowOf(std::uint32_t id) const {
    return id < rows_.size() && rows_[id] != kGone ? rows_[id] : kNoRow;
  }
  static constexpr RowIndex kNoRow = RowIndex(-1);

  /// Values by the kind of the column: of texts, of Percent and Timestamp, of all others.
  /// A text that another row has already is best taken from there: it is kept once.
  void set(RowIndex row, const Column& column, TextView value);
  void setTextAs(RowIndex row, const Column& column, RowIndex other) {
    cell(row, column).number = cell(other, column).number;
  }
  void set(RowIndex row, const Column& column, double value) { cell(row, column).real = value; }
  void set(RowIndex row, const Column& column, std::int64_t value) {
    cell(row, column).number = value;
  }
  TextView text(RowIndex row, const Column& column) const override {
    return texts_[std::size_t(cell(row, column).number)];
  }
  double real(RowIndex row, const Column& column) const override { return cell(row, column).real; }
  std::int64_t number(RowIndex row, const Column& column) const override {
    return cell(row, column).number;
  }

  /// The cell as `format` shows it.
  Text cellText(const CellFormat& format, RowIndex row, const Column& column) const {
    Text text;
    format.appendShown(*this, row, column, text);
    return text;
  }

  /// Orders the rows by raw value, texts by the locale; equals keep their order.
  void sort(const Column& column, bool descending);

  /// The column that the rows were sorted by last; null: none.
  const Column* sortColumn() const { return sortColumn_; }
  bool sortedDescending() const { return sortedDescending_; }

  /// Which background a row has, 0 or 1, where a list sets its rows apart; it moves with the row.
  int band(RowIndex row) const { return bands_[row]; }
  void setBand(RowIndex row, int band) { bands_[row] = std::uint8_t(band); }

  /// Which object on the disk a row stands for; it moves with the row. Index 0: unknown. Grids
  /// whose rows are no objects keep nothing for it.
  platform::FileIdentity identity(RowIndex row) const {
    const std::uint32_t id = ids_[row];
    return id < identities_.size() ? identities_[id] : platform::FileIdentity();
  }
  void setIdentity(RowIndex row, platform::FileIdentity identity);

  /// Removes all rows, and forgets the last sort.
  void clear();

 private:
  union Cell {
    std::int64_t number;  // for a text its place in texts_
    double real;
  };

  static constexpr std::uint32_t kGone = std::uint32_t(-1);

  std::size_t place(RowIndex row, const Column& column) const {
    return row * columns_.size() + std::size_t(column.id - 1);
  }
  Cell& cell(RowIndex row, const Column& column) { return cells_[place(row, column)]; }
  const Cell& cell(RowIndex row, const Column& column) const { return cells_[place(row, column)]; }

  std::vector<std::uint32_t> sortedOrder(const Column& column, bool descending) const;
  void reorder(const std::vector<std::uint32_t>& order);
  void noteRows();

  Columns columns_;
  std::vector<Cell> cells_;  // row after row
  std::vector<std::uint8_t> bands_;
  std::vector<std::uint32_t> ids_;   // id of each row
  std::vector<std::uint32_t> rows_;  // row of each id; kGone: removed
  std::vector<platform::FileIdentity>
      identities_;                       // identity of each id, up to the last one that was set
  std::vector<TextView> texts_;          // texts in pool_; the first is the empty text
  std::vector<std::int64_t> lastTexts_;  // last text of each column, as neighbours are often equal
  NamePool pool_;
  const Column* sortColumn_ = nullptr;
  bool sortedDescending_ = false;
};

}  // namespace ombrelian
