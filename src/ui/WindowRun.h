#pragma once

namespace ombrelian::ui {

/// Runs the program with its window and returns the exit status; needs a display.
int runWindow(int argc, char** argv);

/// Gives an application the style, the icon and the standard texts of Qt in the language
/// `languageId`.
void dressApplication(int languageId);

}  // namespace ombrelian::ui
