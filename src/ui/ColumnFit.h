#pragma once

#include <QTableView>
#include <span>

#include "lists/ListTable.h"
#include "ui/ListModel.h"

namespace ombrelian::ui {

/// How wide a column wants to be, in pixels.
struct ColumnNeed {
  int natural = 0;  // shows all measured cells completely
  int least = 0;    // below this width the column is of no use
};

/// Widths of columns that share `room` pixels: each gets its natural width if there is enough room;
/// else the widest ones are made narrower, but not narrower than their least width.
std::vector<int> sharedWidths(std::span<const ColumnNeed> needs, int room);

/// The widths of the columns of one list. Columns fit their cells and the width of the list, except
/// those whose width a person chose; such widths are stored in the options.
class ColumnFit : public QObject {
  Q_OBJECT

 public:
  ColumnFit(QTableView& view, ListModel& model, Options& options, ListId list);

  /// Fits all columns, except those whose width a person chose, to the rows on the screen, or to
  /// all rows if the options request it.
  void fit();

  /// Fits all columns and forgets the widths that a person chose.
  void fitAnew();

  /// Widens the name if the rows on the screen need it.
  void fitName();

  /// Shares the width of the list among the columns, without measuring cells.
  void layOut();

  /// Width that shows all visible columns completely, with the scroll bar.
  int fullWidth() const;

  /// While the program arranges columns, a change of a width is not the choice of a person.
  void setArranging(bool isArranging) { isArranging_ = isArranging; }

 private:
  void sectionResized(int section, int before, int now);
  void readChosen();
  void storeChosen();
  int measured(int section, bool all) const;
  ColumnNeed need(int section, int room) const;
  bool isElastic(int section) const;
  bool isTree() const { return list_ == ListId::Folders; }

  QTableView& view_;
  ListModel& model_;
  Options& options_;
  const ListId list_;
  std::vector<int> natural_;  // measured width of each section; 0: not measured
  std::vector<int> chosen_;   // width that a person chose; 0: none
  bool isArranging_ = false;
};

}  // namespace ombrelian::ui
