#pragma once

#include <QString>

namespace kelvane {

// The folder of the program's own files: the current directory when it is first asked for, with the
// platform's separator at its end.
const QString& AppFolder();

// Whether there is a screen that a window could be shown on.
bool HasDisplay();

// Opens the main window, behind a splash, with an equation file unless its path is empty, and runs
// until it is closed; gives the program's exit code.
int RunWindow(int argc, char** argv, const QString& file);

} // namespace kelvane
