#include "ui/StyleParts.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QPainter>

#include "ui/StylePaint.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr qreal kRadius = 4;
constexpr qreal kFocusWidth = 1.6;
constexpr qreal kIndicatorSide = 15;
constexpr qreal kSliderWidth = 6;
constexpr qreal kSliderWidthHovered = 8;
constexpr int kLabelMargin = 6;  // margin left of the icon of a tool button with text

constexpr Qt::Edges kAllEdges = Qt::TopEdge | Qt::BottomEdge | Qt::LeftEdge | Qt::RightEdge;

bool has(const QStyleOption& option, QStyle::StateFlag flag) { return option.state & flag; }

bool isEnabled(const QStyleOption& option) { return has(option, QStyle::State_Enabled); }

bool isHovered(const QStyleOption& option) {
  return isEnabled(option) && has(option, QStyle::State_MouseOver);
}

QColor colorOf(const QStyleOption& option, QPalette::ColorRole role) {
  return option.palette.color(role);
}

// ---- buttons ----

/// A tool button has a background only while it is hovered, pressed or checked.
void paintToolPanel(const QStyleOption& option, QPainter& painter) {
  const QColor text = colorOf(option, QPalette::WindowText);
  const QColor accent = colorOf(option, QPalette::Link);
  const QRectF area = QRectF(option.rect).adjusted(1, 1, -1, -1);
  if (has(option, QStyle::State_Sunken))
    paintBox(painter, area, {withAlpha(text, 0.14), {}, kRadius});
  else if (has(option, QStyle::State_On))
    paintBox(
        painter, area,
        {withAlpha(accent, isHovered(option) ? 0.26 : 0.18), withAlpha(accent, 0.45), kRadius});
  else if (isHovered(option))
    paintBox(painter, area, {withAlpha(text, 0.08), {}, kRadius});
}

void paintToolButton(const QStyle& style, const QStyleOptionToolButton& button, QPainter& painter,
                     const QWidget* widget) {
  QStyleOptionToolButton part = button;
  if (!button.activeSubControls) part.state &= ~QStyle::State_Sunken;
  paintToolPanel(part, painter);
  if (has(button, QStyle::State_HasFocus) && has(button, QStyle::State_KeyboardFocusChange))
    paintBox(painter, QRectF(button.rect),
             {{}, withAlpha(colorOf(button, QPalette::Link), 0.8), kRadius, kFocusWidth});

  const auto placed = [&button](const QRect& rect) {
    return QStyle::visualRect(button.direction, button.rect, rect);
  };
  QRect label = button.rect;
  if (opensMenu(button)) {
    const QRect chevron(label.right() - kMenuChevronWidth - 1, label.y() + 1, kMenuChevronWidth,
                        label.height());
    paintChevron(painter, QRectF(placed(chevron)), Qt::DownArrow,
                 withAlpha(colorOf(button, QPalette::WindowText), 0.7), 6);
    label.setRight(chevron.left() - 1);
  }
  if (button.toolButtonStyle == Qt::ToolButtonTextBesideIcon && !button.icon.isNull()) {
    const QRect place(QPoint(label.x() + kLabelMargin, label.y()),
                      QSize(button.iconSize.width(), label.height()));
    button.icon.paint(&painter, placed(place), Qt::AlignCenter,
                      isEnabled(button) ? QIcon::Normal : QIcon::Disabled);
    part.icon = {};  // without the icon, the text is centred in the rest
    label.setLeft(place.right() + 1);
  }
  part.rect = placed(label);
  style.drawControl(QStyle::CE_ToolButtonLabel, &part, &painter, widget);
}

bool isDefault(const QStyleOption& option) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  return button != nullptr && isEnabled(option) &&
         (button->features & QStyleOptionButton::DefaultButton);
}

/// The default button is filled with the accent.
void paintPushPanel(const QStyleOption& option, QPainter& painter) {
  const bool isPressed = has(option, QStyle::State_Sunken) || has(option, QStyle::State_On);
  const QColor rest = colorOf(option, isDefault(option) ? QPalette::Link : QPalette::Button);
  const QColor fill = mixed(rest, colorOf(option, QPalette::ButtonText),
                            isPressed           ? 0.12
                            : isHovered(option) ? 0.06
                                                : 0);
  paintBox(painter, QRectF(option.rect),
           {fill, isDefault(option) ? fill : colorOf(option, QPalette::Dark), kRadius});
  if (!has(option, QStyle::State_HasFocus)) return;
  if (isDefault(option))
    paintBox(painter, QRectF(option.rect).adjusted(2, 2, -2, -2),
             {{}, colorOf(option, QPalette::Base), kRadius - 2, 1});
  else
    paintBox(painter, QRectF(option.rect),
             {{}, colorOf(option, QPalette::Link), kRadius, kFocusWidth});
}

/// Paints the label of the default button in a colour that is readable on the accent.
bool paintPushLabel(const QStyle& style, const QStyleOption& option, QPainter& painter,
                    const QWidget* widget) {
  if (!isDefault(option)) return false;
  QStyleOptionButton other = *qstyleoption_cast<const QStyleOptionButton*>(&option);
  other.features &= ~QStyleOptionButton::DefaultButton;
  other.palette.setColor(QPalette::ButtonText, colorOf(option, QPalette::Base));
  style.drawControl(QStyle::CE_PushButtonLabel, &other, &painter, widget);
  return true;
}

// ---- fields and boxes ----

void paintField(const QStyleOption& option, QPainter& painter, const QColor& fill) {
  const bool hasFocus = has(option, QStyle::State_HasFocus) && isEnabled(option);
  const QColor outline = colorOf(option, QPalette::Dark);
  const QColor line = hasFocus            ? colorOf(option, QPalette::Link)
                      : isHovered(option) ? mixed(outline, colorOf(option, QPalette::Text), 0.35)
                                          : outline;
  paintBox(painter, QRectF(option.rect), {fill, line, kRadius, hasFocus ? kFocusWidth : 0});
}

void paintLineEdit(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
  const QWidget* const parent = widget == nullptr ? nullptr : widget->parentWidget();
  // The edit of a combo or spin box is inside the frame of that box.
  if (qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractSpinBox*>(parent))
    return;
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
  if (frame != nullptr && frame->lineWidth == 0)
    painter.fillRect(option.rect, option.palette.brush(QPalette::Base));
  else
    paintField(option, painter, colorOf(option, QPalette::Base));
}

void paintComboBox(const QStyle& style, const QStyleOptionComboBox& combo, QPainter& painter,
                   const QWidget* widget) {
  paintField(combo, painter, colorOf(combo, combo.editable ? QPalette::Base : QPalette::Button));
  const QRect arrow =
      style.subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxArrow, widget);
  paintChevron(painter, QRectF(arrow), Qt::DownArrow, colorOf(combo, QPalette::ButtonText));
}

/// A check box or a radio button, which differ in the radius and in the mark.
void paintIndicator(const QStyleOption& option, QPainter& painter, bool isRadio) {
  QRectF area(0, 0, kIndicatorSide, kIndicatorSide);
  area.moveCenter(QRectF(option.rect).center());
  const QColor text = colorOf(option, QPalette::Text);
  const QColor mark = isEnabled(option) ? colorOf(option, QPalette::Link) : text;
  const QColor base = colorOf(option, QPalette::Base);
  const qreal radius = isRadio ? kIndicatorSide / 2 : 3;
  if (has(option, QStyle::State_On) || has(option, QStyle::State_NoChange))
    paintBox(painter, area, {isHovered(option) ? mixed(mark, text, 0.15) : mark, {}, radius});
  else
    paintBox(painter, area,
             {base, isHovered(option) ? mark : mixed(colorOf(option, QPalette::Dark), text, 0.25),
              radius});
  if (has(option, QStyle::State_NoChange))
    painter.fillRect(snapped(painter, QRectF(area.x() + 4, area.center().y() - 1, 7, 2)), base);
  else if (has(option, QStyle::State_On) && isRadio)
    paintBox(painter, area.adjusted(4.5, 4.5, -4.5, -4.5), {base, {}, 3});
  else if (has(option, QStyle::State_On))
    paintTick(painter, area, base);
}

// ---- scroll bars ----

void paintScrollBar(const QStyle& style, const QStyleOptionSlider& bar, QPainter& painter,
                    const QWidget* widget) {
  painter.fillRect(bar.rect, bar.palette.brush(QPalette::Base));
  if (bar.maximum <= bar.minimum || !isEnabled(bar)) return;
  const bool isPressed = has(bar, QStyle::State_Sunken);
  const bool isTouched = isPressed || has(bar, QStyle::State_MouseOver);
  const bool isHeld = isPressed && (bar.activeSubControls & QStyle::SC_ScrollBarSlider);
  const qreal width = isTouched ? kSliderWidthHovered : kSliderWidth;
  const QRectF area(
      style.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider, widget));
  QRectF slider = area;
  if (bar.orientation == Qt::Horizontal)
    slider.setHeight(width);
  else
    slider.setWidth(width);
  slider.moveCenter(area.center());
  const double strength = isHeld ? 0.55 : isTouched ? 0.42 : 0.28;
  paintBox(painter, slider, {withAlpha(colorOf(bar, QPalette::Text), strength), {}, width / 2});
}

// ---- headers, bars and menus ----

/// Qt's own separator is invisible on a dark design.
bool paintMenuSeparator(const QStyleOption& option, QPainter& painter) {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
  if (item == nullptr || item->menuItemType != QStyleOptionMenuItem::Separator) return false;
  const QRectF line(item->rect.x() + 6, QRectF(item->rect).center().y(), item->rect.width() - 12,
                    hairline(painter));
  painter.fillRect(snapped(painter, line), colorOf(option, QPalette::Mid));
  return true;
}

void paintHeaderSection(const QStyleOption& option, QPainter& painter, bool hasDivider) {
  const QColor text = colorOf(option, QPalette::WindowText);
  const QColor ground =
      mixed(colorOf(option, QPalette::Base), colorOf(option, QPalette::Window), 0.7);
  const double touch = has(option, QStyle::State_Sunken) ? 0.12 : isHovered(option) ? 0.06 : 0;
  painter.fillRect(option.rect, mixed(ground, text, touch));
  const QColor line = colorOf(option, QPalette::Mid);
  const QRectF area(option.rect);
  paintEdges(painter, area, Qt::BottomEdge, line);
  if (hasDivider)
    paintEdges(painter, area.adjusted(0, 5, 0, -5),
               option.direction == Qt::LeftToRight ? Qt::RightEdge : Qt::LeftEdge, line);
}

/// Qt calls an ascending order SortDown; here the chevron points to where values grow.
void paintSortArrow(const QStyleOption& option, QPainter& painter) {
  const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
  const bool isUp = header != nullptr && header->sortIndicator == QStyleOptionHeader::SortDown;
  paintChevron(painter, QRectF(option.rect).translated(0, 3), isUp ? Qt::UpArrow : Qt::DownArrow,
               colorOf(option, QPalette::Link), 6);
}

void paintSeparator(const QStyleOption& option, QPainter& painter) {
  const QRectF area = QRectF(option.rect);
  const QPointF middle = area.center();
  const qreal thin = hairline(painter);
  const QRectF line = has(option, QStyle::State_Horizontal)
                          ? QRectF(middle.x(), area.y() + 4, thin, area.height() - 8)
                          : QRectF(area.x() + 4, middle.y(), area.width() - 8, thin);
  painter.fillRect(snapped(painter, line), colorOf(option, QPalette::Mid));
}

}  // namespace

bool opensMenu(const QStyleOptionToolButton& button) {
  return (button.features & QStyleOptionToolButton::HasMenu) &&
         !(button.features & QStyleOptionToolButton::MenuButtonPopup);
}

bool paintPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
                    const QWidget* widget) {
  const QRectF area(option.rect);
  const QColor line = colorOf(option, QPalette::Mid);
  const QColor text = colorOf(option, QPalette::WindowText);
  switch (element) {
    case QStyle::PE_PanelButtonCommand:
      return paintPushPanel(option, painter), true;
    case QStyle::PE_FrameDefaultButton:
    case QStyle::PE_FrameStatusBarItem:
      return true;
    case QStyle::PE_PanelLineEdit:
    case QStyle::PE_FrameLineEdit:
      return paintLineEdit(option, painter, widget), true;
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck:
      return paintIndicator(option, painter, false), true;
    case QStyle::PE_IndicatorRadioButton:
      return paintIndicator(option, painter, true), true;
    case QStyle::PE_IndicatorToolBarSeparator:
      return paintSeparator(option, painter), true;
    case QStyle::PE_IndicatorHeaderArrow:
      return paintSortArrow(option, painter), true;
    case QStyle::PE_IndicatorArrowUp:
      return paintChevron(painter, area, Qt::UpArrow, text), true;
    case QStyle::PE_IndicatorArrowDown:
      return paintChevron(painter, area, Qt::DownArrow, text), true;
    case QStyle::PE_IndicatorArrowLeft:
      return paintChevron(painter, area, Qt::LeftArrow, text), true;
    case QStyle::PE_IndicatorArrowRight:
      return paintChevron(painter, area, Qt::RightArrow, text), true;
    case QStyle::PE_FrameGroupBox:
      return paintBox(painter, area, {{}, line, 6}), true;
    case QStyle::PE_Frame:
      return paintEdges(painter, area, kAllEdges, line), true;
    case QStyle::PE_FrameMenu:
      return paintEdges(painter, area, kAllEdges, colorOf(option, QPalette::Dark)), true;
    case QStyle::PE_PanelStatusBar:
      return paintEdges(painter, area, Qt::TopEdge, line), true;
    default:
      return false;
  }
}

bool paintControl(const QStyle& style, QStyle::ControlElement element, const QStyleOption& option,
                  QPainter& painter, const QWidget* widget) {
  switch (element) {
    case QStyle::CE_HeaderSection:
      return paintHeaderSection(option, painter, true), true;
    case QStyle::CE_HeaderEmptyArea:
      return paintHeaderSection(option, painter, false), true;
    case QStyle::CE_MenuItem:
      return paintMenuSeparator(option, painter);
    case QStyle::CE_SizeGrip:
      return true;  // the edges of a window can be dragged anyway
    case QStyle::CE_ToolBar:
      return paintEdges(painter, QRectF(option.rect), Qt::BottomEdge,
                        colorOf(option, QPalette::Mid)),
             true;
    case QStyle::CE_PushButtonLabel:
      return paintPushLabel(style, option, painter, widget);
    default:
      return false;
  }
}

bool paintComplex(const QStyle& style, QStyle::ComplexControl control,
                  const QStyleOptionComplex& option, QPainter& painter, const QWidget* widget) {
  if (const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(&option))
    return paintToolButton(style, *button, painter, widget), true;
  if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(&option))
    return paintComboBox(style, *combo, painter, widget), true;
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
  if (bar == nullptr || control != QStyle::CC_ScrollBar) return false;
  return paintScrollBar(style, *bar, painter, widget), true;
}

}  // namespace ombrelian::ui
