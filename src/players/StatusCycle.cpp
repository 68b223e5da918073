// SPDX-License-Identifier: MIT
#include "players/StatusCycle.h"

#include "core/Engine.h"
#include "core/ErrorLog.h"
#include "core/View.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"
#include "players/PlayerGrid.h"
#include "core/OutputPane.h"
#include "core/Text.h"
#include "players/PlayerMerge.h"
#include "players/StatusParser.h"

#include <exception>

StatusCycle::StatusCycle(OutputPane &pane, StatusParser &parser, PlayerMerge &merge, ErrorLog &errors,
                         Engine *engine)
    : m_pane(pane)
    , m_parser(parser)
    , m_merge(merge)
    , m_errors(errors)
    , m_engine(engine)
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
    Engine &e = *m_engine;
    const bool bRconCmd = cmd == u"status";
    if (!e.queue().AddSrvCmd(cmd, true, true, bRconCmd, 0)) {
        if (e.settings.SaveLog)
            e.log().WriteLog(QStringLiteral("Error: sendStatus couldn't add status command to queue."));
        return false;
    }
    if (e.unloaded() || !e.link().serverAnswered())
        return false;
    switch (GetScores(cmd)) {
    case 1:
        e.grid().RefreshGrid();
        e.view().setTrayTip(trayTip(e.stats));
        return true;
    case 0:
        m_pane.append(QStringLiteral("\r\nDetected impersonator - running a full status to trap IPs\r\n"));
        return sendStatus(QStringLiteral("status"));
    default:
        if (e.players().currentCount == 0)
            e.grid().RefreshGrid();
        return false;
    }
}

qint32 StatusCycle::GetScores(const QString &cmd)
{
    qint32 answer = -1;
    try {
        const QString &pane = m_pane.text();
        // Nothing ties a reply to its command: the newest echo of the word is taken.
        const qsizetype hit = pane.lastIndexOf(cmd) + 1;
        if (hit < 1)
            return answer;
        const QString text = Text::midToEnd(pane, hit);

        const qint32 rows = m_parser.GoodStatus(text, cmd);
        if (rows <= 0)
            return answer;
        if (!m_parser.ParseScores(Text::midToEnd(text, rows), cmd))
            return answer;
        // a cheap reply has no address to tell two equal names apart
        if (cmd != u"status" && m_merge.SameNames())
            return 0;
        m_merge.CopyPlayers();
        answer = 1;
    } catch (const std::exception &) {
        m_errors.ReportError(true, QStringLiteral("Error getting scores"));
    }
    return answer;
}
