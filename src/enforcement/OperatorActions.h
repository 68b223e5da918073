// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class BanAction;
class CommandQueue;
class ErrorLog;
class KickAction;
class PlayerGrid;
class RunControl;
class View;
struct PlayerState;
struct Settings;

// What the operator does by hand: kick or ban the player chosen in the grid, and send
// any console command. One typed command is looked at: a clientkick, which can lead to
// a ban of the player on that slot.
class OperatorActions
{
public:
    // `view`: the grid's chosen row and the boxes. `run`: the Other Command dialog stops
    // the engine while it stands.
    OperatorActions(View &view, const PlayerState &players, KickAction &kick, BanAction &ban, PlayerGrid &grid,
                    CommandQueue &queue, const Settings &settings, ErrorLog &errors, RunControl &run);

    // The kick of the player in the grid's current row.
    void kickGridPlayer();
    // Kick and Kick and Ban, from their buttons and menu entries.
    void cmdKick_Click();
    void cmdKickBan_Click();
    // The first player whose slot number equals `num`, or -1.
    qint32 FindClient(qint16 num) const;

    // The Other Command dialog: the engine does not run while it is open. `wasRunning`
    // tells the unload whether to start it again.
    bool otherCommandOpened();
    void otherCommandClosed(bool wasRunning);
    // Send of the Other Command dialog; the dialog closes after it in every case.
    void cmdSend_Click(const QString &typed);

private:
    bool playerRow(int row) const;

    View &m_view;
    const PlayerState &m_players;
    KickAction &m_kick;
    BanAction &m_ban;
    PlayerGrid &m_grid;
    CommandQueue &m_queue;
    const Settings &m_settings;
    ErrorLog &m_errors;
    RunControl &m_run;
};
