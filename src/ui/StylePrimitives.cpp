#include <QAbstractItemView>
#include <QComboBox>
#include <QHeaderView>
#include <QSpinBox>
#include <QStyleOption>
#include <QTableView>
#include <QTreeView>

#include "ui/StylePaint.h"
#include "ui/StyleParts.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr qreal kCurrentMarkWidth = 3;

/// A flat tool button shows itself only when it is touched or checked.
void paintToolPanel(const QStyleOption& option, QPainter& painter) {
  const QColor text = colorOf(option, QPalette::WindowText);
  const QColor accent = colorOf(option, QPalette::Link);
  const QRectF area = QRectF(option.rect).adjusted(1, 1, -1, -1);
  if (has(option, QStyle::State_Sunken))
    paintBox(painter, area, {withAlpha(text, 0.14), {}, kControlRadius});
  else if (has(option, QStyle::State_On))
    paintBox(painter, area,
             {withAlpha(accent, isHovered(option) ? 0.26 : 0.18), withAlpha(accent, 0.45),
              kControlRadius});
  else if (isHovered(option))
    paintBox(painter, area, {withAlpha(text, 0.08), {}, kControlRadius});
}

QColor pushFill(const QStyleOption& option, bool isDefault) {
  const QColor text = colorOf(option, QPalette::ButtonText);
  const QColor rest =
      isDefault ? colorOf(option, QPalette::Link) : colorOf(option, QPalette::Button);
  if (has(option, QStyle::State_Sunken) || has(option, QStyle::State_On))
    return mixed(rest, text, 0.12);
  return isHovered(option) ? mixed(rest, text, 0.06) : rest;
}

void paintFocusRing(QPainter& painter, const QRectF& area, const QColor& accent) {
  paintBox(painter, area, {{}, accent, kControlRadius, kFocusWidth});
}

void paintPushPanel(const QStyleOption& option, QPainter& painter) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool isDefault = button != nullptr && isEnabled(option) &&
                         (button->features & QStyleOptionButton::DefaultButton);
  const bool isFlat = button != nullptr && (button->features & QStyleOptionButton::Flat);
  if (isFlat && !has(option, QStyle::State_Sunken) && !has(option, QStyle::State_On) &&
      !isHovered(option))
    return;
  const QColor fill = pushFill(option, isDefault);
  paintBox(painter, QRectF(option.rect),
           {fill, isDefault ? fill : colorOf(option, QPalette::Dark), kControlRadius});
  if (!has(option, QStyle::State_HasFocus)) return;
  if (isDefault)
    paintBox(painter, QRectF(option.rect).adjusted(2, 2, -2, -2),
             {{}, colorOf(option, QPalette::Base), kControlRadius - 2, 1});
  else
    paintFocusRing(painter, QRectF(option.rect), colorOf(option, QPalette::Link));
}

/// The field of text within a combo or spin box has the frame of that.
bool isInsideOfControl(const QWidget* widget) {
  return widget != nullptr && (qobject_cast<const QComboBox*>(widget->parentWidget()) ||
                               qobject_cast<const QAbstractSpinBox*>(widget->parentWidget()));
}

void paintLinePanel(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
  if (isInsideOfControl(widget)) return;
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
  if (frame != nullptr && frame->lineWidth == 0) {
    painter.fillRect(option.rect, option.palette.brush(QPalette::Base));
    return;
  }
  const QColor line = colorOf(option, QPalette::Dark);
  paintBox(painter, QRectF(option.rect),
           {colorOf(option, QPalette::Base),
            isHovered(option) ? mixed(line, colorOf(option, QPalette::Text), 0.35) : line,
            kControlRadius});
  if (has(option, QStyle::State_HasFocus) && isEnabled(option))
    paintFocusRing(painter, QRectF(option.rect), colorOf(option, QPalette::Link));
}

Box indicatorBox(const QStyleOption& option, qreal radius) {
  const bool marked = has(option, QStyle::State_On) || has(option, QStyle::State_NoChange);
  const QColor mark =
      isEnabled(option) ? colorOf(option, QPalette::Link) : colorOf(option, QPalette::Text);
  if (marked)
    return {
        isHovered(option) ? mixed(mark, colorOf(option, QPalette::Text), 0.15) : mark, {}, radius};
  const QColor line = mixed(colorOf(option, QPalette::Dark), colorOf(option, QPalette::Text), 0.25);
  return {colorOf(option, QPalette::Base), isHovered(option) ? mark : line, radius};
}

QRectF indicatorArea(const QStyleOption& option) {
  QRectF area(0, 0, 15, 15);
  area.moveCenter(QRectF(option.rect).center());
  return area;
}

void paintCheckBox(const QStyleOption& option, QPainter& painter) {
  const QRectF area = indicatorArea(option);
  const Box box = indicatorBox(option, 3);
  paintBox(painter, area, box);
  const QColor mark = colorOf(option, QPalette::Base);
  if (has(option, QStyle::State_On)) paintTick(painter, area, mark);
  if (has(option, QStyle::State_NoChange))
    painter.fillRect(snapped(painter, QRectF(area.x() + 4, area.center().y() - 1, 7, 2)), mark);
}

void paintRadioButton(const QStyleOption& option, QPainter& painter) {
  const QRectF area = indicatorArea(option);
  paintBox(painter, area, indicatorBox(option, 7.5));
  if (has(option, QStyle::State_On))
    paintBox(painter, area.adjusted(4.5, 4.5, -4.5, -4.5),
             {colorOf(option, QPalette::Base), {}, 3});
}

/// Rows are not framed where the focus is; the current one has a mark and lines of its own.
bool paintFocus(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
  // A tree asks without a widget.
  if (widget == nullptr || qobject_cast<const QAbstractItemView*>(widget) != nullptr) return true;
  if (has(option, QStyle::State_KeyboardFocusChange))
    paintFocusRing(painter, QRectF(option.rect), withAlpha(colorOf(option, QPalette::Link), 0.7));
  return true;
}

/// In a table whose rows are selected as a whole the row is current, not the cell.
bool isCurrentRow(const QStyleOptionViewItem& item, const QWidget* widget) {
  if (item.state & QStyle::State_HasFocus) return true;
  const auto* view = qobject_cast<const QAbstractItemView*>(widget);
  if (view == nullptr || !view->hasFocus()) return false;
  if (view->selectionBehavior() != QAbstractItemView::SelectRows) return false;
  const QModelIndex current = view->currentIndex();
  // A tree does not tell of which row the branches are.
  const QModelIndex index = item.index.isValid() ? item.index : view->indexAt(item.rect.center());
  return current.isValid() && current.row() == index.row() && current.parent() == index.parent();
}

/// Trees and tables paint whole rows first, below what their cells paint.
bool hasRows(const QWidget* widget) {
  return qobject_cast<const QTreeView*>(widget) != nullptr ||
         qobject_cast<const QTableView*>(widget) != nullptr;
}

void paintHover(const QStyleOptionViewItem& item, QPainter& painter) {
  if (isHovered(item) && !has(item, QStyle::State_Selected))
    painter.fillRect(item.rect, withAlpha(item.palette.color(QPalette::Text), 0.05));
}

void paintSelection(const QStyleOptionViewItem& item, QPainter& painter) {
  const auto group = has(item, QStyle::State_Active) ? QPalette::Normal : QPalette::Inactive;
  if (has(item, QStyle::State_Selected))
    painter.fillRect(item.rect, item.palette.color(group, QPalette::Highlight));
}

/// Colours of the marks of a current row that stand out from its selection, too.
QColor currentInk(const QStyleOptionViewItem& item) {
  const QColor accent = item.palette.color(QPalette::Link);
  const bool isSolid = has(item, QStyle::State_Selected) &&
                       item.palette.color(QPalette::Active, QPalette::Highlight) == accent;
  return isSolid ? item.palette.color(QPalette::HighlightedText) : accent;
}

/// A current row has thin lines above and below, and in a tree a mark at its very left.
void paintCurrent(const QStyleOptionViewItem& item, QPainter& painter, const QWidget* widget) {
  if (!isCurrentRow(item, widget)) return;
  const QColor ink = currentInk(item);
  const QRectF area(item.rect);
  paintEdges(painter, area, Qt::TopEdge | Qt::BottomEdge,
             mixed(item.palette.color(QPalette::Base), ink, 0.55));
  const auto* tree = qobject_cast<const QTreeView*>(widget);
  if (tree == nullptr) return;
  if (item.rect.x() != tree->columnViewportPosition(tree->header()->logicalIndex(0))) return;
  painter.fillRect(snapped(painter, QRectF(area.x(), area.y(), kCurrentMarkWidth, area.height())),
                   ink);
}

/// What lies below the cells of a row, the branches of a tree included.
void paintRowGround(const QStyleOptionViewItem& item, QPainter& painter, const QWidget* widget) {
  if (item.features & QStyleOptionViewItem::Alternate)
    painter.fillRect(item.rect, item.palette.brush(QPalette::AlternateBase));
  paintHover(item, painter);
  paintSelection(item, painter);
  paintCurrent(item, painter, widget);
}

void paintCell(const QStyleOptionViewItem& item, QPainter& painter, const QWidget* widget) {
  const bool hasGround = item.backgroundBrush.style() != Qt::NoBrush;
  if (hasGround) painter.fillRect(item.rect, item.backgroundBrush);
  if (hasGround || !hasRows(widget)) paintHover(item, painter);
  paintSelection(item, painter);
  paintCurrent(item, painter, widget);
}

void paintBranch(const QStyleOption& option, QPainter& painter) {
  if (!has(option, QStyle::State_Children)) return;
  const bool isOpen = has(option, QStyle::State_Open);
  const bool isRight = option.direction == Qt::LeftToRight;
  const QColor text = colorOf(
      option, has(option, QStyle::State_Selected) ? QPalette::HighlightedText : QPalette::Text);
  paintChevron(painter, QRectF(option.rect),
               isOpen    ? Qt::DownArrow
               : isRight ? Qt::RightArrow
                         : Qt::LeftArrow,
               withAlpha(text, isHovered(option) ? 0.9 : 0.6), 6.5);
}

void paintSeparator(const QStyleOption& option, QPainter& painter) {
  const QRectF area(option.rect);
  const QPointF middle = area.center();
  const QColor color = colorOf(option, QPalette::Mid);
  const qreal thin = hairline(painter);
  const QRectF line = has(option, QStyle::State_Horizontal)
                          ? QRectF(middle.x(), area.y() + 4, thin, area.height() - 8)
                          : QRectF(area.x() + 4, middle.y(), area.width() - 8, thin);
  painter.fillRect(snapped(painter, line), color);
}

bool paintPanel(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
                const QWidget* widget) {
  const QRectF area(option.rect);
  const QColor line = colorOf(option, QPalette::Mid);
  switch (element) {
    case QStyle::PE_PanelButtonTool:
      paintToolPanel(option, painter);
      return true;
    case QStyle::PE_PanelButtonCommand:
      paintPushPanel(option, painter);
      return true;
    case QStyle::PE_FrameDefaultButton:
    case QStyle::PE_FrameStatusBarItem:
    case QStyle::PE_PanelMenuBar:
    case QStyle::PE_FrameButtonTool:
      return true;
    case QStyle::PE_PanelLineEdit:
    case QStyle::PE_FrameLineEdit:
      paintLinePanel(option, painter, widget);
      return true;
    case QStyle::PE_FrameGroupBox:
      paintBox(painter, area, {{}, line, 6});
      return true;
    case QStyle::PE_FrameTabWidget:
      paintEdges(painter, area, Qt::TopEdge, line);
      return true;
    case QStyle::PE_Frame:
      paintEdges(painter, area, Qt::TopEdge | Qt::BottomEdge | Qt::LeftEdge | Qt::RightEdge, line);
      return true;
    case QStyle::PE_PanelMenu:
      painter.fillRect(option.rect, menuGround(option.palette));
      return true;
    case QStyle::PE_FrameMenu:
    case QStyle::PE_PanelTipLabel:
      if (element == QStyle::PE_PanelTipLabel)
        painter.fillRect(option.rect, option.palette.brush(QPalette::ToolTipBase));
      paintEdges(painter, area, Qt::TopEdge | Qt::BottomEdge | Qt::LeftEdge | Qt::RightEdge,
                 colorOf(option, QPalette::Dark));
      return true;
    case QStyle::PE_PanelStatusBar:
      paintEdges(painter, area, Qt::TopEdge, line);
      return true;
    case QStyle::PE_FrameTabBarBase:
      paintEdges(painter, area, Qt::BottomEdge, line);
      return true;
    default:
      return false;
  }
}

bool paintIndicator(QStyle::PrimitiveElement element, const QStyleOption& option,
                    QPainter& painter) {
  const QRectF area(option.rect);
  const QColor text = colorOf(option, QPalette::WindowText);
  switch (element) {
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck:
      paintCheckBox(option, painter);
      return true;
    case QStyle::PE_IndicatorRadioButton:
      paintRadioButton(option, painter);
      return true;
    case QStyle::PE_IndicatorBranch:
      paintBranch(option, painter);
      return true;
    case QStyle::PE_IndicatorToolBarSeparator:
      paintSeparator(option, painter);
      return true;
    case QStyle::PE_IndicatorArrowUp:
      paintChevron(painter, area, Qt::UpArrow, text);
      return true;
    case QStyle::PE_IndicatorArrowDown:
    case QStyle::PE_IndicatorButtonDropDown:
      paintChevron(painter, area, Qt::DownArrow, text);
      return true;
    case QStyle::PE_IndicatorArrowLeft:
      paintChevron(painter, area, Qt::LeftArrow, text);
      return true;
    case QStyle::PE_IndicatorArrowRight:
      paintChevron(painter, area, Qt::RightArrow, text);
      return true;
    case QStyle::PE_IndicatorHeaderArrow: {
      const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
      // Qt calls an ascending order SortDown; here a chevron points to where values grow.
      const bool isUp = header != nullptr && header->sortIndicator == QStyleOptionHeader::SortDown;
      paintChevron(painter, area, isUp ? Qt::UpArrow : Qt::DownArrow,
                   colorOf(option, QPalette::Link), 6);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace

QColor menuGround(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  return window.lightnessF() < text.lightnessF() ? mixed(window, text, 0.04)
                                                 : palette.color(QPalette::Active, QPalette::Base);
}

bool paintPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
                    const QWidget* widget) {
  if (element == QStyle::PE_FrameFocusRect) return paintFocus(option, painter, widget);
  if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(&option)) {
    if (element == QStyle::PE_PanelItemViewRow) return paintRowGround(*item, painter, widget), true;
    if (element == QStyle::PE_PanelItemViewItem) return paintCell(*item, painter, widget), true;
  }
  return paintPanel(element, option, painter, widget) || paintIndicator(element, option, painter);
}

}  // namespace ombrelian::ui
