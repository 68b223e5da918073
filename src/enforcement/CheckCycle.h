// SPDX-License-Identifier: MIT
#pragma once

class Engine;

// TkCheck: one pass of the enforcement engine per tick of the check timer. It refuses to
// run while the server still owes a reply, counts itself, asks for the player list
// ("status" on every StatusInterval-th check, the cheap "getStatus" on the others),
// lets the queue send what was queued and refreshes the window.
class CheckCycle
{
public:
    explicit CheckCycle(Engine &engine) : m_engine(engine) {}

    void TkCheck();
    // The command of the check with this count.
    static const char *statusCommandFor(int checks, int StatusInterval);

private:
    Engine &m_engine;
};
