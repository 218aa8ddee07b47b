#pragma once

#include <QMenuBar>

#include "ui/CommandSet.h"
#include "ui/PaneArea.h"

namespace ombrelian::ui {

/// Fills the menu bar with the commands of all bars, so that the keyboard reaches them.
void makeMenus(QMenuBar& bar, CommandSet& main, CommandSet& header, Panes& panes, PaneArea& area);

}  // namespace ombrelian::ui
