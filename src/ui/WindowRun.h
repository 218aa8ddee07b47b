#pragma once

namespace ombrelian::ui {

/// The program with its window, from the arguments to the exit status; needs a display.
int runWindow(int argc, char** argv);

/// Gives an application the style, the icon and the standard texts of Qt in the language in force.
void dressApplication(int languageId);

}  // namespace ombrelian::ui
