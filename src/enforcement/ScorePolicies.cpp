// SPDX-License-Identifier: MIT
#include "enforcement/ScorePolicies.h"

#include "core/Settings.h"
#include "core/Text.h"
#include "enforcement/KickAction.h"
#include "enforcement/KickReasons.h"
#include "players/PlayerState.h"

namespace ScorePolicies {

qint32 kickTkPlayers(PolicyContext &c)
{
    qint32 hits = 0;
    const qint32 count = c.players.currentCount;
    for (qint32 row = 1; row <= count; ++row) {
        const QString &score = c.players.currentPlayers[row].score;
        if (!Text::isNumeric(score))
            continue;
        if (Text::toInt32(score) < c.settings.TKLimit) {
            ++hits;
            c.kick.kickPlayer(row, KickReasons::tking, false);
        }
    }
    c.logCount("kickTKPlayers: ", hits);
    return hits;
}

void warnPlayers(PolicyContext &)
{
}

void kickTeleFragPlayers(PolicyContext &)
{
}

} // namespace ScorePolicies
