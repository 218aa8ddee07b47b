#pragma once

#include <QUrl>
#include <vector>

#include "support/Text.h"

namespace ombrelian::ui {

/// A name is bytes, and a URL has to say them as they are, whatever they mean.
QUrl urlOf(TextView path);

/// Opens a file or folder in the program that the desktop has for it. False: there is none, or the
/// desktop does not answer.
bool openFile(TextView path);

/// Shows the objects in the desktop's file manager, selected where it can do that; a file manager
/// that cannot opens their folders.
void revealInFileManager(const std::vector<Text>& paths);

/// Asks the file manager for its dialog of properties; nothing happens where it has none.
void showProperties(const std::vector<Text>& paths);

}  // namespace ombrelian::ui
