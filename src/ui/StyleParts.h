#pragma once

#include <QStyleOption>

class QPainter;
class QWidget;

namespace ombrelian::ui {

// The parts that `Style` paints itself. A function returns false if Qt's own style should paint.

bool paintPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
                    const QWidget* widget);

/// `style` gives the rectangles of the parts and paints the labels.
bool paintControl(const QStyle& style, QStyle::ControlElement element, const QStyleOption& option,
                  QPainter& painter, const QWidget* widget);
bool paintComplex(const QStyle& style, QStyle::ComplexControl control,
                  const QStyleOptionComplex& option, QPainter& painter, const QWidget* widget);

/// Whether a click anywhere on the button opens its menu. Such a button has a chevron.
bool opensMenu(const QStyleOptionToolButton& button);

/// The space for that chevron, right of the label.
inline constexpr int kMenuChevronWidth = 10;

}  // namespace ombrelian::ui
