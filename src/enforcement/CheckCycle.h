// SPDX-License-Identifier: MIT
#pragma once

#include "enforcement/CheckRoutine.h"

#include <QObject>
#include <QString>

class ActivityLog;
class Clock;
class CommandQueue;
class ListFiles;
class PlayerGrid;
class RconLink;
class StatusCycle;
struct PolicyContext;
struct Settings;
struct Stats;

// TkCheck: one pass of the enforcement engine per tick of the check timer. It refuses to
// run while the server still owes a reply, counts itself, kicks the banned names blind
// when ForceKick says so, asks for the player list ("status" on every StatusInterval-th
// check, the cheap "getStatus" on the others), runs the policies in their fixed order,
// lets the queue send what they queued and refreshes the window. It tells how each ended.
class CheckCycle final : public QObject, public CheckRoutine
{
    Q_OBJECT
public:
    enum class End {
        Done,         // the policies ran over a good status
        NoGoodStatus, // the server sent no status that could be read
        ForceKicked,  // the banned names were kicked blind through the queue, and that was all
        Skipped,      // the server still owed a reply; not counted
    };

    // `link`: the force-kick past the queue. `policies`: what the nine policies work with.
    CheckCycle(const Settings &settings, Stats &stats, const ListFiles &lists, CommandQueue &queue, RconLink &link,
               StatusCycle &status, PolicyContext &policies, PlayerGrid &grid, ActivityLog &log, Clock &clock);

    void TkCheck() override;
    bool checkRunning() const override { return m_checkRunning; }
    // The command of the check with this count.
    static const char *statusCommandFor(int checks, int StatusInterval);
    // The nine policies in their order, each behind its setting as it stands now.
    static void runPolicies(PolicyContext &c);
    static QString forceKickCommand(const QString &bannedName);

Q_SIGNALS:
    // `check`: the count of checks, this one included unless skipped.
    void ended(qint32 check, CheckCycle::End end);

private:
    // False when the cycle ends with the force-kick (the short road).
    bool forceKick();

    const Settings &m_settings;
    Stats &m_stats;
    const ListFiles &m_lists;
    CommandQueue &m_queue;
    RconLink &m_link;
    StatusCycle &m_status;
    PolicyContext &m_policies;
    PlayerGrid &m_grid;
    ActivityLog &m_log;
    Clock &m_clock;
    bool m_checkRunning = false;
};
