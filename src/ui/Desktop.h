#pragma once

#include <QUrl>
#include <vector>

#include "support/Text.h"

namespace ombrelian::ui {

/// The URL of a path, which keeps the bytes of its names even if they are not UTF-8.
QUrl urlOf(TextView path);

/// Opens a file or folder with the desktop's program for it. Returns false if there is none, or if
/// the desktop does not answer.
bool openFile(TextView path);

/// Shows the objects, selected, in the desktop's file manager. If it cannot select, the folder of
/// the first object is opened. Returns false if nothing was opened.
bool revealInFileManager(const std::vector<Text>& paths);

/// Shows the file manager's dialog of properties. Returns false if it has none.
bool showProperties(const std::vector<Text>& paths);

}  // namespace ombrelian::ui
