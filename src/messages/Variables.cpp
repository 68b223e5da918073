// SPDX-License-Identifier: MIT
#include "messages/Variables.h"

#include "core/Clock.h"
#include "core/Settings.h"
#include "core/SettingsStore.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "messages/ListFiles.h"
#include "players/PlayerState.h"

#include <cmath>
#include <utility>

Variables::Variables(const PlayerState &players, const Stats &stats, const Settings &settings, const ListFiles &lists,
                     const Clock &clock)
    : m_players(players)
    , m_stats(stats)
    , m_settings(settings)
    , m_lists(lists)
    , m_clock(clock)
{
}

QString Variables::ReplaceText(const QString &strText, const QString &strFind, const QString &strReplace)
{
    const qsizetype n = strText.size();
    const qsizetype m = strFind.size();
    if (n < m || m == 0 || !strText.contains(strFind))
        return strText;
    QString result;
    const QStringView text(strText);
    for (qsizetype i = 0; i < n; ++i) {
        if (i + m <= n && text.mid(i, m) == strFind) {
            result += strReplace;
            i += m - 1;
        } else {
            result += text.at(i);
        }
    }
    return result.isEmpty() ? strText : result;
}

QString Variables::uptime() const
{
    const qint64 days = m_stats.startdate.daysTo(m_clock.today());
    const double hours = std::nearbyint((m_clock.timeOfDay() - m_stats.starttime) * 24.0);
    return QString::number(days) + QStringLiteral("d / ") + QString::number(static_cast<qint64>(hours))
        + u'h';
}

QString Variables::pingtime() const
{
    // Multiplied first: a stored 5001 ms with 5 passes gives 25.005, not 25.005000000000003.
    const qint64 ms = qint64(m_settings.CheckInt) * m_settings.PingPasses;
    return SettingsStore::doubleText(static_cast<double>(ms) / 1000.0);
}

QString Variables::ExpandVariables(const QString &strMessage, qint32 intPlayerNum) const
{
    QString text = strMessage;
    const auto pass = [&text](const char *name, const QString &value) {
        text = ReplaceText(text, QString::fromLatin1(name), value);
    };
    if (intPlayerNum > -1) {
        const PlayerRecord &row = m_players.currentPlayers[intPlayerNum];
        pass("%name%", row.name);
        pass("%ip%", row.ip);
        pass("%ping%", row.ping);
    }
    const Stats &s = m_stats;
    pass("%pingkicks%", QString::number(s.pingkicks));
    pass("%bankicks%", QString::number(s.bankicks));
    pass("%banadds%", QString::number(s.banadds));
    pass("%map%", s.map);
    pass("%players%", QString::number(s.players));
    pass("%totalplayers%", QString::number(s.totalplayers));
    pass("%checks%", QString::number(s.checks));
    pass("%startdate%", Text::dateText(s.startdate));
    pass("%starttime%", Text::timeOfDayText(s.starttime));
    pass("%tkkicks%", QString::number(s.tkkicks));
    pass("%totalmaps%", QString::number(s.totalmaps));
    pass("%avgping%", QString::number(s.avgping));
    pass("%uptime%", uptime());
    pass("%serverip%", m_settings.Host);
    pass("%serverport%", QString::number(m_settings.Port));
    pass("%pinglimit%", QString::number(m_settings.MaxPing));
    pass("%pingtime%", pingtime());
    pass("%numbanip%", QString::number(m_lists.bannedIPTop() + 1));
    pass("%numbanname%", QString::number(m_lists.bannedNameTop() + 1));
    return text;
}
