// SPDX-License-Identifier: MIT
#include "link/CommandQueue.h"

#include "core/Engine.h"
#include "core/RuntimeError.h"
#include "core/View.h"
#include "link/RconLink.h"

CommandQueue::CommandQueue(Engine &engine)
    : m_engine(engine)
{
    // Whatever the server sends ends the wait for it.
    connect(&engine.link(), &RconLink::replyArrived, this, [this] { m_waitingForServer = false; });
}

void CommandQueue::reset()
{
    m_srvqueueTop = -1;
    m_waitingForServer = false;
}

bool CommandQueue::AddSrvCmd(const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause)
{
    bool added = false;
    m_engine.errors().catching(QStringLiteral("Error adding to srvqueue (AddSrvCmd)"), [&] {
        if (m_queueDraining)
            return;
        if (m_srvqueueTop + 1 >= Size)
            throw RuntimeError(RuntimeError::OutOfRange, QStringLiteral("Subscript out of range"));
        ++m_srvqueueTop;
        m_srvqueue[static_cast<size_t>(m_srvqueueTop)] = SrvCmd{Cmd, bShowT, bRconCmd, intPause};
        if (bDoNow)
            SendCommands();
        added = true;
    });
    return added;
}

void CommandQueue::setQueueControls(bool enabled)
{
    View &view = m_engine.view();
    view.setEnabled(View::Control::cmdStatus, enabled);
    view.setEnabled(View::Control::cmdOther, enabled);
    view.setEnabled(View::Control::cmdServerInfo, enabled);
}

void CommandQueue::SendCommands()
{
    m_engine.errors().catching(QStringLiteral("Error processing srvqueue (SendCommands)"), [&] {
        // A drain entered from inside another (a force-kick's direct call from a cycle that
        // started during a drain) would send the entries twice and empty the queue under the
        // outer loop. The outer drain sends everything once; the inner call has nothing to do.
        if (m_queueDraining)
            return;
        drain();
    });
}

void CommandQueue::drain()
{
    Engine &e = m_engine;
    setQueueControls(false);
    m_queueDraining = true;
    e.Pause(1.0);
    for (qint32 index = 0; index <= m_srvqueueTop && !e.unloaded(); ++index) {
        const SrvCmd &cmd = m_srvqueue[static_cast<size_t>(index)];
        m_waitingForServer = true;
        e.link().UDPClient_SendMessage(cmd.Cmd, cmd.bShowT, cmd.bRconCmd);
        e.Pause(e.settings.CommandDelay);
        if (cmd.intPause > 0)
            e.Pause(cmd.intPause);
        if (m_waitingForServer && !e.unloaded()) {
            e.pane().append(QStringLiteral("Warning: SendCommands timed out.\r\n"));
            if (e.settings.SaveLog)
                e.log().WriteLog(QStringLiteral("Error: SendCommands timed out waiting for response. Couldn't send ")
                                 + cmd.Cmd);
        }
        m_waitingForServer = false;
    }
    m_srvqueueTop = -1;
    setQueueControls(true);
    m_queueDraining = false;
}
