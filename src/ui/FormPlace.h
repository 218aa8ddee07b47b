#pragma once

#include <QWidget>

#include "settings/FormPosition.h"

namespace ombrelian::ui {

/// Puts a window where it stood when it was stored as `form`; with `positionOnly` it keeps its
/// size. One that is not known is centred. To be called before it is shown.
void placeForm(QWidget& window, TextView form, bool positionOnly, const IniStore& file);

/// Stores where the window stands.
void storeForm(const QWidget& window, TextView form, IniStore& file);

}  // namespace ombrelian::ui
