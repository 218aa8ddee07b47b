#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>

#include "lists/CellFormat.h"
#include "lists/ListTable.h"
#include "settings/Options.h"
#include "ui/MatchCounter.h"

namespace ombrelian::ui {

/// Properties of a row that change its look.
struct RowLook {
  int level = 0;  // depth in a tree; a source has 0
  bool canExpand = false;
  bool isExpanded = false;
  int band = 0;  // background, 0 or 1, by which a list separates groups of rows
  bool isError = false;
  bool isCompressed = false;  // the file system compresses the folder
  const char* icon = "";      // see icon(); empty: none
};

/// The rows of one list as the window shows them, with their order and the texts of their cells.
/// With this interface, one model and one view are enough for all lists. Rows are numbered from 0
/// from top to bottom; the id of a row does not change when rows move.
class RowSource {
 public:
  using Id = std::uint32_t;
  static constexpr std::size_t kNoRow = SIZE_MAX;

  virtual ~RowSource() = default;

  virtual Columns columns() const = 0;
  virtual const CellSource& cells() const = 0;
  virtual const CellFormat& format() const = 0;

  /// Reads the units and the date format from the options.
  virtual void applySettings() = 0;

  virtual std::size_t count() const = 0;
  virtual CellSource::RowIndex cellRow(std::size_t row) const { return row; }
  virtual Id id(std::size_t row) const = 0;
  virtual std::size_t rowOf(Id id) const = 0;  // kNoRow: the row is not shown

  virtual void sort(const Column& column, bool descending) = 0;
  virtual const Column* sortColumn() const = 0;  // null: none
  virtual bool sortedDescending() const = 0;

  virtual RowLook look(std::size_t) const { return {}; }

  /// The text of a cell.
  virtual Text shown(std::size_t row, const Column& column) const;

  /// The tool tip of a cell; empty: the cell has none.
  virtual Text toolTip(std::size_t row, const Column& column) const;

  /// Full path of the object of a row, without final separator; empty: the row has no object.
  virtual Text path(std::size_t) const { return {}; }

  /// Whether a cell can be edited in place. rename() makes the edit and returns the text of an
  /// error; empty: the edit was made.
  virtual bool canRename(std::size_t, const Column&) const { return false; }
  virtual Text rename(std::size_t, const Text&) { return {}; }

  /// Whether the row is a network path that the user stored.
  virtual bool isNetworkPath(std::size_t) const { return false; }

  /// Whether another object in the same folder has this name and a rename would replace it. Folders
  /// are not replaced.
  virtual bool isNameTaken(std::size_t row, const Text& name) const;

  /// The next row after `from`, or before it, that has the text; `from` itself is tried last. None:
  /// no row has the text. A tree expands the folders above the row; the caller then calls
  /// rebuild().
  virtual std::optional<Id> find(const QString& text, std::size_t from, bool backward);

  /// Number of objects that find() can find, as far as they can be counted within `milliseconds`.
  virtual MatchCount countMatches(const QString& text, int milliseconds);

  /// Whether a search for the text finds the row.
  virtual bool holds(std::size_t row, const QString& text) const = 0;

  /// Lists the rows again after find() expanded folders.
  virtual void rebuild() {}
};

/// The rows of a grid, in the order of the grid.
class GridRows : public RowSource {
 public:
  /// References to `grid` and `options` are kept; sizes have the form that the options define for
  /// `list`.
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

  /// Looks at the visible columns.
  bool holds(std::size_t row, const QString& text) const override;

 protected:
  /// The column with this key; null: the list has no such column.
  const Column* column(TextView key) const;
  Text textOf(std::size_t row, TextView key) const;

  Grid& grid_;
  const Options& options_;

 private:
  const ListId list_;
  CellFormat format_;
};

}  // namespace ombrelian::ui
