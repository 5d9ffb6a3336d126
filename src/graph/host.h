#pragma once

#include "engine/faults.h"
#include "view3d/rgb.h"

namespace kelvane {

// What a draw needs from the program around it: the main window, a command, or a test.
class DrawHost {
public:
    virtual ~DrawHost() = default;

    // Shows a message box and waits until it is closed.
    virtual void ShowMessage(const Message& message) = 0;

    // Shows the progress of the current equation, 0 to 1.
    virtual void PercentGo(double fraction) = 0;

    // Shows "0%".
    virtual void InitPerc() = 0;

    // Sets the colour of the progress display.
    virtual void SetProgressColor(Rgb color) = 0;

    // Lets the window handle what has happened meanwhile; called a hundred times a second.
    virtual void Breathe() = 0;

    // Is there a user who watches the drawing grow? Then ShowSoFar is called now and then.
    virtual bool IsWatched() const = 0;

    // Makes visible what has been drawn so far.
    virtual void ShowSoFar() = 0;

    // May the draw go on? False as soon as a stop is requested; asked after every block of samples,
    // which takes a few milliseconds at the most.
    virtual bool MayGoOn() const = 0;
};

class Clock {
public:
    virtual ~Clock() = default;

    // Seconds since a fixed moment; never runs backwards.
    virtual double Seconds() const = 0;
};

} // namespace kelvane
