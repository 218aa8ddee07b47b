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
/// the first object is opened.
void revealInFileManager(const std::vector<Text>& paths);

/// Shows the file manager's dialog of properties, if it has one.
void showProperties(const std::vector<Text>& paths);

}  // namespace ombrelian::ui
