#pragma once

#include <QString>

#include "frame/Session.h"

namespace ombrelian::ui {

/// The title of the window: the sources, whether they are incomplete, the program and its version.
QString windowTitle(const Session& session);

}  // namespace ombrelian::ui
