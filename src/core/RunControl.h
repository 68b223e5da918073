// SPDX-License-Identifier: MIT
#pragma once

// The run switch and the orderly stop as the parts below the engine meet them. The engine
// implements it and alone sets its two flags; the parts read them, wait through Pause, and
// the Other Command dialog presses the switch.
class RunControl
{
public:
    virtual ~RunControl() = default;

    // engineRunning: Start has been pressed and Stop has not.
    virtual bool engineRunning() const = 0;
    // The orderly stop has run: socket and log are closed, and a routine still unwinding
    // inside a wait sends, logs and waits nothing more.
    virtual bool unloaded() const = 0;
    // Waits with events running; ends at once when the window has unloaded.
    virtual void Pause(double seconds) const = 0;
    // The run switch: Start when the engine is stopped, else Stop.
    virtual void cmdStart_Click() = 0;
};
