#pragma once

#include <QColor>
#include <QPalette>
#include <array>

#include "support/Text.h"

namespace ombrelian::ui {

/// Designs are numbered from 0, as `ToolbarTheme` stores them.
inline constexpr int kThemes = 10;

/// The colours of a design. In the palette AlternateBase is the second band, Mid the hairline,
/// Midlight a hovered background, Dark the outline of a control, Link the accent and BrightText the
/// text of errors, so that a style or an icon needs the palette alone.
struct Theme {
  QPalette palette;
  QColor accent;
  std::array<QColor, 2> band;  ///< backgrounds of groups of rows, in turns; the first is Base
  QColor errorText;            ///< readable on both bands and on a selected row
  QColor bar;                  ///< the filled part of a percent bar; Text is readable on it
  QColor barBackground;        ///< the rest of the bar
  QColor hairline;             ///< grid lines and the edges of panes
  bool isDark = false;
};

/// The design `number`, 0 to kThemes - 1; any other gives the default. Some designs are always
/// light or always dark, the others follow the desktop.
Theme makeTheme(int number, bool desktopIsDark);

/// What the user calls the design `number`, 0 to kThemes - 1, in the language in force.
Text themeName(int number);

/// Gives the whole application the colours of `theme`, at once.
void applyTheme(const Theme& theme);

/// The contrast of two opaque colours as WCAG 2 defines it: from 1 (none) to 21.
double contrast(const QColor& one, const QColor& other);

/// `from` with `part` (0 to 1) of `to` mixed in; opaque.
QColor mixed(const QColor& from, const QColor& to, double part);

}  // namespace ombrelian::ui
