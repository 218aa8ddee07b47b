#include "ui/CellDelegate.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>

#include "ui/Icons.h"
#include "ui/ListModel.h"
#include "ui/ListView.h"
#include "ui/QtText.h"
#include "ui/StylePaint.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr int kNameSection = 1;
constexpr int kIconSize = 16;
constexpr int kGap = 5;          // distance between the open/closed sign, the icon and the text
constexpr int kMargin = 7;       // margin left and right of the text in a cell
constexpr int kMostLevels = 60;  // deeper folders are not indented further
constexpr int kFadeStep = 10;    // change of brightness for each level, of 255
constexpr int kMostFade = 120;

const ListModel& modelOf(const QModelIndex& index) {
  return *static_cast<const ListModel*>(index.model());
}

int indentOf(const RowLook& look) { return std::min(look.level, kMostLevels) * ListView::kIndent; }

/// Paths are cut in the middle, because their ends tell them apart; other texts at the end.
Qt::TextElideMode elisionOf(const Column* column) {
  constexpr TextView kPaths[] = {u"path", u"fullpath", u"junction", u"target", u"junctiontarget"};
  const bool isPath = column != nullptr && std::find(std::begin(kPaths), std::end(kPaths),
                                                     column->key) != std::end(kPaths);
  return isPath ? Qt::ElideMiddle : Qt::ElideRight;
}

/// The background of a folder of `level` if levels are shown by shade: a deeper level differs more
/// from the base colour.
QColor faded(const QPalette& palette, int level) {
  const double part = std::min(kFadeStep * level, kMostFade) / 255.0;
  return mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), part * 0.6);
}

}  // namespace

CellDelegate::CellDelegate(const Options& options, ListId view, QObject* parent)
    : QStyledItemDelegate(parent), options_(options), view_(view) {}

int CellDelegate::leading(const RowSource& rows, std::size_t row) {
  const RowLook look = rows.look(row);
  int width = indentOf(look);
  if (look.level > 0 || look.canExpand) width += ListView::kIndent;
  if (*look.icon != '\0') width += kIconSize + kGap;
  return width;
}

bool CellDelegate::hasBars() const {
  return view_ != ListId::Folders || options_.FolderShowPercentBar == 1;
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const ListModel& model = modelOf(index);
  const auto row = std::size_t(index.row());
  const RowLook look = model.rows().look(row);
  painter->save();
  paintBackground(*painter, option, look);
  const Column* const column = model.column(index.column());
  if (column != nullptr && column->kind == CellKind::Percent && hasBars()) {
    paintBarCell(*painter, option, model.rows().cells().real(model.rows().cellRow(row), *column));
  }
  paintText(*painter, option, index, look);
  paintLines(*painter, option.rect);
  painter->restore();
}

void CellDelegate::paintBackground(QPainter& painter, const QStyleOptionViewItem& option,
                                   const RowLook& look) const {
  const QPalette& palette = option.palette;
  QColor color = palette.color(look.band == 0 ? QPalette::Base : QPalette::AlternateBase);
  if (view_ == ListId::Folders && options_.FolderColorFade == 1) color = faded(palette, look.level);
  if (option.state & QStyle::State_Selected) {
    const auto group =
        (option.state & QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    color = palette.color(group, QPalette::Highlight);
  } else if (option.state & QStyle::State_MouseOver) {
    color = mixed(color, palette.color(QPalette::Highlight), 0.10);
  }
  painter.fillRect(option.rect, color);
}

void CellDelegate::paintBarCell(QPainter& painter, const QStyleOptionViewItem& option,
                                double percent) const {
  paintBar(painter, option.rect, percent / 100, barColor(option.palette),
           barBackground(option.palette));
}

void CellDelegate::paintText(QPainter& painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index, const RowLook& look) const {
  const bool isSelected = (option.state & QStyle::State_Selected) != 0;
  const QPalette& palette = option.palette;
  QRect area = option.rect.adjusted(kMargin, 0, -kMargin, 0);
  if (index.column() == kNameSection) {
    area.setLeft(area.left() + indentOf(look));
    const QIcon::Mode mode = isSelected ? QIcon::Selected : QIcon::Normal;
    const int top = area.top() + (area.height() - kIconSize) / 2;
    if (look.canExpand) {
      icon(look.isExpanded ? "collapse" : "expand")
          .paint(&painter, QRect(area.left() - 3, top, kIconSize, kIconSize), Qt::AlignCenter,
                 mode);
    }
    if (look.canExpand || look.level > 0) area.setLeft(area.left() + ListView::kIndent);
    if (*look.icon != '\0') {
      icon(look.icon).paint(&painter, QRect(area.left(), top, kIconSize, kIconSize),
                            Qt::AlignCenter, mode);
      area.setLeft(area.left() + kIconSize + kGap);
    }
  }
  const Column* const column = modelOf(index).column(index.column());
  const bool isOnBar = column != nullptr && column->kind == CellKind::Percent && hasBars();
  QPalette::ColorRole role = isSelected && !isOnBar ? QPalette::HighlightedText : QPalette::Text;
  if (look.isCompressed && !isSelected && index.column() == kNameSection) role = QPalette::Link;
  if (look.isError && !isSelected) role = QPalette::BrightText;
  painter.setPen(palette.color(
      (option.state & QStyle::State_Active) ? QPalette::Active : QPalette::Inactive, role));
  painter.setFont(option.font);
  const QString text =
      column == nullptr ? QString::number(index.row() + 1) : index.data(Qt::DisplayRole).toString();
  const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
  painter.drawText(area, int(alignment) | Qt::TextSingleLine,
                   option.fontMetrics.elidedText(text, elisionOf(column), area.width()));
}

void CellDelegate::paintLines(QPainter& painter, const QRect& cell) const {
  const bool horizontal = options_.GridLineStyle == 1 || options_.GridLineStyle == 3;
  const bool vertical = options_.GridLineStyle == 2 || options_.GridLineStyle == 3;
  if (!horizontal && !vertical) return;
  const QPalette palette = QApplication::palette();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(mixed(palette.color(QPalette::Base), palette.color(QPalette::Mid), 0.45), 1));
  if (horizontal) painter.drawLine(cell.bottomLeft(), cell.bottomRight());
  if (vertical) painter.drawLine(cell.topRight(), cell.bottomRight());
}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  QWidget* const editor = QStyledItemDelegate::createEditor(parent, option, index);
  if (auto* const line = qobject_cast<QLineEdit*>(editor)) line->setFrame(true);
  return editor;
}

/// Places the edit exactly over the text of the cell.
void CellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
  QRect area = option.rect;
  area.setLeft(area.left() + leading(modelOf(index).rows(), std::size_t(index.row())));
  area.setWidth(std::max(area.width(), 120));
  editor->setGeometry(area);
}

}  // namespace ombrelian::ui
