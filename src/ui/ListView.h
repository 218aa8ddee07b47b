#pragma once

#include <QTableView>

#include "lists/ListTable.h"
#include "ui/ListModel.h"

namespace ombrelian::ui {

struct Theme;

/// The view of any list. A tree is a table whose first column is indented, so that a row outside
/// the screen costs one number.
class ListView : public QTableView {
  Q_OBJECT

 public:
  /// Takes the columns from the options of `view`, and stores there what the user changes.
  ListView(ListModel& model, Options& options, ListId view, QWidget* parent = nullptr);

  ListModel& list() { return model_; }
  ListId viewId() const { return view_; }

  /// Takes up columns, grid lines and row heights from the options.
  void applySettings();

  /// Fits the columns to the rows on the screen, or to all rows where the options want that.
  void fitColumns();

  void setColumnVisible(int section, bool visible);
  bool isColumnVisible(int section) const { return !isColumnHidden(section); }

  /// Orders the rows by a column; a second call for the same column turns the order round.
  void sortByColumn(int section);

  /// Numbers of the selected rows, from top to bottom.
  std::vector<std::size_t> selectedRowNumbers() const;

  /// The row that commands act on, which is the current row if it is selected; kNoRow: none.
  std::size_t currentRow() const;

  void goTo(std::size_t row);

  /// Starts the in-place edit of the name; does nothing where it cannot be changed.
  void editName();

  /// Width that shows all visible columns whole, with the scroll bar.
  int fullWidth() const;

  static constexpr int kIndent = 16;  // pixels a level

 Q_SIGNALS:
  void columnMenuWanted(const QPoint& at);
  void rowActivated(std::size_t row);  // Enter was pressed on it
  void rowDoubleClicked(std::size_t row);
  void selectedRowsChanged();
  void expandWanted(std::size_t row, bool expanded);
  void expandSubtreeWanted(std::size_t row, bool expanded);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void selectionChanged(const QItemSelection& now, const QItemSelection& before) override;

 private:
  bool toggleAt(const QPoint& position);
  void columnMoved(int section, int from, int to);
  void storePositions();
  int widthForAllRows(int section) const;
  std::size_t parentRow(std::size_t row) const;

  ListModel& model_;
  Options& options_;
  const ListId view_;
  bool isArranging_ = false;  // the program moves columns, not the user
};

}  // namespace ombrelian::ui
