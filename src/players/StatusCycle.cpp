// SPDX-License-Identifier: MIT
#include "players/StatusCycle.h"

#include "core/ActivityLog.h"
#include "core/OutputPane.h"
#include "core/RunControl.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/View.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"
#include "players/PlayerGrid.h"
#include "players/PlayerState.h"
#include "players/ScoreReader.h"

StatusCycle::StatusCycle(CommandQueue &queue, const RconLink &link, ScoreReader &scores, PlayerGrid &grid,
                         const PlayerState &players, const Stats &stats, const Settings &settings, OutputPane &pane,
                         ActivityLog &log, View &view, const RunControl &run)
    : m_queue(queue)
    , m_link(link)
    , m_scores(scores)
    , m_grid(grid)
    , m_players(players)
    , m_stats(stats)
    , m_settings(settings)
    , m_pane(pane)
    , m_log(log)
    , m_view(view)
    , m_run(run)
{
}

QString StatusCycle::trayTip(const Stats &s)
{
    return QStringLiteral("Players:%1/%2\r\nMap:").arg(s.players).arg(s.totalplayers) + s.map
        + QStringLiteral("\r\nChecks:%1\r\nKicks:%2\r\nBans:%3")
              .arg(s.checks)
              .arg(s.pingkicks + s.tkkicks + s.bankicks)
              .arg(s.banadds);
}

bool StatusCycle::sendStatus(const QString &cmd)
{
    const bool bRconCmd = cmd == u"status";
    if (!m_queue.AddSrvCmd(cmd, true, true, bRconCmd, 0)) {
        if (m_settings.SaveLog)
            m_log.WriteLog(QStringLiteral("Error: sendStatus couldn't add status command to queue."));
        return false;
    }
    if (m_run.unloaded() || !m_link.serverAnswered())
        return false;
    switch (m_scores.GetScores(cmd)) {
    case 1:
        m_grid.RefreshGrid();
        m_view.setTrayTip(trayTip(m_stats));
        return true;
    case 0:
        m_pane.append(QStringLiteral("\r\nDetected impersonator - running a full status to trap IPs\r\n"));
        return sendStatus(QStringLiteral("status"));
    default:
        if (m_players.currentCount == 0)
            m_grid.RefreshGrid();
        return false;
    }
}
