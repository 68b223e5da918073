// SPDX-License-Identifier: MIT
#include "link/CommandQueue.h"

#include "core/Engine.h"
#include "core/RuntimeError.h"
#include "core/View.h"
#include "link/RconLink.h"

bool CommandQueue::AddSrvCmd(const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause)
{
    bool added = false;
    m_engine.errors().catching(QStringLiteral("Error adding to srvqueue (AddSrvCmd)"), [&] {
        if (m_engine.queueDraining)
            return;
        if (srvqueueTop + 1 >= Size)
            throw RuntimeError(RuntimeError::OutOfRange, QStringLiteral("Subscript out of range"));
        ++srvqueueTop;
        m_srvqueue[static_cast<size_t>(srvqueueTop)] = SrvCmd{Cmd, bShowT, bRconCmd, intPause};
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
        if (m_engine.queueDraining)
            return;
        drain();
    });
}

void CommandQueue::drain()
{
    Engine &e = m_engine;
    setQueueControls(false);
    e.queueDraining = true;
    e.Pause(1.0);
    for (qint32 index = 0; index <= srvqueueTop && !e.unloaded(); ++index) {
        const SrvCmd &cmd = m_srvqueue[static_cast<size_t>(index)];
        e.waitingForServer = true;
        e.link().UDPClient_SendMessage(cmd.Cmd, cmd.bShowT, cmd.bRconCmd);
        e.Pause(e.settings.CommandDelay);
        if (cmd.intPause > 0)
            e.Pause(cmd.intPause);
        if (e.waitingForServer && !e.unloaded()) {
            e.pane().append(QStringLiteral("Warning: SendCommands timed out.\r\n"));
            if (e.settings.SaveLog)
                e.log().WriteLog(QStringLiteral("Error: SendCommands timed out waiting for response. Couldn't send ")
                                 + cmd.Cmd);
        }
        e.waitingForServer = false;
    }
    srvqueueTop = -1;
    setQueueControls(true);
    e.queueDraining = false;
}
