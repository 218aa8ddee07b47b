#pragma once

#include <QStyledItemDelegate>

#include "lists/ListTable.h"
#include "ui/RowSource.h"

namespace ombrelian::ui {

/// Draws the cells of every list: the levels of a tree with their open/closed signs, bars in
/// percent columns, groups of rows, faded levels, errors, and the lines between cells if the
/// options want them.
class CellDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  CellDelegate(const Options& options, ListId view, QObject* parent);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;

  /// The width of levels, sign and icon in front of the text in the name column.
  static int leading(const RowSource& rows, std::size_t row);

 private:
  void paintBackground(QPainter& painter, const QStyleOptionViewItem& option,
                       const RowLook& look) const;
  void paintBarCell(QPainter& painter, const QStyleOptionViewItem& option, double percent) const;
  void paintText(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                 const RowLook& look) const;
  void paintLines(QPainter& painter, const QRect& cell) const;
  bool hasBars() const;

  const Options& options_;
  const ListId view_;
};

}  // namespace ombrelian::ui
