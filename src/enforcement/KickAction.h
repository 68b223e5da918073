// SPDX-License-Identifier: MIT
#pragma once

#include "enforcement/PolicyContext.h"

#include <QObject>
#include <QString>

class ActivityLog;
class BanAction;
class Clock;
class ListFiles;
class Variables;
struct PlayerState;
struct Settings;
struct Stats;

// kickPlayer: the one place where a player is removed. It spares immune addresses,
// lets a row be kicked again only some five seconds after its last kick, queues the
// words to the players and the kick command, marks the row, counts the kick and hands
// it over to Ban. It sends nothing itself unless the caller asks for it (bDoNow). It
// tells of each kick queued and each spared by immunity, for a journal.
class KickAction : public QObject
{
    Q_OBJECT
public:
    KickAction(PlayerState &players, const Settings &settings, Stats &stats, ListFiles &lists,
               const Variables &variables, ActivityLog &log, const Clock &clock, BanAction &ban,
               QueueCommand AddSrvCmd);

    void kickPlayer(qint32 intPlayerNumToKick, const QString &strReason, bool bDoNow = false);
    // The row's address stands in the immune list, compared exactly.
    bool IsImmune(qint32 intPlayerNum) const;

    // The gate on a second kick: more than 5 units of 0.864 s since the last one, by the
    // time of day alone (so a kick before midnight keeps the gate shut after it).
    static bool repeatAllowed(double now, double kicktime);

Q_SIGNALS:
    // The kick command is queued. `slot`: the row's slot ("----" when unknown); `again`: a
    // re-kick of a row already kicked.
    void kicked(const QString &slot, const QString &name, const QString &ip, const QString &reason, bool again);
    // Not kicked: the address is immune.
    void spared(const QString &slot, const QString &name, const QString &ip, const QString &reason);

private:
    void logLine(const QString &text);
    QString tellingLine(qint32 row, const QString &strReason);

    PlayerState &m_players;
    const Settings &m_settings;
    Stats &m_stats;
    ListFiles &m_lists;
    const Variables &m_variables;
    ActivityLog &m_log;
    const Clock &m_clock;
    BanAction &m_ban;
    QueueCommand m_AddSrvCmd;
};
