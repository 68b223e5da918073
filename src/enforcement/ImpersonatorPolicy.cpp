// SPDX-License-Identifier: MIT
#include "enforcement/ImpersonatorPolicy.h"

#include "core/Clock.h"
#include "core/Text.h"
#include "enforcement/KickAction.h"
#include "enforcement/KickReasons.h"
#include "players/PlayerState.h"

#include <QHash>

#include <vector>

namespace ImpersonatorPolicy {
namespace {

bool excluded(const PlayerRecord &lower, const PlayerRecord &upperRow)
{
    return lower.ping == u"ZMBI" || Text::isBlank(lower.name) || lower.ip == upperRow.ip
        || lower.name == u"UnnamedSoldier" || lower.name == u"Unnamed Soldier";
}

} // namespace

qint32 kickImpersonators(PolicyContext &c)
{
    qint32 hits = 0;
    const qint32 count = c.players.currentCount;
    if (count >= 2) {
        // Only pairs of one name can act; they are visited in the order of the walk over
        // all pairs (i ascending, then j ascending).
        std::vector<QString> names(static_cast<size_t>(count) + 1);
        QHash<QString, QList<qint32>> rowsByName;
        for (qint32 row = 1; row <= count; ++row) {
            names[static_cast<size_t>(row)] = Text::upper(c.players.currentPlayers[row].name);
            rowsByName[names[static_cast<size_t>(row)]].append(row);
        }
        for (qint32 i = 1; i < count; ++i) {
            const QList<qint32> &same = rowsByName[names[static_cast<size_t>(i)]];
            for (const qint32 j : same) {
                if (j <= i)
                    continue;
                const PlayerRecord &ri = c.players.currentPlayers[i];
                const PlayerRecord &rj = c.players.currentPlayers[j];
                if (excluded(ri, rj))
                    continue;
                const qint32 imp = ri.nametime < rj.nametime ? j : i;
                const PlayerRecord &r = c.players.currentPlayers[imp];
                const QString warning = QStringLiteral("say WARNING: ") + r.name
                    + QStringLiteral(" - there is another player already playing with that name. You have ")
                    + QStringLiteral("60") + QStringLiteral(" sec to change your name.");
                const bool inGrace = c.clock.timeOfDay() <= r.jointime + graceTime;
                if (r.num == u"----" || (r.nametime == r.jointime && inGrace)) {
                    c.AddSrvCmd(warning, true, false, true, 0);
                } else {
                    ++hits;
                    c.kick.kickPlayer(imp, KickReasons::stealingNames, false);
                }
            }
        }
    }
    c.logCount("kickImpersonators: ", hits);
    return hits;
}

} // namespace ImpersonatorPolicy
