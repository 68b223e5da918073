// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class Clock;
class ListFiles;
struct PlayerState;
struct Settings;
struct Stats;

// The % variables of the operator's messages, filled in just before a line goes to the
// server: by the announcer with no player (-1), by a high-ping kick with the kicked row.
class Variables
{
public:
    Variables(const PlayerState &players, const Stats &stats, const Settings &settings, const ListFiles &lists,
              const Clock &clock);

    // One ReplaceText pass per variable, in a fixed order, each on the result of the one
    // before; %name%, %ip% and %ping% only when intPlayerNum is above -1.
    QString ExpandVariables(const QString &strMessage, qint32 intPlayerNum) const;

    // Every occurrence of strFind, left to right without overlap, replaced; the text comes
    // back unchanged when the result would be empty.
    static QString ReplaceText(const QString &strText, const QString &strFind, const QString &strReplace);

    // "<days>d / <hours>h" since the start, each a difference of its own.
    QString uptime() const;
    // Seconds above the limit before a high-ping kick, in the shortest form (60, 37.5).
    QString pingtime() const;

private:
    const PlayerState &m_players;
    const Stats &m_stats;
    const Settings &m_settings;
    const ListFiles &m_lists;
    const Clock &m_clock;
};
