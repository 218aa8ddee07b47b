// The program with the window; `ombrelian` starts it if there is a display.

#include "ui/WindowRun.h"

int main(int argc, char** argv) { return ombrelian::ui::runWindow(argc, argv); }
