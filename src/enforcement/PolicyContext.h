// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class ActivityLog;
class Clock;
class KickAction;
class ListFiles;
class OutputPane;
struct PlayerState;
struct Settings;
struct Stats;

// AddSrvCmd as the kick action and the policies see it: true when the command was queued.
using QueueCommand = std::function<bool(const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause)>;

// What the policies work with. A policy takes this rather than the engine, so that it
// runs on a table and lists of a test's own, without a socket or a window.
struct PolicyContext
{
    PlayerState &players;
    const Settings &settings;
    const Stats &stats;
    const ListFiles &lists;
    KickAction &kick;
    ActivityLog &log;
    OutputPane &pane;
    const Clock &clock;
    QueueCommand AddSrvCmd;

    // A line of the running commentary: SaveLog on and LogBrief off.
    void logVerbose(const QString &text) const;
    // The closing line of every policy, also for a count of 0.
    void logCount(const char *head, qint64 hits) const;
};
