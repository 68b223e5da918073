// SPDX-License-Identifier: MIT
#pragma once

// What a tick of timKickcheck runs: one check, and whether a check is under way. The
// engine runs its check cycle; a test can build the engine with a routine of its own.
class CheckRoutine
{
public:
    virtual ~CheckRoutine() = default;

    virtual void TkCheck() = 0;
    // checkRunning: a check has passed its guard and has not ended. Only the routine sets it.
    virtual bool checkRunning() const = 0;
};
