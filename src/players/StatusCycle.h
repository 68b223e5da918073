// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class Engine;
class ErrorLog;
class OutputPane;
class PlayerMerge;
class StatusParser;
struct Stats;

// One status round trip. The output pane is the only receive buffer: the reply is
// found behind the last echo of the command word and digested into currentPlayers.
class StatusCycle
{
public:
    // GetScores needs only the pane and the player tables; sendStatus needs the engine.
    StatusCycle(OutputPane &pane, StatusParser &parser, PlayerMerge &merge, ErrorLog &errors,
                Engine *engine = nullptr);

    // One round trip: queue the command, send it at once, digest the reply. True when
    // currentPlayers now holds this scan.
    bool sendStatus(const QString &cmd);
    static QString trayTip(const Stats &stats);

    // 1: scan accepted, 0: a cheap scan with two equal names (ask for a full one),
    // -1: anything else; the player table is then untouched.
    qint32 GetScores(const QString &cmd);

private:
    OutputPane &m_pane;
    StatusParser &m_parser;
    PlayerMerge &m_merge;
    ErrorLog &m_errors;
    Engine *m_engine;
};
