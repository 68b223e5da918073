// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class ActivityLog;
class Clock;
class ListFiles;
struct PlayerState;
struct Settings;
struct Stats;

// Ban: turns a kick into a lasting entry on the ban lists, by name, address or both as
// BanType says, when BanFor (or the caller's bForceBan) makes the kick's reason one to
// ban for. It kicks nobody itself, and no entry is ever taken off a list by the program.
// It tells of each ban, for a journal.
class BanAction : public QObject
{
    Q_OBJECT
public:
    BanAction(const PlayerState &players, const Settings &settings, Stats &stats, ListFiles &lists, ActivityLog &log,
              const Clock &clock);

    void Ban(qint32 intPlayerNumber, const QString &KickReason, bool bForceBan = false);

    // Whether BanFor calls for a ban of this reason; `nameTaken`: the player took the
    // name after joining (nametime differs from jointime).
    static bool banDue(qint32 BanFor, const QString &KickReason, bool nameTaken);

Q_SIGNALS:
    // Entries added to the lists: `name` to banned.txt, `ip` to bannedIP.txt; each empty
    // when not added. `player` and `address` are the row's.
    void banned(const QString &player, const QString &address, const QString &name, const QString &ip,
                const QString &reason);

private:
    void logLine(const QString &text);

    const PlayerState &m_players;
    const Settings &m_settings;
    Stats &m_stats;
    ListFiles &m_lists;
    ActivityLog &m_log;
    const Clock &m_clock;
};
