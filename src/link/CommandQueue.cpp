// SPDX-License-Identifier: MIT
#include "link/CommandQueue.h"

#include "core/ActivityLog.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/RunControl.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "core/View.h"
#include "link/RconLink.h"

CommandQueue::CommandQueue(RconLink &link, View &view, const Settings &settings, OutputPane &pane, ActivityLog &log,
                           ErrorLog &errors, const RunControl &run)
    : m_link(link)
    , m_view(view)
    , m_settings(settings)
    , m_pane(pane)
    , m_log(log)
    , m_errors(errors)
    , m_run(run)
{
    // Whatever the server sends ends the wait for it.
    connect(&link, &RconLink::replyArrived, this, [this] { m_waitingForServer = false; });
}

void CommandQueue::reset()
{
    m_srvqueueTop = -1;
    m_waitingForServer = false;
}

bool CommandQueue::AddSrvCmd(const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause)
{
    bool added = false;
    m_errors.catching(QStringLiteral("Error adding to srvqueue (AddSrvCmd)"), [&] {
        if (m_queueDraining) {
            Q_EMIT refused(Cmd);
            return;
        }
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
    m_view.setEnabled(View::Control::cmdStatus, enabled);
    m_view.setEnabled(View::Control::cmdOther, enabled);
    m_view.setEnabled(View::Control::cmdServerInfo, enabled);
}

void CommandQueue::SendCommands()
{
    m_errors.catching(QStringLiteral("Error processing srvqueue (SendCommands)"), [&] {
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
    setQueueControls(false);
    m_queueDraining = true;
    m_run.Pause(1.0);
    for (qint32 index = 0; index <= m_srvqueueTop && !m_run.unloaded(); ++index) {
        const SrvCmd &cmd = m_srvqueue[static_cast<size_t>(index)];
        m_waitingForServer = true;
        m_link.UDPClient_SendMessage(cmd.Cmd, cmd.bShowT, cmd.bRconCmd);
        m_run.Pause(m_settings.CommandDelay);
        if (cmd.intPause > 0)
            m_run.Pause(cmd.intPause);
        if (m_waitingForServer && !m_run.unloaded()) {
            m_pane.append(QStringLiteral("Warning: SendCommands timed out.\r\n"));
            if (m_settings.SaveLog)
                m_log.WriteLog(QStringLiteral("Error: SendCommands timed out waiting for response. Couldn't send ")
                                 + cmd.Cmd);
            Q_EMIT timedOut(cmd.Cmd);
        }
        m_waitingForServer = false;
    }
    m_srvqueueTop = -1;
    setQueueControls(true);
    m_queueDraining = false;
}
