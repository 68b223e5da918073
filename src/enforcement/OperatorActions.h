// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class Engine;

// What the operator does by hand: kick or ban the player chosen in the grid, and send
// any console command. One typed command is looked at: a clientkick, which can lead to
// a ban of the player on that slot.
class OperatorActions
{
public:
    explicit OperatorActions(Engine &engine) : m_engine(engine) {}

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

    Engine &m_engine;
};
