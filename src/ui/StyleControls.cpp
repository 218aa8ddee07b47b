#include <QPainter>
#include <QProgressBar>
#include <QStyleOption>
#include <QTime>
#include <QTimer>
#include <algorithm>

#include "ui/StylePaint.h"
#include "ui/StyleParts.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr int kMenuIconSize = 16;
constexpr qreal kProgressHeight = 4;
constexpr int kBusyPeriodMs = 1400;
constexpr int kBusyStepMs = 30;
constexpr double kBusyPart = 0.28;

// ---- menus ----

void paintMenuSeparator(const QStyleOptionMenuItem& item, QPainter& painter) {
  QRect line = item.rect.adjusted(kMenuItemMargin, 0, -kMenuItemMargin, 0);
  if (!item.text.isEmpty()) {
    painter.setPen(colorOf(item, QPalette::PlaceholderText));
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic, item.text);
    line.setLeft(line.left() + item.fontMetrics.horizontalAdvance(item.text) + kMenuItemMargin);
  }
  const QRectF middle(line.x(), QRectF(line).center().y(), line.width(), hairline(painter));
  painter.fillRect(snapped(painter, middle), colorOf(item, QPalette::Mid));
}

/// The check mark, the dot of a choice, or the icon, on a ground of its own where it is checked.
void paintMenuMark(const QStyle& style, const QStyleOptionMenuItem& item, const QRect& column,
                   const QColor& ink, QPainter& painter) {
  QRectF square(0, 0, 20, 20);
  square.moveCenter(QRectF(column).center());
  if (!item.icon.isNull()) {
    if (item.checked && item.checkType != QStyleOptionMenuItem::NotCheckable)
      paintBox(painter, square,
               {withAlpha(colorOf(item, QPalette::Link), 0.18),
                withAlpha(colorOf(item, QPalette::Link), 0.45), kControlRadius});
    QRect place(0, 0, kMenuIconSize, kMenuIconSize);
    place.moveCenter(column.center());
    const auto mode = isEnabled(item) ? QIcon::Normal : QIcon::Disabled;
    const bool isSelected = isEnabled(item) && has(item, QStyle::State_Selected);
    style.drawItemPixmap(&painter, place, Qt::AlignCenter,
                         item.icon.pixmap(place.size(), painter.device()->devicePixelRatioF(),
                                          isSelected ? QIcon::Selected : mode));
    return;
  }
  if (!item.checked || item.checkType == QStyleOptionMenuItem::NotCheckable) return;
  if (item.checkType == QStyleOptionMenuItem::Exclusive)
    paintBox(painter, square.adjusted(7, 7, -7, -7), {ink, {}, 3});
  else
    paintTick(painter, square, ink);
}

void paintMenuText(const QStyleOptionMenuItem& item, QRect area, const QColor& ink,
                   QPainter& painter) {
  constexpr int kFlags = Qt::AlignVCenter | Qt::TextShowMnemonic | Qt::TextSingleLine;
  const qsizetype tab = item.text.indexOf(u'\t');
  QFont font = item.font;
  if (item.menuItemType == QStyleOptionMenuItem::DefaultItem) font.setBold(true);
  painter.setFont(font);
  painter.setPen(ink);
  const auto left = QStyle::visualAlignment(item.direction, Qt::AlignLeft);
  const auto right = QStyle::visualAlignment(item.direction, Qt::AlignRight);
  painter.drawText(area, kFlags | left.toInt(), item.text.left(tab < 0 ? item.text.size() : tab));
  if (tab < 0) return;
  painter.setPen(withAlpha(ink, 0.7));
  painter.drawText(area, kFlags | right.toInt(), item.text.mid(tab + 1));
}

void paintMenuItem(const QStyle& style, const QStyleOptionMenuItem& item, QPainter& painter) {
  painter.fillRect(item.rect, menuGround(item.palette));
  if (item.menuItemType == QStyleOptionMenuItem::EmptyArea) return;
  if (item.menuItemType == QStyleOptionMenuItem::Separator)
    return paintMenuSeparator(item, painter);

  const bool isSelected = isEnabled(item) && has(item, QStyle::State_Selected);
  if (isSelected)
    paintBox(painter, QRectF(item.rect), {colorOf(item, QPalette::Highlight), {}, kControlRadius});
  const QColor ink =
      isEnabled(item) ? colorOf(item, isSelected ? QPalette::HighlightedText : QPalette::WindowText)
                      : item.palette.color(QPalette::Disabled, QPalette::WindowText);
  const QRect inner = item.rect.adjusted(kMenuItemMargin, 0, -kMenuItemMargin, 0);
  const auto place = [&](const QRect& logical) {
    return QStyle::visualRect(item.direction, item.rect, logical);
  };
  QRect column = inner;
  column.setWidth(kMenuIconColumn - kMenuItemMargin + 2);
  paintMenuMark(style, item, place(column), ink, painter);
  paintMenuText(item, place(inner.adjusted(kMenuIconColumn, 0, -kMenuItemMargin - 8, 0)), ink,
                painter);
  if (item.menuItemType == QStyleOptionMenuItem::SubMenu)
    paintChevron(painter, QRectF(place(QRect(inner.right() - 8, inner.y(), 8, inner.height()))),
                 item.direction == Qt::LeftToRight ? Qt::RightArrow : Qt::LeftArrow, ink, 6);
}

void paintMenuBarItem(const QStyleOptionMenuItem& item, QPainter& painter) {
  painter.fillRect(item.rect, item.palette.brush(QPalette::Window));
  const bool isOpen = has(item, QStyle::State_Sunken);
  if (isEnabled(item) && (isOpen || has(item, QStyle::State_Selected)))
    paintBox(
        painter, QRectF(item.rect).adjusted(1, 1, -1, -1),
        {withAlpha(colorOf(item, QPalette::WindowText), isOpen ? 0.12 : 0.08), {}, kControlRadius});
  painter.setPen(colorOf(item, QPalette::WindowText));
  painter.drawText(item.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                   item.text);
}

// ---- headers, tabs, edges ----

QColor headerGround(const QStyleOption& option) {
  const QColor ground =
      mixed(colorOf(option, QPalette::Base), colorOf(option, QPalette::Window), 0.7);
  const QColor text = colorOf(option, QPalette::WindowText);
  if (has(option, QStyle::State_Sunken)) return mixed(ground, text, 0.12);
  return isHovered(option) ? mixed(ground, text, 0.06) : ground;
}

void paintHeaderSection(const QStyleOption& option, QPainter& painter, bool hasDivider) {
  painter.fillRect(option.rect, headerGround(option));
  const QColor line = colorOf(option, QPalette::Mid);
  const QRectF area(option.rect);
  const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
  const bool isVertical = header != nullptr && header->orientation == Qt::Vertical;
  paintEdges(painter, area, isVertical ? Qt::RightEdge : Qt::BottomEdge, line);
  if (!hasDivider) return;
  if (isVertical)
    paintEdges(painter, area, Qt::BottomEdge, line);
  else
    paintEdges(painter, area.adjusted(0, 5, 0, -5),
               option.direction == Qt::LeftToRight ? Qt::RightEdge : Qt::LeftEdge, line);
}

constexpr int kSortArrowSpace = 12;

/// A title and, where the rows are sorted by it, a chevron at its end.
void paintHeader(const QStyle& style, const QStyleOptionHeader& header, QPainter& painter,
                 const QWidget* widget) {
  style.drawControl(QStyle::CE_HeaderSection, &header, &painter, widget);
  QStyleOptionHeader label = header;
  label.rect = style.subElementRect(QStyle::SE_HeaderLabel, &header, widget);
  label.state &= ~QStyle::State_On;  // a selection makes no title bold
  const bool isSorted = header.sortIndicator != QStyleOptionHeader::None;
  const bool isLeftToRight = header.direction == Qt::LeftToRight;
  if (isSorted)
    label.rect.adjust(isLeftToRight ? 0 : kSortArrowSpace, 0, isLeftToRight ? -kSortArrowSpace : 0,
                      0);
  if (label.rect.isValid()) style.drawControl(QStyle::CE_HeaderLabel, &label, &painter, widget);
  if (!isSorted) return;
  const QRect end(header.rect.right() - kSortArrowSpace - 2, header.rect.y(), kSortArrowSpace,
                  header.rect.height());
  label.rect = QStyle::visualRect(header.direction, header.rect, end);
  style.drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &label, &painter, widget);
}

/// The edge of a tab at which its page lies.
Qt::Edge pageEdge(QTabBar::Shape shape) {
  switch (shape) {
    case QTabBar::RoundedSouth:
    case QTabBar::TriangularSouth:
      return Qt::TopEdge;
    case QTabBar::RoundedWest:
    case QTabBar::TriangularWest:
      return Qt::RightEdge;
    case QTabBar::RoundedEast:
    case QTabBar::TriangularEast:
      return Qt::LeftEdge;
    default:
      return Qt::BottomEdge;
  }
}

void paintTab(const QStyleOptionTab& tab, QPainter& painter) {
  const QRectF area(tab.rect);
  const Qt::Edge edge = pageEdge(tab.shape);
  const bool isSelected = has(tab, QStyle::State_Selected);
  if (!isSelected && isHovered(tab))
    paintBox(painter, area.adjusted(2, 3, -2, -3),
             {withAlpha(colorOf(tab, QPalette::WindowText), 0.07), {}, kControlRadius});
  if (!isSelected) return;
  constexpr qreal kMark = 2;
  QRectF mark = area.adjusted(6, 0, -6, 0);
  if (edge == Qt::BottomEdge) mark.setTop(area.bottom() - kMark);
  if (edge == Qt::TopEdge) mark.setBottom(area.top() + kMark);
  if (edge == Qt::RightEdge) mark = area.adjusted(area.width() - kMark, 6, 0, -6);
  if (edge == Qt::LeftEdge) mark = area.adjusted(0, 6, kMark - area.width(), -6);
  paintBox(painter, mark, {colorOf(tab, QPalette::Link), {}, 1});
}

void paintSplitter(const QStyleOption& option, QPainter& painter) {
  const QRectF area(option.rect);
  const bool isActive = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken);
  const qreal width = isActive ? 2 * hairline(painter) : hairline(painter);
  const QPointF middle = area.center();
  const QRectF line = has(option, QStyle::State_Horizontal)
                          ? QRectF(middle.x() - width / 2, area.y(), width, area.height())
                          : QRectF(area.x(), middle.y() - width / 2, area.width(), width);
  painter.fillRect(snapped(painter, line),
                   colorOf(option, isActive ? QPalette::Link : QPalette::Mid));
}

bool paintShapedFrame(const QStyleOptionFrame& frame, QPainter& painter) {
  if (frame.frameShape != QFrame::HLine && frame.frameShape != QFrame::VLine) return false;
  const QRectF area(frame.rect);
  const qreal thin = hairline(painter);
  const QRectF line = frame.frameShape == QFrame::HLine
                          ? QRectF(area.x(), area.center().y(), area.width(), thin)
                          : QRectF(area.center().x(), area.y(), thin, area.height());
  painter.fillRect(snapped(painter, line), colorOf(frame, QPalette::Mid));
  return true;
}

void paintToolBar(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, option.palette.brush(QPalette::Window));
  paintEdges(painter, QRectF(option.rect), Qt::BottomEdge, colorOf(option, QPalette::Mid));
}

// ---- progress ----

/// Nothing else would make a bar move whose end is not known.
void keepMoving(const QWidget* widget) {
  auto* bar = qobject_cast<QProgressBar*>(const_cast<QWidget*>(widget));
  if (bar == nullptr || bar->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly) != nullptr)
    return;
  auto* timer = new QTimer(bar);
  QObject::connect(timer, &QTimer::timeout, bar, [bar, timer] {
    if (bar->isVisible() && bar->minimum() == bar->maximum()) return bar->update();
    timer->deleteLater();
  });
  timer->start(kBusyStepMs);
}

/// The filled part of `groove`; one that wanders to and fro while no end is known.
QRectF progressPart(const QStyleOptionProgressBar& bar, QRectF groove, const QWidget* widget) {
  const bool isHorizontal = bar.state & QStyle::State_Horizontal;
  const qreal length = isHorizontal ? groove.width() : groove.height();
  double from = 0;
  double part = 0;
  if (bar.maximum > bar.minimum) {
    part = std::clamp((double(bar.progress) - bar.minimum) / (double(bar.maximum) - bar.minimum),
                      0.0, 1.0);
  } else {
    keepMoving(widget);
    const double phase =
        QTime::currentTime().msecsSinceStartOfDay() % (2 * kBusyPeriodMs) / double(kBusyPeriodMs);
    part = kBusyPart;
    from = (phase < 1 ? phase : 2 - phase) * (1 - kBusyPart);
  }
  const bool fromEnd =
      bar.invertedAppearance != (!isHorizontal || bar.direction == Qt::RightToLeft);
  if (fromEnd) from = 1 - from - part;
  return isHorizontal
             ? QRectF(groove.x() + from * length, groove.y(), part * length, groove.height())
             : QRectF(groove.x(), groove.y() + from * length, groove.width(), part * length);
}

void paintProgress(const QStyleOptionProgressBar& bar, QPainter& painter, const QWidget* widget) {
  QRectF area(bar.rect);
  const bool isHorizontal = bar.state & QStyle::State_Horizontal;
  if (bar.textVisible && isHorizontal && !bar.text.isEmpty()) {
    const int width = bar.fontMetrics.horizontalAdvance(bar.text) + 8;
    painter.setPen(colorOf(bar, QPalette::WindowText));
    painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, bar.text);
    area.setRight(area.right() - width);
  }
  QRectF groove = area;
  if (isHorizontal)
    groove.setHeight(kProgressHeight);
  else
    groove.setWidth(kProgressHeight);
  groove.moveCenter(area.center());
  paintBox(painter, groove, {withAlpha(colorOf(bar, QPalette::WindowText), 0.13), {}, 2});
  const QRectF part = progressPart(bar, groove, widget);
  if (part.width() > 0 && part.height() > 0)
    paintBox(painter, part, {colorOf(bar, QPalette::Link), {}, 2});
}

/// The label of the default button stands on the accent.
bool paintDefaultLabel(const QStyle& style, const QStyleOption& option, QPainter& painter,
                       const QWidget* widget) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  if (button == nullptr || !isEnabled(option)) return false;
  if (!(button->features & QStyleOptionButton::DefaultButton)) return false;
  QStyleOptionButton other = *button;
  other.features &= ~QStyleOptionButton::DefaultButton;
  other.palette.setColor(QPalette::ButtonText, colorOf(option, QPalette::Base));
  style.drawControl(QStyle::CE_PushButtonLabel, &other, &painter, widget);
  return true;
}

bool paintMenuPart(const QStyle& style, QStyle::ControlElement element, const QStyleOption& option,
                   QPainter& painter) {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
  switch (element) {
    case QStyle::CE_MenuItem:
      if (item != nullptr) paintMenuItem(style, *item, painter);
      return item != nullptr;
    case QStyle::CE_MenuBarItem:
      if (item != nullptr) paintMenuBarItem(*item, painter);
      return item != nullptr;
    case QStyle::CE_MenuEmptyArea:
      painter.fillRect(option.rect, menuGround(option.palette));
      return true;
    case QStyle::CE_MenuBarEmptyArea:
      painter.fillRect(option.rect, option.palette.brush(QPalette::Window));
      return true;
    default:
      return false;
  }
}

}  // namespace

bool paintControl(const QStyle& style, QStyle::ControlElement element, const QStyleOption& option,
                  QPainter& painter, const QWidget* widget) {
  switch (element) {
    case QStyle::CE_Header:
      if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option))
        return paintHeader(style, *header, painter, widget), true;
      return false;
    case QStyle::CE_HeaderSection:
      paintHeaderSection(option, painter, true);
      return true;
    case QStyle::CE_HeaderEmptyArea:
      paintHeaderSection(option, painter, false);
      return true;
    case QStyle::CE_Splitter:
      paintSplitter(option, painter);
      return true;
    case QStyle::CE_SizeGrip:
      return true;  // the edges of a window can be dragged anyway
    case QStyle::CE_ToolBar:
      paintToolBar(option, painter);
      return true;
    case QStyle::CE_PushButtonLabel:
      return paintDefaultLabel(style, option, painter, widget);
    case QStyle::CE_TabBarTabShape:
      if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(&option))
        return paintTab(*tab, painter), true;
      return false;
    case QStyle::CE_ShapedFrame:
      if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option))
        return paintShapedFrame(*frame, painter);
      return false;
    case QStyle::CE_ProgressBar:
      if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(&option))
        return paintProgress(*bar, painter, widget), true;
      return false;
    default:
      return paintMenuPart(style, element, option, painter);
  }
}

}  // namespace ombrelian::ui
