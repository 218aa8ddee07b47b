#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "ui/RowSource.h"

namespace ombrelian::ui {

/// Any list as a model for Qt's views. A column number of the model is the id of the list's column;
/// 0 is the row number. The model has no copy of the rows.
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

  /// Sorts the rows; the selected rows and the current row do not change.
  void sortBy(const Column& column, bool descending);

  /// Runs `change`, which may sort, remove or replace rows. The rows that remain keep their
  /// selection.
  void rearrange(const std::function<void()>& change);

  /// Runs `change`, which replaces all rows.
  void replace(const std::function<void()>& change);

  /// Runs `change`, which adds `count` rows before row `first`, or removes `count` rows from there
  /// on.
  void insertRowsAt(std::size_t first, std::size_t count, const std::function<void()>& change);
  void removeRowsAt(std::size_t first, std::size_t count, const std::function<void()>& change);

  /// Freezes the model, or ends this. A frozen model has no rows, even if the list changes.
  void setFrozen(bool frozen);

  /// Forbids the editing of cells permanently.
  void setReadOnly() { isReadOnly_ = true; }

  /// Updates all cells after the form of units, dates or names changed.
  void showAnew();

 Q_SIGNALS:
  /// Asks whether an object that has the wanted name may be replaced; `answer` is "no" at first.
  void nameTaken(const QString& name, bool* answer);
  void renameFailed(const QString& error);
  void renamed();

 private:
  bool canEdit(const QModelIndex& index) const;
  QString accessibleText(std::size_t row, const Column& column) const;

  RowSource& rows_;
  bool isFrozen_ = false;
  bool isReadOnly_ = false;
};

}  // namespace ombrelian::ui
