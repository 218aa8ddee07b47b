#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "ui/StylePaint.h"
#include "ui/StyleParts.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr qreal kSliderWidth = 6;
constexpr qreal kSliderWidthHovered = 8;

// ---- tool buttons ----

bool opensMenuAsAWhole(const QStyleOptionToolButton& button) {
  return (button.features & QStyleOptionToolButton::HasMenu) &&
         !(button.features & QStyleOptionToolButton::MenuButtonPopup) &&
         !(button.features & QStyleOptionToolButton::Arrow);
}

constexpr int kIconGap = 6;
constexpr int kLineGap = 3;
constexpr int kChevronGap = 3;

/// Where the parts of a label lie; a part that is not there is empty.
struct LabelPlaces {
  QRect icon;
  QRect text;
  QRect chevron;
};

/// The label stands in the middle of `area`; the chevron follows the text, or the icon alone.
LabelPlaces placeLabel(const QStyleOptionToolButton& button, const QRect& area) {
  const bool showsIcon = !button.icon.isNull() && button.toolButtonStyle != Qt::ToolButtonTextOnly;
  const bool showsText =
      !button.text.isEmpty() && (button.toolButtonStyle != Qt::ToolButtonIconOnly || !showsIcon);
  const QSize icon = showsIcon ? button.iconSize : QSize(0, 0);
  QSize text = showsText ? button.fontMetrics.size(Qt::TextShowMnemonic, button.text) : QSize(0, 0);
  const int chevron = opensMenuAsAWhole(button) ? kMenuChevronWidth : 0;
  text.setWidth(std::min(text.width(), area.width() - chevron));

  const bool isStacked =
      showsIcon && showsText && button.toolButtonStyle == Qt::ToolButtonTextUnderIcon;
  LabelPlaces places;
  if (isStacked) {
    const int height = icon.height() + kLineGap + text.height();
    const int top = area.y() + (area.height() - height) / 2;
    const int left = area.x() + (area.width() - text.width() - chevron) / 2;
    places.icon = QRect(QPoint(area.x() + (area.width() - icon.width()) / 2, top), icon);
    places.text = QRect(QPoint(left, places.icon.bottom() + 1 + kLineGap), text);
  } else {
    const int gap = showsIcon && showsText ? kIconGap : 0;
    const int width = icon.width() + gap + text.width() + chevron;
    const int left = area.x() + std::max((area.width() - width) / 2, 0);
    places.icon = QRect(QPoint(left, area.y() + (area.height() - icon.height()) / 2), icon);
    places.text = QRect(left + icon.width() + gap, area.y(), text.width(), area.height());
  }
  const QRect& before = showsText ? places.text : places.icon;
  places.chevron =
      QRect(before.right() + 1 + kChevronGap, before.y(), chevron - kChevronGap, before.height());
  return places;
}

void paintButtonLabel(const QStyle& style, const QStyleOptionToolButton& button, const QRect& area,
                      QPainter& painter) {
  const LabelPlaces places = placeLabel(button, area);
  const auto place = [&](const QRect& logical) {
    return QStyle::visualRect(button.direction, area, logical);
  };
  const QColor ink = colorOf(button, QPalette::WindowText);
  if (!places.icon.isEmpty())
    style.drawItemPixmap(
        &painter, place(places.icon), Qt::AlignCenter,
        button.icon.pixmap(button.iconSize, painter.device()->devicePixelRatioF(),
                           isEnabled(button) ? QIcon::Normal : QIcon::Disabled,
                           has(button, QStyle::State_On) ? QIcon::On : QIcon::Off));
  if (!places.text.isEmpty()) {
    painter.setFont(button.font);
    painter.setPen(ink);
    painter.drawText(place(places.text),
                     Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine, button.text);
  }
  if (opensMenuAsAWhole(button))
    paintChevron(painter, QRectF(place(places.chevron)).translated(0, 1), Qt::DownArrow,
                 withAlpha(ink, 0.7), 6);
}

/// The second part of a button that does something by itself and has a menu too.
void paintMenuPart(const QStyle& style, const QStyleOptionToolButton& button, QPainter& painter,
                   const QWidget* widget) {
  const QRectF area(
      style.subControlRect(QStyle::CC_ToolButton, &button, QStyle::SC_ToolButtonMenu, widget));
  const bool isTouched = isHovered(button);
  if (isTouched || has(button, QStyle::State_On))
    paintEdges(painter, area.adjusted(0, 5, 0, -5), Qt::LeftEdge, colorOf(button, QPalette::Dark));
  paintChevron(painter, area, Qt::DownArrow, withAlpha(colorOf(button, QPalette::WindowText), 0.75),
               6);
}

void paintToolButton(const QStyle& style, const QStyleOptionToolButton& button, QPainter& painter,
                     const QWidget* widget) {
  QStyleOptionToolButton part = button;
  if (!(button.activeSubControls & QStyle::SC_ToolButton) &&
      !(button.activeSubControls & QStyle::SC_ToolButtonMenu))
    part.state &= ~QStyle::State_Sunken;
  style.drawPrimitive(QStyle::PE_PanelButtonTool, &part, &painter, widget);
  if (has(button, QStyle::State_HasFocus) && has(button, QStyle::State_KeyboardFocusChange))
    paintBox(painter, QRectF(button.rect),
             {{}, withAlpha(colorOf(button, QPalette::Link), 0.8), kControlRadius, kFocusWidth});

  const QRect area =
      style.subControlRect(QStyle::CC_ToolButton, &button, QStyle::SC_ToolButton, widget);
  if (button.features & QStyleOptionToolButton::Arrow) {
    QStyleOptionToolButton label = button;
    label.rect = area;
    style.drawControl(QStyle::CE_ToolButtonLabel, &label, &painter, widget);
  } else {
    paintButtonLabel(style, button, area, painter);
  }
  if (button.features & QStyleOptionToolButton::MenuButtonPopup)
    paintMenuPart(style, button, painter, widget);
}

// ---- fields with arrows ----

void paintFieldFrame(const QStyleOption& option, QPainter& painter, const QColor& fill) {
  const QColor line = colorOf(option, QPalette::Dark);
  paintBox(painter, QRectF(option.rect),
           {fill, isHovered(option) ? mixed(line, colorOf(option, QPalette::Text), 0.35) : line,
            kControlRadius});
  if (has(option, QStyle::State_HasFocus) && isEnabled(option))
    paintBox(painter, QRectF(option.rect),
             {{}, colorOf(option, QPalette::Link), kControlRadius, kFocusWidth});
}

void paintComboBox(const QStyle& style, const QStyleOptionComboBox& combo, QPainter& painter,
                   const QWidget* widget) {
  const QColor fill = colorOf(combo, combo.editable ? QPalette::Base : QPalette::Button);
  if (combo.frame)
    paintFieldFrame(combo, painter, fill);
  else
    painter.fillRect(combo.rect, fill);
  const QRectF arrow(
      style.subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxArrow, widget));
  paintChevron(painter, arrow, Qt::DownArrow, colorOf(combo, QPalette::ButtonText));
}

/// A step that can be taken, brighter while the mouse is on it.
void paintStep(const QStyle& style, const QStyleOptionSpinBox& spin, QStyle::SubControl part,
               QPainter& painter, const QWidget* widget) {
  const bool isUp = part == QStyle::SC_SpinBoxUp;
  const QRectF area(style.subControlRect(QStyle::CC_SpinBox, &spin, part, widget));
  const bool isPossible =
      isEnabled(spin) && (spin.stepEnabled & (isUp ? QAbstractSpinBox::StepUpEnabled
                                                   : QAbstractSpinBox::StepDownEnabled));
  if (isPossible && spin.activeSubControls == part)
    paintBox(
        painter, area.adjusted(1, 1, -1, -1),
        {withAlpha(colorOf(spin, QPalette::Text), has(spin, QStyle::State_Sunken) ? 0.16 : 0.08),
         {},
         2});
  paintChevron(
      painter, area, isUp ? Qt::UpArrow : Qt::DownArrow,
      spin.palette.color(isPossible ? QPalette::Normal : QPalette::Disabled, QPalette::Text), 6);
}

void paintSpinBox(const QStyle& style, const QStyleOptionSpinBox& spin, QPainter& painter,
                  const QWidget* widget) {
  if (spin.frame)
    paintFieldFrame(spin, painter, colorOf(spin, QPalette::Base));
  else
    painter.fillRect(spin.rect, spin.palette.brush(QPalette::Base));
  if (spin.buttonSymbols == QAbstractSpinBox::NoButtons) return;
  paintStep(style, spin, QStyle::SC_SpinBoxUp, painter, widget);
  paintStep(style, spin, QStyle::SC_SpinBoxDown, painter, widget);
}

// ---- scroll bars ----

void paintScrollBar(const QStyle& style, const QStyleOptionSlider& bar, QPainter& painter,
                    const QWidget* widget) {
  painter.fillRect(bar.rect, bar.palette.brush(QPalette::Base));
  if (bar.maximum <= bar.minimum || !isEnabled(bar)) return;
  const QRectF area(
      style.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider, widget));
  const bool isTouched = has(bar, QStyle::State_MouseOver) || has(bar, QStyle::State_Sunken);
  const bool isHeld =
      has(bar, QStyle::State_Sunken) && (bar.activeSubControls & QStyle::SC_ScrollBarSlider);
  const qreal width = isTouched ? kSliderWidthHovered : kSliderWidth;
  QRectF slider = area;
  if (bar.orientation == Qt::Horizontal)
    slider.setHeight(width);
  else
    slider.setWidth(width);
  slider.moveCenter(area.center());
  paintBox(painter, slider,
           {withAlpha(colorOf(bar, QPalette::Text), isHeld      ? 0.55
                                                    : isTouched ? 0.42
                                                                : 0.28),
            {},
            width / 2});
}

// ---- sliders ----

/// A groove that is filled up to the handle.
void paintSlider(const QStyle& style, const QStyleOptionSlider& slider, QPainter& painter,
                 const QWidget* widget) {
  constexpr qreal kGroove = 4;
  constexpr qreal kHandle = 13;
  const bool isHorizontal = slider.orientation == Qt::Horizontal;
  const QPointF at =
      QRectF(style.subControlRect(QStyle::CC_Slider, &slider, QStyle::SC_SliderHandle, widget))
          .center();
  QRectF groove(style.subControlRect(QStyle::CC_Slider, &slider, QStyle::SC_SliderGroove, widget));
  const QPointF middle = groove.center();
  isHorizontal ? groove.setHeight(kGroove) : groove.setWidth(kGroove);
  groove.moveCenter(middle);
  QRectF filled = groove;
  if (isHorizontal)
    slider.upsideDown ? filled.setLeft(at.x()) : filled.setRight(at.x());
  else
    slider.upsideDown ? filled.setTop(at.y()) : filled.setBottom(at.y());

  const QColor ink =
      isEnabled(slider) ? colorOf(slider, QPalette::Link) : colorOf(slider, QPalette::Dark);
  paintBox(painter, groove, {withAlpha(colorOf(slider, QPalette::WindowText), 0.13), {}, 2});
  paintBox(painter, filled, {ink, {}, 2});
  QRectF handle(0, 0, kHandle, kHandle);
  handle.moveCenter(isHorizontal ? QPointF(at.x(), middle.y()) : QPointF(middle.x(), at.y()));
  const bool isTouched = isHovered(slider) || has(slider, QStyle::State_HasFocus);
  paintBox(painter, handle,
           {colorOf(slider, QPalette::Base), ink, kHandle / 2, isTouched ? 3.5 : 2.5});
}

}  // namespace

bool paintComplex(const QStyle& style, QStyle::ComplexControl control,
                  const QStyleOptionComplex& option, QPainter& painter, const QWidget* widget) {
  switch (control) {
    case QStyle::CC_ToolButton:
      if (const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(&option))
        return paintToolButton(style, *button, painter, widget), true;
      return false;
    case QStyle::CC_ComboBox:
      if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(&option))
        return paintComboBox(style, *combo, painter, widget), true;
      return false;
    case QStyle::CC_SpinBox:
      if (const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(&option))
        return paintSpinBox(style, *spin, painter, widget), true;
      return false;
    case QStyle::CC_ScrollBar:
      if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option))
        return paintScrollBar(style, *bar, painter, widget), true;
      return false;
    case QStyle::CC_Slider: {
      const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(&option);
      if (slider == nullptr || slider->tickPosition != QSlider::NoTicks) return false;
      paintSlider(style, *slider, painter, widget);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace ombrelian::ui
