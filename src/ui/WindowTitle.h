#pragma once

#include <QString>

#include "frame/Session.h"

namespace ombrelian::ui {

/// The title of the window: the sources, whether they are incomplete, the program and its version.
/// `waiting` is the number of sources that still wait for their scan.
QString windowTitle(const Session& session, std::size_t waiting = 0);

}  // namespace ombrelian::ui
