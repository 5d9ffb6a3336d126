#pragma once

namespace kelvane {

// Whether there is a screen that a window could be shown on.
bool HasDisplay();

// Opens the main window, behind a splash, and runs until it is closed; gives the program's exit
// code.
int RunWindow(int argc, char** argv);

} // namespace kelvane
