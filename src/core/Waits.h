// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class Clock;

// Pause: waits `seconds` of clock time while all events keep running. It blocks in the
// event loop, never spins. A wait that spans midnight begins anew at the first moment
// noticed after it. `abandon` is asked after every wake-up: once it says true the wait
// ends at once (the program is closing and nothing is left to wait for).
void Pause(Clock &clock, double seconds, const std::function<bool()> &abandon = {});

// PauseNoEvents: the same wait with every event held back until it ends.
void PauseNoEvents(Clock &clock, double seconds);
