#pragma once

#include <QTableView>

#include "ui/ColumnFit.h"

namespace ombrelian::ui {

struct Theme;

/// The view of any list. A tree is a table whose first column is indented, so that a row outside
/// the screen needs only one number in memory.
class ListView : public QTableView {
  Q_OBJECT

 public:
  /// Reads the columns from the options of `view`, and stores changes of the user there.
  ListView(ListModel& model, Options& options, ListId view, QWidget* parent = nullptr);

  ListModel& list() { return model_; }
  ListId viewId() const { return view_; }

  /// Updates columns, grid lines and row heights from the options.
  void applySettings();

  /// Fits the columns to their cells and to the width of the list.
  void fitColumns() { fit_->fit(); }
  ColumnFit& columnFit() { return *fit_; }

  void setColumnVisible(int section, bool visible);
  bool isColumnVisible(int section) const { return !isColumnHidden(section); }

  /// Sorts the rows by a column; a second call for the same column reverses the order.
  void sortByColumn(int section);

  /// Numbers of the selected rows, from top to bottom.
  std::vector<std::size_t> selectedRowNumbers() const;

  /// The row that commands act on, which is the current row if it is selected; kNoRow: none.
  std::size_t currentRow() const;

  void goTo(std::size_t row);

  /// Selects these rows and no other, and shows the first of them.
  void selectRows(const std::vector<std::size_t>& rows);

  /// Starts the in-place edit of the name; does nothing if the name cannot be changed.
  void editName();

  static constexpr int kIndent = 16;  // pixels for each level

 Q_SIGNALS:
  void columnMenuWanted(const QPoint& at);
  void rowActivated(std::size_t row);  // Enter was pressed on the row
  void rowDoubleClicked(std::size_t row);
  void selectedRowsChanged();
  void columnsChanged();  // a column was shown or hidden
  void expandWanted(std::size_t row, bool expanded);
  void expandSubtreeWanted(std::size_t row, bool expanded);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void selectionChanged(const QItemSelection& now, const QItemSelection& before) override;

 private:
  bool takeFirstRow(const QKeyEvent& event);
  bool toggleAt(const QPoint& position);
  void columnMoved(int section, int from, int to);
  void storePositions();
  void setArranging(bool isArranging);
  std::size_t parentRow(std::size_t row) const;

  ListModel& model_;
  Options& options_;
  const ListId view_;
  ColumnFit* fit_ = nullptr;
  bool isArranging_ = false;  // true: the program moves columns, not the user
};

}  // namespace ombrelian::ui
