#pragma once

#include <QIcon>

namespace ombrelian::ui {

/// The icon named like the file `icons/<name>.svg`; asserts that there is one. It is drawn for
/// exactly the requested device pixels, in the current colours of the application's palette, so
/// that a new palette is visible with the next paint: WindowText for lines, Link for the accent,
/// BrightText for deletion and errors. Disabled icons have the colour of disabled text; icons of
/// selected rows have HighlightedText if that differs from Text. Call this in the interface thread.
QIcon icon(const char* name);

}  // namespace ombrelian::ui
