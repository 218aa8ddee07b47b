#pragma once

#include <QTableView>

#include "lists/ListTable.h"
#include "ui/ListModel.h"

namespace ombrelian::ui {

struct Theme;

/// Any list on the screen. A tree is a table whose first column is indented: rows that are not on
/// the screen cost nothing but a number.
class ListView : public QTableView {
  Q_OBJECT

 public:
  /// The columns stand as `options` have it for `view`, and what the user changes goes there.
  ListView(ListModel& model, Options& options, ListId view, QWidget* parent = nullptr);

  ListModel& list() { return model_; }
  ListId viewId() const { return view_; }

  /// Takes up columns, grid lines and row heights from the options.
  void applySettings();

  /// Fits the columns to the rows on the screen, or to all of them if the list is to.
  void fitColumns();

  void setColumnVisible(int section, bool visible);
  bool isColumnVisible(int section) const { return !isColumnHidden(section); }

  /// Orders by a column; by the one in force already: the other way round.
  void sortByColumn(int section);

  /// Rows that are selected, from top to bottom.
  std::vector<std::size_t> selectedRowNumbers() const;

  /// The row that commands act on: the current one if it is selected; kNoRow: none.
  std::size_t currentRow() const;

  void goTo(std::size_t row);

  /// Starts the in-place edit of the name; does nothing where it cannot be changed.
  void editName();

  /// Width that shows all visible columns whole, with the scroll bar.
  int fullWidth() const;

  static constexpr int kIndent = 16;  // of a level

 Q_SIGNALS:
  void columnMenuWanted(const QPoint& at);
  void rowActivated(std::size_t row);  // by Enter
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
  bool isArranging_ = false;  // columns move, but not by the user
};

}  // namespace ombrelian::ui
