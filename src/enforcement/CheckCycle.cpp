// SPDX-License-Identifier: MIT
#include "enforcement/CheckCycle.h"

#include "core/Engine.h"
#include "core/Waits.h"
#include "enforcement/ImpersonatorPolicy.h"
#include "enforcement/NamePolicies.h"
#include "enforcement/PingPolicy.h"
#include "enforcement/RangePolicies.h"
#include "enforcement/ScorePolicies.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"
#include "players/PlayerGrid.h"
#include "players/StatusCycle.h"

const char *CheckCycle::statusCommandFor(int checks, int StatusInterval)
{
    // A stored interval below 1 counts as 1: every check asks for the full table.
    const int interval = StatusInterval < 1 ? 1 : StatusInterval;
    return checks % interval == 0 ? "status" : "getStatus";
}

QString CheckCycle::forceKickCommand(const QString &bannedName)
{
    return QStringLiteral("kick \"") + bannedName + u'"';
}

void CheckCycle::runPolicies(PolicyContext &c)
{
    const Settings &s = c.settings;
    if (s.KickTK)
        ScorePolicies::kickTkPlayers(c);
    if (s.KickBanned)
        NamePolicies::kickBannedPlayers(c);
    if (s.KickTeleFrag)
        ScorePolicies::kickTeleFragPlayers(c);
    if (s.KickPing)
        PingPolicy::kickSlowPlayers(c);
    if (s.QPort)
        RangePolicies::kickQPortPlayers(c);
    if (s.Rate)
        RangePolicies::kickRatePlayers(c);
    if (s.NameCheck)
        NamePolicies::kickBadNamePlayers(c);
    if (s.KickImpersonators)
        ImpersonatorPolicy::kickImpersonators(c);
    if (s.Warn)
        ScorePolicies::warnPlayers(c);
}

// Every banned name, whether on the server or not: not every server lists every player.
// Through the queue when no other policy needs this cycle's table (the short road),
// else at once past it with every event held back.
bool CheckCycle::forceKick()
{
    Engine &e = m_engine;
    const Settings &s = e.settings;
    const ListFiles &lists = e.lists();
    if (!s.Warn && !s.NameCheck && !s.KickPing && !s.KickTeleFrag) {
        const qint32 top = lists.bannedNameTop();
        for (qint32 i = 0; i <= top; ++i) {
            if (!e.queue().AddSrvCmd(forceKickCommand(lists.bannedNames().at(i)), true, true, true, 0)
                && s.SaveLog)
                e.log().WriteLog(QStringLiteral("Error: TKCheck couldn' add name for Forced Kick check"));
        }
        e.queue().SendCommands();
        if (s.logVerbose())
            e.log().WriteLog(QStringLiteral("...force kicking."));
        m_checkRunning = false;
        return false;
    }
    const qint32 top = lists.bannedNameTop();
    for (qint32 i = 0; i <= top; ++i) {
        e.link().UDPClient_SendMessage(forceKickCommand(lists.bannedNames().at(i)), true, true);
        PauseNoEvents(e.clock(), s.CommandDelay);
    }
    if (s.logVerbose())
        e.log().WriteLog(QStringLiteral("...force kicking."));
    return true;
}

void CheckCycle::TkCheck()
{
    Engine &e = m_engine;
    if (e.settings.SaveLog)
        e.log().WriteLog(QStringLiteral("Running a TK check."), true);
    if (e.queue().waitingForServer()) {
        if (e.settings.SaveLog)
            e.log().WriteLog(QStringLiteral("...skipped check, still waiting for server."));
        return;
    }
    m_checkRunning = true;
    ++e.stats.checks;

    if (e.settings.KickBanned && e.settings.ForceKick && !forceKick())
        return;

    const QString cmd = QString::fromLatin1(statusCommandFor(e.stats.checks, e.settings.StatusInterval));
    if (!e.statusCycle().sendStatus(cmd)) {
        if (e.settings.SaveLog)
            e.log().WriteLog(QStringLiteral("...couldn't get good status for TK check."));
        m_checkRunning = false;
        return;
    }
    runPolicies(e.policies());
    e.queue().SendCommands();
    e.grid().RefreshGrid();
    m_checkRunning = false;
}
