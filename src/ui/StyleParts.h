#pragma once

#include <QColor>
#include <QStyleOption>

class QPainter;
class QWidget;

namespace ombrelian::ui {

inline bool has(const QStyleOption& option, QStyle::StateFlag flag) { return option.state & flag; }

inline bool isEnabled(const QStyleOption& option) { return has(option, QStyle::State_Enabled); }

inline bool isHovered(const QStyleOption& option) {
  return isEnabled(option) && has(option, QStyle::State_MouseOver);
}

inline QColor colorOf(const QStyleOption& option, QPalette::ColorRole role) {
  return option.palette.color(role);
}

// The parts that `Style` paints itself. Each returns false where the base style is to paint.

bool paintPrimitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
                    const QWidget* widget);

/// `style` is asked for rectangles and labels.
bool paintControl(const QStyle& style, QStyle::ControlElement element, const QStyleOption& option,
                  QPainter& painter, const QWidget* widget);
bool paintComplex(const QStyle& style, QStyle::ComplexControl control,
                  const QStyleOptionComplex& option, QPainter& painter, const QWidget* widget);

/// The ground of menus and of what else lies above the window.
QColor menuGround(const QPalette& palette);

/// The width of the ring around what has the focus, and the radius of its corners.
inline constexpr qreal kFocusWidth = 1.6;
inline constexpr qreal kControlRadius = 4;
/// Space for the chevron of a tool button that opens a menu.
inline constexpr int kMenuChevronWidth = 10;
/// The parts of a row in a menu, from the left: margin, check mark or icon, text.
inline constexpr int kMenuItemMargin = 6;
inline constexpr int kMenuIconColumn = 24;
inline constexpr int kMenuShortcutGap = 24;

}  // namespace ombrelian::ui
