// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <array>

class ActivityLog;
class ErrorLog;
class OutputPane;
class RconLink;
class RunControl;
class View;
struct Settings;

// One entry of srvqueue.
struct SrvCmd
{
    QString Cmd;
    bool bShowT = false;
    bool bRconCmd = false;
    qint32 intPause = 0;
};

// srvqueue: nearly every command goes out through here, one datagram per CommandDelay.
// It is a batch: it fills, drains in one go inside SendCommands, and empties; while it
// drains it refuses new entries. The wait after each send is what lets a reply come in.
class CommandQueue : public QObject
{
    Q_OBJECT
public:
    static constexpr int Size = 2049; // indexes 0 to 2048

    // `view`: the three command controls that are off while the queue drains.
    CommandQueue(RconLink &link, View &view, const Settings &settings, OutputPane &pane, ActivityLog &log,
                 ErrorLog &errors, const RunControl &run);

    bool AddSrvCmd(const QString &Cmd, bool bShowT = false, bool bDoNow = false, bool bRconCmd = false,
                   qint32 intPause = 0);
    void SendCommands();
    // Empty, and waiting for nothing: as the load of the window leaves it.
    void reset();

    qint32 srvqueueTop() const { return m_srvqueueTop; }
    // A command has been sent and nothing has been received since.
    bool waitingForServer() const { return m_waitingForServer; }
    // SendCommands is working through the queue; AddSrvCmd refuses meanwhile.
    bool queueDraining() const { return m_queueDraining; }

Q_SIGNALS:
    // AddSrvCmd turned the command away: the queue was draining.
    void refused(const QString &Cmd);
    // The server sent nothing in the wait after this command.
    void timedOut(const QString &Cmd);

private:
    void drain();
    void setQueueControls(bool enabled);

    RconLink &m_link;
    View &m_view;
    const Settings &m_settings;
    OutputPane &m_pane;
    ActivityLog &m_log;
    ErrorLog &m_errors;
    const RunControl &m_run;
    std::array<SrvCmd, Size> m_srvqueue{};
    qint32 m_srvqueueTop = -1;
    bool m_waitingForServer = false;
    bool m_queueDraining = false;
};
