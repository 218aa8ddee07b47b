#pragma once

#include <QIcon>

namespace ombrelian::ui {

/// The icon named like the file `icons/<name>.svg`; asserts that there is one. It is drawn for
/// exactly the device pixels that are asked for, in the colours of the application's palette at
/// that moment: WindowText for lines, Link for the accent, BrightText for what destroys or failed.
/// Disabled icons take the disabled text; icons of selected rows take HighlightedText where that
/// differs from Text. So a new palette shows with the next paint. For the interface thread.
QIcon icon(const char* name);

}  // namespace ombrelian::ui
