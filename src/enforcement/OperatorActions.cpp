// SPDX-License-Identifier: MIT
#include "enforcement/OperatorActions.h"

#include "core/ErrorLog.h"
#include "core/RunControl.h"
#include "core/Settings.h"
#include "core/Text.h"
#include "core/View.h"
#include "enforcement/BanAction.h"
#include "enforcement/KickAction.h"
#include "enforcement/KickReasons.h"
#include "link/CommandQueue.h"
#include "players/PlayerGrid.h"
#include "players/PlayerState.h"

OperatorActions::OperatorActions(View &view, const PlayerState &players, KickAction &kick, BanAction &ban,
                                 PlayerGrid &grid, CommandQueue &queue, const Settings &settings, ErrorLog &errors,
                                 RunControl &run)
    : m_view(view)
    , m_players(players)
    , m_kick(kick)
    , m_ban(ban)
    , m_grid(grid)
    , m_queue(queue)
    , m_settings(settings)
    , m_errors(errors)
    , m_run(run)
{
}

bool OperatorActions::playerRow(int row) const
{
    return row >= 1 && row <= m_players.currentCount;
}

void OperatorActions::kickGridPlayer()
{
    m_errors.catching(QStringLiteral("Error kicking player (kickGridPlayer)"), [&] {
        const int row = m_view.gridCurrentRow();
        if (playerRow(row))
            m_kick.kickPlayer(m_view.gridRowData(row), KickReasons::adminKick, true);
        else
            m_view.messageBox(QStringLiteral("Please specify a player to kick"));
    });
}

void OperatorActions::cmdKick_Click()
{
    kickGridPlayer();
    m_grid.RefreshGrid();
}

void OperatorActions::cmdKickBan_Click()
{
    if (!playerRow(m_view.gridCurrentRow())) {
        m_view.messageBox(QStringLiteral("Please specify a player to kick & ban"));
        return;
    }
    kickGridPlayer();
    // The kick waited for the server; a refresh in that time can have dropped the row.
    const qint32 player = m_view.gridRowData(m_view.gridCurrentRow());
    if (player >= 1 && player <= m_players.currentCount)
        m_ban.Ban(player, KickReasons::adminBan, true);
    m_grid.RefreshGrid();
}

qint32 OperatorActions::FindClient(qint16 num) const
{
    const PlayerState &p = m_players;
    for (qint32 i = 1; i <= p.currentCount; ++i) {
        const QString &slot = p.currentPlayers[i].num;
        // Read as the number it is, so that a fraction or a slot beyond 32 bits simply does not match.
        bool read = false;
        const double value = Text::trimBlanks(slot).toDouble(&read);
        if (Text::isNumeric(slot) && read && value == num)
            return i;
    }
    return -1;
}

bool OperatorActions::otherCommandOpened()
{
    if (!m_run.engineRunning())
        return false;
    m_run.cmdStart_Click();
    return true;
}

void OperatorActions::otherCommandClosed(bool wasRunning)
{
    if (wasRunning && !m_run.unloaded())
        m_run.cmdStart_Click();
}

void OperatorActions::cmdSend_Click(const QString &typed)
{
    const QString text = Text::trimBlanks(typed);
    if (text.isEmpty())
        return;
    if (!m_queue.AddSrvCmd(text, true, true, true, 0)) {
        m_view.messageBox(QStringLiteral("Unable to send command: Server Queue"));
        return;
    }
    if (!text.startsWith(u"clientkick") || !m_settings.Ban)
        return;
    // The slot is cut at a fixed place from the text as typed, blanks and all.
    const QString slot = Text::trimBlanks(typed.mid(10));
    if (!Text::isNumeric(slot))
        return;
    qint16 num = 0;
    try {
        num = Text::toInt16(slot);
    } catch (const std::exception &) {
        return; // beyond any slot a server has
    }
    const qint32 player = FindClient(num);
    if (player < 1)
        return;
    if (m_view.question(QStringLiteral("Do you want to ban ") + m_players.currentPlayers[player].name
                        + QStringLiteral("?")))
        m_ban.Ban(player, KickReasons::adminBan, true);
}
