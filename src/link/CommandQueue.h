// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>

class Engine;

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
class CommandQueue
{
public:
    static constexpr int Size = 2049; // indexes 0 to 2048

    explicit CommandQueue(Engine &engine) : m_engine(engine) {}

    bool AddSrvCmd(const QString &Cmd, bool bShowT = false, bool bDoNow = false, bool bRconCmd = false,
                   qint32 intPause = 0);
    void SendCommands();

    qint32 srvqueueTop = -1;

private:
    void drain();
    void setQueueControls(bool enabled);

    Engine &m_engine;
    std::array<SrvCmd, Size> m_srvqueue{};
};
