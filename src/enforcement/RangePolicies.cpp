// SPDX-License-Identifier: MIT
#include "enforcement/RangePolicies.h"

#include "core/Settings.h"
#include "core/Text.h"
#include "enforcement/KickAction.h"
#include "enforcement/KickReasons.h"
#include "players/PlayerState.h"

namespace RangePolicies {
namespace {

qint32 kickOutOfRange(PolicyContext &c, QString PlayerRecord::*field, qint32 lowest, qint32 highest,
                      const QString &reason, const char *head)
{
    qint32 hits = 0;
    const qint32 count = c.players.currentCount;
    for (qint32 row = 1; row <= count; ++row) {
        const QString &text = c.players.currentPlayers[row].*field;
        if (!Text::isNumeric(text))
            continue;
        const qint32 v = Text::toInt32(text);
        if (v < lowest || v > highest) {
            ++hits;
            c.kick.kickPlayer(row, reason, false);
        }
    }
    c.logCount(head, hits);
    return hits;
}

} // namespace

qint32 kickQPortPlayers(PolicyContext &c)
{
    return kickOutOfRange(c, &PlayerRecord::qport, c.settings.QPortMin, c.settings.QPortMax, KickReasons::qport,
                          "kickQPortPlayers: ");
}

qint32 kickRatePlayers(PolicyContext &c)
{
    return kickOutOfRange(c, &PlayerRecord::rate, c.settings.RateMin, c.settings.RateMax, KickReasons::rate,
                          "kickRatePlayers: ");
}

} // namespace RangePolicies
