#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "ui/RowSource.h"

namespace ombrelian::ui {

/// Any list as a model for Qt's views. A column of the model is the id of the list's column; 0 is
/// the row number. The model keeps no copy of the rows.
class ListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// `rows` must outlive the model.
  explicit ListModel(RowSource& rows, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// The objects of rows can be dragged to other programs.
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;

  RowSource& rows() { return rows_; }
  const RowSource& rows() const { return rows_; }

  /// The column of a section; null: the row number.
  const Column* column(int section) const;

  /// Orders the rows; the selected and the current rows stay so.
  void sortBy(const Column& column, bool descending);

  /// Runs `change`, which may put the rows in any order or put others in their place. The rows that
  /// remain keep their selection.
  void rearrange(const std::function<void()>& change);

  /// Runs `change`, which replaces all rows.
  void replace(const std::function<void()>& change);

  /// Runs `change`, which adds `count` rows before row `first`, or takes that many away.
  void insertRowsAt(std::size_t first, std::size_t count, const std::function<void()>& change);
  void removeRowsAt(std::size_t first, std::size_t count, const std::function<void()>& change);

  /// A frozen model has no rows, whatever is done to them meanwhile.
  void setFrozen(bool frozen);

  /// Forbids the editing of cells for as long as the model lives.
  void setReadOnly() { isReadOnly_ = true; }

  /// Shows all cells again after units, dates or names changed their form.
  void showAnew();

 Q_SIGNALS:
  /// Asks whether an object that has the wanted name may be replaced; `answer` is "no" at first.
  void nameTaken(const QString& name, bool* answer);
  void renameFailed(const QString& error);

 private:
  bool canEdit(const QModelIndex& index) const;
  QString accessibleText(std::size_t row, const Column& column) const;

  RowSource& rows_;
  bool isFrozen_ = false;
  bool isReadOnly_ = false;
};

}  // namespace ombrelian::ui
