// SPDX-License-Identifier: MIT
#include "enforcement/CheckCycle.h"

#include "core/ActivityLog.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Waits.h"
#include "enforcement/ImpersonatorPolicy.h"
#include "enforcement/NamePolicies.h"
#include "enforcement/PolicyContext.h"
#include "enforcement/PingPolicy.h"
#include "enforcement/RangePolicies.h"
#include "enforcement/ScorePolicies.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"
#include "messages/ListFiles.h"
#include "players/PlayerGrid.h"
#include "players/StatusCycle.h"

CheckCycle::CheckCycle(const Settings &settings, Stats &stats, const ListFiles &lists, CommandQueue &queue,
                       RconLink &link, StatusCycle &status, PolicyContext &policies, PlayerGrid &grid, ActivityLog &log,
                       Clock &clock)
    : m_settings(settings)
    , m_stats(stats)
    , m_lists(lists)
    , m_queue(queue)
    , m_link(link)
    , m_status(status)
    , m_policies(policies)
    , m_grid(grid)
    , m_log(log)
    , m_clock(clock)
{
}

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
    const Settings &s = m_settings;
    const ListFiles &lists = m_lists;
    if (!s.Warn && !s.NameCheck && !s.KickPing && !s.KickTeleFrag) {
        const qint32 top = lists.bannedNameTop();
        for (qint32 i = 0; i <= top; ++i) {
            if (!m_queue.AddSrvCmd(forceKickCommand(lists.bannedNames().at(i)), true, true, true, 0)
                && s.SaveLog)
                m_log.WriteLog(QStringLiteral("Error: TKCheck couldn' add name for Forced Kick check"));
        }
        m_queue.SendCommands();
        if (s.logVerbose())
            m_log.WriteLog(QStringLiteral("...force kicking."));
        m_checkRunning = false;
        Q_EMIT ended(m_stats.checks, End::ForceKicked);
        return false;
    }
    const qint32 top = lists.bannedNameTop();
    for (qint32 i = 0; i <= top; ++i) {
        m_link.UDPClient_SendMessage(forceKickCommand(lists.bannedNames().at(i)), true, true);
        PauseNoEvents(m_clock, s.CommandDelay);
    }
    if (s.logVerbose())
        m_log.WriteLog(QStringLiteral("...force kicking."));
    return true;
}

void CheckCycle::TkCheck()
{
    const Settings &s = m_settings;
    if (s.SaveLog)
        m_log.WriteLog(QStringLiteral("Running a TK check."), true);
    if (m_queue.waitingForServer()) {
        if (s.SaveLog)
            m_log.WriteLog(QStringLiteral("...skipped check, still waiting for server."));
        Q_EMIT ended(m_stats.checks, End::Skipped);
        return;
    }
    m_checkRunning = true;
    ++m_stats.checks;

    if (s.KickBanned && s.ForceKick && !forceKick())
        return;

    const QString cmd = QString::fromLatin1(statusCommandFor(m_stats.checks, s.StatusInterval));
    if (!m_status.sendStatus(cmd)) {
        if (s.SaveLog)
            m_log.WriteLog(QStringLiteral("...couldn't get good status for TK check."));
        m_checkRunning = false;
        Q_EMIT ended(m_stats.checks, End::NoGoodStatus);
        return;
    }
    runPolicies(m_policies);
    m_queue.SendCommands();
    m_grid.RefreshGrid();
    m_checkRunning = false;
    Q_EMIT ended(m_stats.checks, End::Done);
}
