#pragma once

#include <QWidget>

#include "settings/FormPosition.h"

namespace ombrelian::ui {

/// Moves a window to the position that was stored as `form`, or to the middle of the screen if none
/// was stored. With `positionOnly` the window keeps its size. Call this before the window is shown.
void placeForm(QWidget& window, TextView form, bool positionOnly, const IniStore& file);

/// Stores the position and size of the window as `form`.
void storeForm(const QWidget& window, TextView form, IniStore& file);

}  // namespace ombrelian::ui
