// SPDX-License-Identifier: MIT
#include "enforcement/NamePolicies.h"

#include "core/Text.h"
#include "enforcement/KickAction.h"
#include "enforcement/KickReasons.h"
#include "messages/ListFiles.h"
#include "players/PlayerState.h"

namespace NamePolicies {
namespace {

// Hits entries 0 to `bound` in index order, one kick each. The index gave the candidates;
// once a ban has reloaded the table, the rest of the walk reads the entries as they now
// stand, as a plain walk would.
template<typename Matches>
qint32 walk(PolicyContext &c, const ListTable &table, qint32 bound, const QList<qint32> &candidates, Matches matches,
            qint32 row, const QString &reason)
{
    qint32 hits = 0;
    const quint32 generation = table.generation;
    qint32 next = 0;
    for (const qint32 index : candidates) {
        if (index > bound || table.generation != generation)
            break;
        ++hits;
        c.kick.kickPlayer(row, reason, false);
        next = index + 1;
    }
    if (table.generation == generation)
        return hits;
    for (qint32 index = next; index <= bound; ++index) {
        if (matches(table.at(index))) {
            ++hits;
            c.kick.kickPlayer(row, reason, false);
        }
    }
    return hits;
}

} // namespace

qint32 kickBannedPlayers(PolicyContext &c)
{
    qint64 hits = 0;
    const ListFiles &lists = c.lists;
    const qint32 count = c.players.currentCount;
    for (qint32 row = 1; row <= count; ++row) {
        const PlayerRecord &r = c.players.currentPlayers[row];
        const QString a = Text::trimBlanks(r.ip);
        const QString n = Text::upper(Text::trimBlanks(r.name));
        // Each walk takes its bound when it starts: a ban in this pass counts from there on.
        hits += walk(c, lists.bannedIPs(), lists.bannedIPTop(), lists.bannedIPsEqualTo(a),
                     [&a](const QString &entry) { return Text::trimBlanks(entry) == a; }, row, KickReasons::bannedIP);
        hits += walk(c, lists.bannedNames(), lists.bannedNameTop(), lists.bannedNamesEqualTo(n),
                     [&n](const QString &entry) { return Text::upper(Text::trimBlanks(entry)) == n; }, row,
                     KickReasons::bannedName);
    }
    c.logCount("kickBannedPlayers: ", hits);
    return static_cast<qint32>(hits);
}

qint32 kickBadNamePlayers(PolicyContext &c)
{
    qint64 hits = 0;
    const qint32 count = c.players.currentCount;
    for (qint32 row = 1; row <= count; ++row) {
        const QString n = Text::upper(Text::trimBlanks(c.players.currentPlayers[row].name));
        // Every hit of a row is the same call, and nothing in it reloads the bad names.
        for (qint64 k = c.lists.badWordHits(n); k > 0; --k) {
            ++hits;
            c.kick.kickPlayer(row, KickReasons::badWord, false);
        }
    }
    c.logCount("kickBadNamePlayers: ", hits);
    return static_cast<qint32>(hits);
}

} // namespace NamePolicies
