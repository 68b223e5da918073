// SPDX-License-Identifier: MIT
#pragma once

#include "enforcement/CheckRoutine.h"

#include <QString>

class Engine;
struct PolicyContext;

// TkCheck: one pass of the enforcement engine per tick of the check timer. It refuses to
// run while the server still owes a reply, counts itself, kicks the banned names blind
// when ForceKick says so, asks for the player list ("status" on every StatusInterval-th
// check, the cheap "getStatus" on the others), runs the policies in their fixed order,
// lets the queue send what they queued and refreshes the window.
class CheckCycle final : public CheckRoutine
{
public:
    explicit CheckCycle(Engine &engine) : m_engine(engine) {}

    void TkCheck() override;
    bool checkRunning() const override { return m_checkRunning; }
    // The command of the check with this count.
    static const char *statusCommandFor(int checks, int StatusInterval);
    // The nine policies in their order, each behind its setting as it stands now.
    static void runPolicies(PolicyContext &c);
    static QString forceKickCommand(const QString &bannedName);

private:
    // False when the cycle ends with the force-kick (the short road).
    bool forceKick();

    Engine &m_engine;
    bool m_checkRunning = false;
};
