#pragma once

#include <QStringList>

#include "cli/arguments.h"

namespace kelvane {

// Runs "kelvane COMMAND ...", without a display, and gives the program's exit code.
int RunCommand(int argc, char** argv);

// The commands. The arguments begin with the command's own name.
//
// draw: the equations drawn into a picture file. Written whole or not at all.
ExitCode RunDraw(const QStringList& arguments);

// values: a table of x and y, or x, y and z, as comma-separated text on standard output.
ExitCode RunValues(const QStringList& arguments);

// check: says nothing when the equations can be drawn, else what is wrong.
ExitCode RunCheck(const QStringList& arguments);

// text: the equations of a file as plain lines. new: a file from plain lines.
ExitCode RunText(const QStringList& arguments);
ExitCode RunNew(const QStringList& arguments);

// Prints a message box's content as "TITLE: TEXT" on standard error.
void PrintMessage(const Message& message);

} // namespace kelvane
