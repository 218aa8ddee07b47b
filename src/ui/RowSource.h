#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>

#include "lists/CellFormat.h"
#include "lists/ListTable.h"
#include "settings/Options.h"

namespace ombrelian::ui {

/// How a row stands out from the others.
struct RowLook {
  int level = 0;  // of a tree
  bool canExpand = false;
  bool isExpanded = false;
  int band = 0;  // 0 or 1, where a list sets groups of rows apart
  bool isError = false;
  const char* icon = "";  // see icon(); empty: none
};

/// The rows of one list as the window shows them: which there are, in which order, and what to make
/// of their cells. One model and one view serve every list through this. Rows are numbered from 0
/// from top to bottom; ids stay with their row while rows move.
class RowSource {
 public:
  using Id = std::uint32_t;
  static constexpr std::size_t kNoRow = SIZE_MAX;

  virtual ~RowSource() = default;

  virtual Columns columns() const = 0;
  virtual const CellSource& cells() const = 0;
  virtual const CellFormat& format() const = 0;

  /// Takes up what the options say of units and of the form of dates.
  virtual void applySettings() = 0;

  virtual std::size_t count() const = 0;
  virtual CellSource::RowIndex cellRow(std::size_t row) const { return row; }
  virtual Id id(std::size_t row) const = 0;
  virtual std::size_t rowOf(Id id) const = 0;  // kNoRow: it is not on show

  virtual void sort(const Column& column, bool descending) = 0;
  virtual const Column* sortColumn() const = 0;  // null: none
  virtual bool sortedDescending() const = 0;

  virtual RowLook look(std::size_t) const { return {}; }

  /// The cell as it is shown.
  virtual Text shown(std::size_t row, const Column& column) const;

  /// What the tooltip of a cell tells; empty: none.
  virtual Text toolTip(std::size_t row, const Column& column) const;

  /// Full path of what a row stands for, without final separator; empty: for no object.
  virtual Text path(std::size_t) const { return {}; }

  /// Whether the cell can be edited in place, and the edit itself, which returns the text of an
  /// error; empty: done.
  virtual bool canRename(std::size_t, const Column&) const { return false; }
  virtual Text rename(std::size_t, const Text&) { return {}; }

  /// Something else has that name beside the row's object, which a rename would replace.
  virtual bool isNameTaken(std::size_t row, const Text& name) const;

  /// What a look-up finds next behind the row, or before it; `from` itself comes last. kNoRow:
  /// nothing has the text. A tree opens what hides the row; then rebuild() is to be called.
  virtual std::optional<Id> find(const QString& text, std::size_t from, bool backward);

  /// Shows the rows anew after a look-up opened what hid one of them.
  virtual void rebuild() {}

 protected:
  /// Gives the object of a row another name on the disk. Empty: done; else the error text.
  Text renameObject(std::size_t row, const Text& name) const;

  bool holds(std::size_t row, const QString& text) const;
};

/// The rows of a grid, in its order.
class GridRows : public RowSource {
 public:
  /// `grid` and `options` are kept by reference; sizes are shown as the options have it for `list`.
  GridRows(Grid& grid, const Options& options, ListId list);

  Columns columns() const override { return grid_.columns(); }
  const CellSource& cells() const override { return grid_; }
  const CellFormat& format() const override { return format_; }
  void applySettings() override;
  std::size_t count() const override { return grid_.rowCount(); }
  Id id(std::size_t row) const override { return grid_.id(row); }
  std::size_t rowOf(Id id) const override { return grid_.rowOf(id); }
  void sort(const Column& column, bool descending) override { grid_.sort(column, descending); }
  const Column* sortColumn() const override { return grid_.sortColumn(); }
  bool sortedDescending() const override { return grid_.sortedDescending(); }
  RowLook look(std::size_t row) const override { return {.band = grid_.band(row)}; }
  Text path(std::size_t row) const override;

 protected:
  /// The column of that key; null: the list has none.
  const Column* column(TextView key) const;
  Text textOf(std::size_t row, TextView key) const;

  Grid& grid_;
  const Options& options_;

 private:
  const ListId list_;
  CellFormat format_;
};

}  // namespace ombrelian::ui
