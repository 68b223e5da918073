// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class ActivityLog;
class CommandQueue;
class OutputPane;
class PlayerGrid;
class RconLink;
class RunControl;
class ScoreReader;
class View;
struct PlayerState;
struct Settings;
struct Stats;

// sendStatus: one status round trip. The command goes out at once through the queue; the
// reply it brought is read from the pane into currentPlayers, and the grid and the tray
// tip show the table.
class StatusCycle
{
public:
    // `view`: the tray tip.
    StatusCycle(CommandQueue &queue, const RconLink &link, ScoreReader &scores, PlayerGrid &grid,
                const PlayerState &players, const Stats &stats, const Settings &settings, OutputPane &pane,
                ActivityLog &log, View &view, const RunControl &run);

    // True when currentPlayers now holds this scan.
    bool sendStatus(const QString &cmd);
    static QString trayTip(const Stats &stats);

private:
    CommandQueue &m_queue;
    const RconLink &m_link;
    ScoreReader &m_scores;
    PlayerGrid &m_grid;
    const PlayerState &m_players;
    const Stats &m_stats;
    const Settings &m_settings;
    OutputPane &m_pane;
    ActivityLog &m_log;
    View &m_view;
    const RunControl &m_run;
};
