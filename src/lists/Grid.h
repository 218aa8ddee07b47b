#pragma once

#include "lists/CellFormat.h"
#include "platform/FindData.h"
#include "tree/NamePool.h"

namespace ombrelian {

/// The rows of one list: raw values with eight bytes for each cell, in the columns of its table.
/// The window, exports, print and clipboard read it.
class Grid : public CellSource {
 public:
  /// `columns` must outlive the grid; their ids count from 1.
  explicit Grid(Columns columns);

  Columns columns() const { return columns_; }

  /// The column with this field key, which must exist.
  const Column& column(TextView key) const;

  RowIndex rowCount() const { return ids_.size(); }

  /// Appends a row of empty cells.
  RowIndex addRow();

  /// Removes a row; the rows below it move up.
  void removeRow(RowIndex row) { removeRows({ids_[row]}); }

  /// Removes rows by their ids, all in one pass; ids without a row are ignored.
  void removeRows(const std::vector<std::uint32_t>& ids);

  /// Id of a row. It does not change when rows are sorted or removed, and no other row gets it
  /// before clear().
  std::uint32_t id(RowIndex row) const { return ids_[row]; }

  /// Current index of the row with this id; kNoRow: there is no such row.
  RowIndex rowOf(std::uint32_t id) const {
    return id < rows_.size() && rows_[id] != kGone ? rows_[id] : kNoRow;
  }
  static constexpr RowIndex kNoRow = RowIndex(-1);

  /// Values by the kind of the column: texts, Percent and Timestamp, and all other kinds. Sets a
  /// text. If another row already has the same text, setTextAs() stores it only once.
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

  /// The text of the cell in `format`.
  Text cellText(const CellFormat& format, RowIndex row, const Column& column) const {
    Text text;
    format.appendShown(*this, row, column, text);
    return text;
  }

  /// Sorts the rows by raw value, texts by the rules of the locale; equal rows keep their order.
  void sort(const Column& column, bool descending);

  /// The column of the last sort; null: none.
  const Column* sortColumn() const { return sortColumn_; }
  bool sortedDescending() const { return sortedDescending_; }

  /// Background of a row, 0 or 1, in lists that separate groups of rows; it moves with the row.
  int band(RowIndex row) const { return bands_[row]; }
  void setBand(RowIndex row, int band) { bands_[row] = std::uint8_t(band); }

  /// Identity of the object of a row on the disk; it moves with the row. Index 0: unknown. Grids
  /// whose rows are not objects use no memory for it.
  platform::FileIdentity identity(RowIndex row) const {
    const std::uint32_t id = ids_[row];
    return id < identities_.size() ? identities_[id] : platform::FileIdentity();
  }
  void setIdentity(RowIndex row, platform::FileIdentity identity);

  /// Removes all rows and clears the last sort column.
  void clear();

 private:
  union Cell {
    std::int64_t number;  // for a text, its index in texts_
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
  std::vector<Cell> cells_;  // cells of one row after the other
  std::vector<std::uint8_t> bands_;
  std::vector<std::uint32_t> ids_;   // id of each row
  std::vector<std::uint32_t> rows_;  // row of each id; kGone: removed
  std::vector<platform::FileIdentity>
      identities_;                       // identity of each id, up to the last that was set
  std::vector<TextView> texts_;          // texts in pool_; the first is the empty text
  std::vector<std::int64_t> lastTexts_;  // last text of each column; neighbours are often equal
  NamePool pool_;
  const Column* sortColumn_ = nullptr;
  bool sortedDescending_ = false;
};

}  // namespace ombrelian
