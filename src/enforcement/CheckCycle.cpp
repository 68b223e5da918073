// SPDX-License-Identifier: MIT
#include "enforcement/CheckCycle.h"

#include "core/Engine.h"
#include "link/CommandQueue.h"
#include "players/PlayerGrid.h"
#include "players/StatusCycle.h"

const char *CheckCycle::statusCommandFor(int checks, int StatusInterval)
{
    // A stored interval below 1 counts as 1: every check asks for the full table.
    const int interval = StatusInterval < 1 ? 1 : StatusInterval;
    return checks % interval == 0 ? "status" : "getStatus";
}

void CheckCycle::TkCheck()
{
    Engine &e = m_engine;
    if (e.settings.SaveLog)
        e.log().WriteLog(QStringLiteral("Running a TK check."), true);
    if (e.waitingForServer) {
        if (e.settings.SaveLog)
            e.log().WriteLog(QStringLiteral("...skipped check, still waiting for server."));
        return;
    }
    e.checkRunning = true;
    ++e.stats.checks;

    const QString cmd = QString::fromLatin1(statusCommandFor(e.stats.checks, e.settings.StatusInterval));
    if (!e.statusCycle().sendStatus(cmd)) {
        if (e.settings.SaveLog)
            e.log().WriteLog(QStringLiteral("...couldn't get good status for TK check."));
        e.checkRunning = false;
        return;
    }
    e.queue().SendCommands();
    e.grid().RefreshGrid();
    e.checkRunning = false;
}
