// SPDX-License-Identifier: MIT
#include "enforcement/KickAction.h"

#include "core/ActivityLog.h"
#include "core/Clock.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "enforcement/BanAction.h"
#include "enforcement/KickReasons.h"
#include "messages/ListFiles.h"
#include "messages/Variables.h"
#include "players/PlayerState.h"

#include <cmath>

KickAction::KickAction(PlayerState &players, const Settings &settings, Stats &stats, ListFiles &lists,
                       const Variables &variables, ActivityLog &log, const Clock &clock, BanAction &ban,
                       QueueCommand AddSrvCmd)
    : m_players(players)
    , m_settings(settings)
    , m_stats(stats)
    , m_lists(lists)
    , m_variables(variables)
    , m_log(log)
    , m_clock(clock)
    , m_ban(ban)
    , m_AddSrvCmd(std::move(AddSrvCmd))
{
}

bool KickAction::IsImmune(qint32 intPlayerNum) const
{
    return m_lists.immune(m_players.currentPlayers[intPlayerNum].ip);
}

bool KickAction::repeatAllowed(double now, double kicktime)
{
    // Units of 0.864 s counted on whole milliseconds: on the bare fractions of a day,
    // rounding can leave exactly 5.184 s a hair short of 6 units.
    return std::floor(std::round((now - kicktime) * 86400000.0) / 864.0) > 5;
}

void KickAction::logLine(const QString &text)
{
    if (m_settings.SaveLog)
        m_log.WriteLog(text);
}

QString KickAction::tellingLine(qint32 row, const QString &strReason)
{
    const PlayerRecord &r = m_players.currentPlayers[row];
    if (strReason == KickReasons::highPing) {
        ++m_stats.pingkicks;
        const qint32 top = m_lists.highPingMessageTop();
        if (top != -1) {
            qint32 &next = m_lists.nextHighPingMessage;
            const QString message = m_lists.highPingMessages().at(next);
            next = next < top ? next + 1 : 0;
            return m_settings.Voice + QStringLiteral(": ") + m_variables.ExpandVariables(message, row);
        }
    } else if (strReason == KickReasons::tking) {
        ++m_stats.tkkicks;
    } else {
        ++m_stats.bankicks;
    }
    return m_settings.Voice + QStringLiteral(": Kicked ") + r.name + QStringLiteral(" for ") + strReason + u'.';
}

void KickAction::kickPlayer(qint32 intPlayerNumToKick, const QString &strReason, bool bDoNow)
{
    PlayerRecord &r = m_players.currentPlayers[intPlayerNumToKick];
    if (IsImmune(intPlayerNumToKick)) {
        m_AddSrvCmd(QStringLiteral("say ") + m_settings.Voice + QStringLiteral(": Immune (") + r.name
                        + QStringLiteral(" / ") + strReason + QStringLiteral(")."),
                    false, false, true, 0);
        logLine(QStringLiteral("Skipping kick of ") + r.name + QStringLiteral(" for ") + strReason
                + QStringLiteral(" due to immunity"));
        Q_EMIT spared(Text::trimBlanks(r.num), r.name, r.ip, strReason);
        return;
    }
    const bool again = r.status != u"Ok";
    if (again) {
        if (!repeatAllowed(m_clock.timeOfDay(), r.kicktime))
            return;
        logLine(QStringLiteral("Forcing re-kick on client# ") + r.num + QStringLiteral(" (") + r.name + u')');
    }
    const QString line = tellingLine(intPlayerNumToKick, strReason);
    const QString slot = Text::trimBlanks(r.num);
    const QString command = slot == u"----"
        ? QStringLiteral("kick \"") + Text::trimBlanks(r.name) + u'"'
        : QStringLiteral("clientkick ") + slot;
    if (m_settings.TellPlayers && !m_AddSrvCmd(QStringLiteral("say ") + line, false, false, true, m_settings.TellPause))
        logLine(QStringLiteral("Error: KickPlayer could't add Tell Player"));
    if (!m_AddSrvCmd(command, true, bDoNow, true, 0)) {
        logLine(QStringLiteral("Error: KickPlayer could't add kick to queue"));
        return;
    }
    // Marked when queued, not when sent; after a drain (bDoNow) the row may hold another player.
    r.kicktime = m_clock.timeOfDay();
    r.status = QStringLiteral("Kicked (") + strReason + u')';
    Q_EMIT kicked(slot, r.name, r.ip, strReason, again);
    if (m_settings.Ban)
        m_ban.Ban(intPlayerNumToKick, strReason, false);
    logLine(QStringLiteral("Kicked ") + r.name + QStringLiteral(" [") + r.ip + QStringLiteral("] for ")
            + strReason + u'.');
}
