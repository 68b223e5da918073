// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class ErrorLog;
class OutputPane;
class PlayerMerge;
class StatusParser;

// GetScores: the output pane is the only receive buffer, so the reply is found behind the
// last echo of the command word and digested into currentPlayers.
class ScoreReader
{
public:
    ScoreReader(const OutputPane &pane, StatusParser &parser, PlayerMerge &merge, ErrorLog &errors);

    // 1: scan accepted, 0: a cheap scan with two equal names (ask for a full one),
    // -1: anything else; the player table is then untouched.
    qint32 GetScores(const QString &cmd);

private:
    const OutputPane &m_pane;
    StatusParser &m_parser;
    PlayerMerge &m_merge;
    ErrorLog &m_errors;
};
