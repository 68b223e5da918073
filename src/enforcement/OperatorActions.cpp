// SPDX-License-Identifier: MIT
#include "enforcement/OperatorActions.h"

#include "core/Engine.h"
#include "core/Text.h"
#include "core/View.h"
#include "enforcement/KickReasons.h"
#include "link/CommandQueue.h"
#include "players/PlayerGrid.h"

bool OperatorActions::playerRow(int row) const
{
    return row >= 1 && row <= m_engine.players().currentCount;
}

void OperatorActions::kickGridPlayer()
{
    Engine &e = m_engine;
    e.errors().catching(QStringLiteral("Error kicking player (kickGridPlayer)"), [&] {
        const int row = e.view().gridCurrentRow();
        if (playerRow(row))
            e.kickPlayer(e.view().gridRowData(row), KickReasons::adminKick, true);
        else
            e.view().messageBox(QStringLiteral("Please specify a player to kick"));
    });
}

void OperatorActions::cmdKick_Click()
{
    kickGridPlayer();
    m_engine.grid().RefreshGrid();
}

void OperatorActions::cmdKickBan_Click()
{
    Engine &e = m_engine;
    if (!playerRow(e.view().gridCurrentRow())) {
        e.view().messageBox(QStringLiteral("Please specify a player to kick & ban"));
        return;
    }
    kickGridPlayer();
    // The kick waited for the server; a refresh in that time can have dropped the row.
    const qint32 player = e.view().gridRowData(e.view().gridCurrentRow());
    if (player >= 1 && player <= e.players().currentCount)
        e.Ban(player, KickReasons::adminBan, true);
    e.grid().RefreshGrid();
}

qint32 OperatorActions::FindClient(qint16 num) const
{
    const PlayerState &p = m_engine.players();
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
    if (!m_engine.engineRunning())
        return false;
    m_engine.cmdStart_Click();
    return true;
}

void OperatorActions::otherCommandClosed(bool wasRunning)
{
    if (wasRunning && !m_engine.unloaded())
        m_engine.cmdStart_Click();
}

void OperatorActions::cmdSend_Click(const QString &typed)
{
    Engine &e = m_engine;
    const QString text = Text::trimBlanks(typed);
    if (text.isEmpty())
        return;
    if (!e.queue().AddSrvCmd(text, true, true, true, 0)) {
        e.view().messageBox(QStringLiteral("Unable to send command: Server Queue"));
        return;
    }
    if (!text.startsWith(u"clientkick") || !e.settings.Ban)
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
    if (e.view().question(QStringLiteral("Do you want to ban ") + e.players().currentPlayers[player].name
                          + QStringLiteral("?")))
        e.Ban(player, KickReasons::adminBan, true);
}
