// SPDX-License-Identifier: MIT
#include "players/PlayerMerge.h"

#include "core/ErrorLog.h"
#include "core/Stats.h"
#include "players/PlayerState.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <exception>
#include <utility>

namespace {

void prepare(PlayerTable &table, qint32 count)
{
    QHash<QString, qint32> seen;
    seen.reserve(count);
    for (qint32 k = 1; k <= count; ++k) {
        PlayerRecord &r = table[k];
        r.prevIndex = -1;
        r.scanIndex = -1;
        r.matched = false;
        ++seen[r.name];
    }
    // Only repeated names change; a record's flag is otherwise left as it stands.
    for (qint32 k = 1; k <= count; ++k) {
        if (seen.value(table[k].name) > 1)
            table[k].unique = false;
    }
}

QString nameAt(const PlayerTable &table, qint32 count, qint32 k)
{
    return k >= 1 && k <= count ? table[k].name : QString();
}

void resetKickState(PlayerRecord &r)
{
    r.warn = 0;
    r.status = QStringLiteral("Ok");
    r.kicktime = 0;
}

// What a player has earned stays with the player, whatever the row says.
void carryState(PlayerRecord &merged, const PlayerRecord &prev)
{
    merged.warn = prev.warn;
    merged.spare1 = prev.spare1;
    merged.spare2 = prev.spare2;
    merged.status = prev.status;
    merged.kicktime = prev.kicktime;
    merged.jointime = prev.jointime;
    merged.joindate = prev.joindate;
}

void fillUnknown(QString &field, const QString &prev)
{
    if (field == unknownField())
        field = prev;
}

} // namespace

PlayerMerge::PlayerMerge(PlayerState &state, Stats &stats, ErrorLog &errors)
    : m_state(state)
    , m_stats(stats)
    , m_errors(errors)
{
}

bool PlayerMerge::SameNames() const
{
    QSet<QString> names;
    for (qint32 i = 1; i <= m_state.scanCount; ++i) {
        const QString &name = m_state.scanPlayers[i].name;
        if (names.contains(name))
            return true;
        names.insert(name);
    }
    return false;
}

void PlayerMerge::CopyPlayers()
{
    try {
        mergeRows();
    } catch (const std::exception &) {
        m_errors.ReportError(true, QStringLiteral("CopyPlayers"));
    }
}

void PlayerMerge::mergeRows()
{
    PlayerTable &prev = m_state.currentPlayers;
    PlayerTable &scan = m_state.scanPlayers;
    const qint32 prevCount = m_state.currentCount;
    const qint32 scanCount = m_state.scanCount;

    prepare(prev, prevCount);
    prepare(scan, scanCount);

    // A repeated name is told apart by the name beside it; the last fitting record wins.
    for (qint32 i = 1; i <= scanCount; ++i) {
        PlayerRecord &row = scan[i];
        if (row.unique)
            continue;
        const QString above = nameAt(scan, scanCount, i - 1);
        const QString below = nameAt(scan, scanCount, i + 1);
        for (qint32 j = 1; j <= prevCount; ++j) {
            if (prev[j].name != row.name)
                continue;
            if ((!above.isEmpty() && above == nameAt(prev, prevCount, j - 1))
                || (!below.isEmpty() && below == nameAt(prev, prevCount, j + 1)))
                row.prevIndex = j;
        }
    }

    QList<PlayerRecord> merged;
    merged.reserve(scanCount);
    const auto take = [&](qint32 i, qint32 j) -> PlayerRecord & {
        merged.append(scan[i]);
        PlayerRecord &m = merged.last();
        m.scanIndex = i;
        scan[i].matched = true;
        prev[j].matched = true;
        carryState(m, prev[j]);
        return m;
    };
    const auto takeByName = [&](qint32 i, qint32 j) -> PlayerRecord & {
        PlayerRecord &m = take(i, j);
        const PlayerRecord &p = prev[j];
        fillUnknown(m.num, p.num);
        fillUnknown(m.score, p.score);
        fillUnknown(m.lastmsg, p.lastmsg);
        fillUnknown(m.rate, p.rate);
        fillUnknown(m.qport, p.qport);
        if (m.ip == unknownField()) {
            m.ip = p.ip;
            m.port = p.port;
        }
        m.nametime = p.nametime;
        return m;
    };

    for (qint32 i = 1; i <= scanCount; ++i) {
        const PlayerRecord &row = scan[i];
        if (row.ip != unknownField() && !row.matched) {
            for (qint32 j = 1; j <= prevCount; ++j) {
                const PlayerRecord &p = prev[j];
                if (p.matched || p.ip != row.ip || p.port != row.port)
                    continue;
                const bool sameName = p.name == row.name;
                const bool sameSlot = p.num == row.num;
                const double nametime = p.nametime;
                PlayerRecord &m = take(i, j);
                if (sameName)
                    m.nametime = nametime;
                if (!sameSlot)
                    resetKickState(m); // a reconnect onto another slot starts clean
                break;
            }
        }
        if (row.matched)
            continue;
        for (qint32 j = 1; j <= prevCount && !row.matched; ++j) {
            const PlayerRecord &p = prev[j];
            if (p.matched || p.name != row.name)
                continue;
            if (row.unique && p.unique) {
                const bool cheapRow = row.num == unknownField();
                PlayerRecord &m = takeByName(i, j);
                // a cheap scan has no slot to tell a rejoin, so a kick mark does not survive it
                if (cheapRow && m.status != u"Ok")
                    resetKickState(m);
            } else if (row.prevIndex > -1 && !prev[row.prevIndex].matched) {
                takeByName(i, row.prevIndex);
            }
        }
    }

    for (qint32 i = 1; i <= scanCount; ++i) {
        if (scan[i].matched)
            continue;
        merged.append(scan[i]);
        merged.last().scanIndex = i;
        ++m_stats.totalplayers;
    }

    for (const PlayerRecord &m : std::as_const(merged))
        prev[m.scanIndex] = m;
    m_state.currentCount = static_cast<qint32>(merged.size());
    m_stats.players = m_state.currentCount;
}
