// SPDX-License-Identifier: MIT
#include "players/PlayerGrid.h"

#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "players/PlayerState.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int NameColumn = 1;
constexpr int IpColumn = 4;
constexpr qint32 TwipsPerChar = 100;

// A ping that is no number, or a number outside 16 bits, takes no part in the figures.
std::optional<qint16> pingValue(const QString &ping)
{
    if (!Text::isNumeric(ping))
        return std::nullopt;
    try {
        return Text::toInt16(ping);
    } catch (const RuntimeError &) {
        return std::nullopt;
    }
}

} // namespace

PlayerGrid::PlayerGrid(const PlayerState &state, Stats &stats, const Settings &settings, View &view)
    : m_state(state)
    , m_stats(stats)
    , m_settings(settings)
    , m_view(view)
{
}

QList<qint32> PlayerGrid::baseWidths()
{
    return {500, 950, 500, 550, 950, 1000, 550, 550};
}

PlayerGrid::Picture PlayerGrid::picture(const PlayerState &state, const Settings &settings)
{
    Picture p;
    GridView &g = p.grid;
    g.header = QStringList{QStringLiteral("Client"), QStringLiteral("Name"), QStringLiteral("Ping"),
                           QStringLiteral("Score"), QStringLiteral("IP"), QStringLiteral("Joined"),
                           QStringLiteral("Status"), QStringLiteral("Warn")};
    g.columnWidths = baseWidths();
    g.rows.reserve(state.currentCount + 2);

    qsizetype longestName = 0;
    qsizetype longestIp = 0;
    for (qint32 i = 1; i <= state.currentCount; ++i) {
        const PlayerRecord &r = state.currentPlayers[i];
        GridView::Row row;
        row.cells = QStringList{r.num, r.name, r.ping, r.score, r.ip, Text::timeOfDayText(r.jointime), r.status,
                                QString::number(r.warn) + u'/' + QString::number(settings.PingPasses)};
        row.playerNumber = i;
        g.rows.append(row);
        longestName = std::max(longestName, r.name.size());
        longestIp = std::max(longestIp, r.ip.size());

        const std::optional<qint16> ping = pingValue(r.ping);
        if (!ping)
            continue;
        if (*ping == 999) {
            ++p.count999;
            continue;
        }
        p.low = std::min<qint32>(p.low, *ping);
        p.high = std::max<qint32>(p.high, *ping);
        p.sum += *ping;
        ++p.counted;
    }
    // The two rows the emptied grid keeps stay below the players.
    for (int k = 0; k < 2; ++k)
        g.rows.append(GridView::Row{QStringList(g.header.size(), QString()), 0});

    if (longestName != 0)
        g.columnWidths[NameColumn] = static_cast<qint32>(longestName) * TwipsPerChar;
    if (longestIp != 0)
        g.columnWidths[IpColumn] = static_cast<qint32>(longestIp) * TwipsPerChar;

    // nearbyint in the default rounding mode sends halves to the even neighbour
    if (p.counted > 0)
        p.avgping = static_cast<qint32>(std::nearbyint(static_cast<double>(p.sum) / p.counted));
    return p;
}

void PlayerGrid::RefreshGrid()
{
    const Picture p = picture(m_state, m_settings);
    m_stats.avgping = p.avgping;
    m_view.showGrid(p.grid);
    const QString sep = QStringLiteral(" / ");
    m_view.setLabel(View::Label::lblPlayers, QStringLiteral("Players (C/T): ") + QString::number(m_stats.players)
                                                 + sep + QString::number(m_stats.totalplayers));
    m_view.setLabel(View::Label::lblPing,
                    QStringLiteral("Ping (L/H): ") + QString::number(p.low) + sep + QString::number(p.high));
    m_view.setLabel(View::Label::lblPing2, QStringLiteral("Ping (Avg/999): ") + QString::number(m_stats.avgping)
                                               + sep + QString::number(p.count999));
    m_view.setLabel(View::Label::lblMap,
                    QStringLiteral("Map (C/T): ") + m_stats.map + sep + QString::number(m_stats.totalmaps));
}
