#pragma once

#include "support/Text.h"

namespace ombrelian {

/// Puts this program into the menus that file managers show for folders (mode 1), or takes it out
/// of them (any other mode). Returns the text of the error of the step that failed; else an empty
/// text. What is there already for this program is not written again. A file of the same name that
/// this procedure did not make is left alone.
///
/// The files are in the user's folder for data: a desktop entry (Desktop Entry Specification 1.5),
/// a service menu of KDE, an action of Nemo and a script of Nautilus. Each of them remembers how
/// many folders were made for it; these are removed with it.
Text Kontextmenu(int mode);

/// The same for any program (absolute path) and any folder for data.
Text setShellVerb(bool isWanted, const Text& program, const Text& folder);

}  // namespace ombrelian
