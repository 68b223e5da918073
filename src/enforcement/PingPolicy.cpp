// SPDX-License-Identifier: MIT
#include "enforcement/PingPolicy.h"

#include "core/OutputPane.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"
#include "enforcement/KickAction.h"
#include "enforcement/KickReasons.h"
#include "players/PlayerState.h"

namespace PingPolicy {

qint32 kickSlowPlayers(PolicyContext &c)
{
    const Stats &s = c.stats;
    qint32 hits = 0;
    if (s.prevmap.isEmpty() || s.map == s.prevmap || !c.settings.SkipMap) {
        const qint32 count = c.players.currentCount;
        for (qint32 row = 1; row <= count; ++row) {
            PlayerRecord &r = c.players.currentPlayers[row];
            if (!Text::isNumeric(r.ping))
                continue;
            qint32 w = r.warn;
            if (Text::toInt32(r.ping) > c.settings.MaxPing) {
                ++w;
                if (w >= c.settings.PingPasses) {
                    ++hits;
                    c.kick.kickPlayer(row, KickReasons::highPing, false);
                }
            } else {
                w = 0;
            }
            c.players.currentPlayers[row].warn = w;
        }
    } else {
        const QString line = QStringLiteral("Changed from [") + s.prevmap + QStringLiteral("] to [") + s.map
            + QStringLiteral("] - skipping ping check");
        c.pane.append(line + QStringLiteral("\r\n"));
        c.logVerbose(line);
    }
    c.logCount("kickSlowPlayers: ", hits);
    return hits;
}

} // namespace PingPolicy
