// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class Clock;
class ErrorLog;
struct PlayerState;
struct Stats;

// Reads the two reply forms of the server, the full "status" table and the cheap
// "getStatus" info reply, from the text behind the echo of the command word, into
// scanPlayers. Positions are 1-based. GoodStatus, ParseScores and GetRow report their
// own failures as fatal; GetMapName and FirstSpace let theirs pass to the caller.
class StatusParser
{
public:
    StatusParser(PlayerState &state, Stats &stats, Clock &clock, ErrorLog &errors);

    // -1: unusable, 0: a status table with no rows, else where the row area begins.
    qint32 GoodStatus(const QString &text, const QString &cmd);
    void GetMapName(const QString &text, const QString &cmd);
    // True when at least one row was stored.
    bool ParseScores(const QString &text, const QString &cmd);
    // The line at pos without its line end; empty when no line end follows.
    QString GetRow(const QString &text, qsizetype pos);
    // Position of the first blank, -1 when there is none.
    static qint32 FirstSpace(const QString &row);

private:
    PlayerState &m_state;
    Stats &m_stats;
    Clock &m_clock;
    ErrorLog &m_errors;
};
