// SPDX-License-Identifier: MIT
#include "enforcement/BanAction.h"

#include "core/ActivityLog.h"
#include "core/Clock.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "enforcement/KickReasons.h"
#include "messages/ListFiles.h"
#include "players/PlayerState.h"

BanAction::BanAction(const PlayerState &players, const Settings &settings, Stats &stats, ListFiles &lists,
                     ActivityLog &log, const Clock &clock)
    : m_players(players)
    , m_settings(settings)
    , m_stats(stats)
    , m_lists(lists)
    , m_log(log)
    , m_clock(clock)
{
}

bool BanAction::banDue(qint32 BanFor, const QString &KickReason, bool nameTaken)
{
    const bool stealing = KickReason == KickReasons::stealingNames;
    switch (BanFor) {
    case 1:
        return KickReason == KickReasons::badWord;
    case 10:
        return KickReason == KickReasons::tking;
    case 11:
        return KickReason == KickReasons::badWord || KickReason == KickReasons::tking;
    case 100:
        return KickReason != KickReasons::highPing && (!stealing || nameTaken);
    case 1000:
        return stealing && nameTaken;
    default:
        return false;
    }
}

void BanAction::logLine(const QString &text)
{
    if (m_settings.SaveLog)
        m_log.WriteLog(text);
}

void BanAction::Ban(qint32 intPlayerNumber, const QString &KickReason, bool bForceBan)
{
    const PlayerRecord &r = m_players.currentPlayers[intPlayerNumber];
    if (!bForceBan && !banDue(m_settings.BanFor, KickReason, r.nametime != r.jointime))
        return;
    const bool stealing = KickReason == KickReasons::stealingNames;
    const qint32 BanType = m_settings.BanType;
    if (BanType < 1 || BanType > 3) {
        logLine(QStringLiteral("Error in Ban"));
        return;
    }
    bool appended = false;
    if (BanType != 1 && !stealing) {
        m_lists.AppendToFile(ListFiles::bannedFile, r.name);
        m_lists.LoadBannedNames();
        appended = true;
    }
    if (BanType != 2) {
        if (r.ip == u"----") {
            logLine(QStringLiteral("Skipped banning IP of ") + r.name + QStringLiteral(" due to unknown IP"));
            if (appended) {
                ++m_stats.banadds;
                Q_EMIT banned(r.name, r.ip, r.name, QString(), KickReason);
            }
            return;
        }
        m_lists.AppendToFile(ListFiles::bannedIPFile, r.ip);
        m_lists.LoadBannedIPs();
        appended = true;
    }
    if (!appended)
        return; // a name ban for stealing a name: the name is the other player's
    ++m_stats.banadds;
    Q_EMIT banned(r.name, r.ip, BanType != 1 && !stealing ? r.name : QString(), BanType != 2 ? r.ip : QString(),
                  KickReason);
    if (!m_settings.SaveLog)
        return;
    const QString when = QStringLiteral(" on ") + Text::dateText(m_clock.today()) + QStringLiteral(" at ")
        + Text::timeText(m_clock.timeNow()) + u' ' + KickReason;
    QString line;
    QString record;
    if (BanType == 1) {
        line = QStringLiteral("Banned IP ") + r.ip + u' ' + KickReason;
        record = QStringLiteral("Banned IP ") + r.ip + QStringLiteral(" (") + r.name + u')' + when;
    } else if (BanType == 2) {
        line = QStringLiteral("Banned name ") + r.name + u' ' + KickReason;
        record = QStringLiteral("Banned name ") + r.name + when;
    } else {
        line = QStringLiteral("Banned name/IP ") + r.name + u'/' + r.ip + u' ' + KickReason;
        record = QStringLiteral("Banned IP & name ") + r.ip + QStringLiteral(" / ") + r.name + when;
    }
    m_log.WriteLog(line);
    m_lists.AppendToFile(QStringLiteral("ReasonBanned.txt"), record);
}
