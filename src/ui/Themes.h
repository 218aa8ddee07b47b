#pragma once

#include <QColor>
#include <QPalette>

namespace ombrelian::ui {

/// The number of designs, which are numbered from 0 as in `ToolbarTheme`.
inline constexpr int kThemes = 10;

/// The colours of a design. In the palette AlternateBase is the background of every second group of
/// rows, Mid the hairline, Dark the outline of a control, Link the accent and BrightText the text
/// of errors, so that a style, a list or an icon needs only the palette.
struct Theme {
  QPalette palette;
  bool isDark = false;
};

/// The design `number`, 0 to kThemes - 1; any other number gives the default. Some designs are
/// always light or always dark, the others follow the desktop.
Theme makeTheme(int number, bool desktopIsDark);

/// Gives the whole application the colours of `theme`.
void applyTheme(const Theme& theme);

/// The filled part and the rest of a percent bar; Text is readable on both.
QColor barColor(const QPalette& palette);
QColor barBackground(const QPalette& palette);

/// The contrast of two opaque colours as WCAG 2 defines it: from 1 (none) to 21.
double contrast(const QColor& one, const QColor& other);

/// `from` with `part` (0 to 1) of `to` mixed in; opaque.
QColor mixed(const QColor& from, const QColor& to, double part);

}  // namespace ombrelian::ui
