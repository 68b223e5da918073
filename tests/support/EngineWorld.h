// SPDX-License-Identifier: MIT
#pragma once

#include "FakeClock.h"
#include "HeadlessView.h"
#include "TestEnv.h"
#include "core/Engine.h"

#include <QUdpSocket>

#include <functional>

// An engine on a headless window, a fake clock and a private folder, with a fatal
// report that throws FatalExit instead of ending the test.
struct EngineWorld
{
    explicit EngineWorld(double clockSpeed = 0);

    // Binds the engine's socket to a free port and points the window at `serverPort`.
    void connectTo(quint16 serverPort, const QString &password = QString());
    // Points the window at `serverPort` without binding (Form_Load binds).
    void pointAt(quint16 serverPort, const QString &password = QString());
    quint16 localPort() const;
    QByteArray file(const QString &name) const { return TestEnv::readFile(env.workDir() + name); }

    TestEnv env;
    FakeClock clock;
    HeadlessView view;
    Engine engine;
};

// A bare peer on loopback that records what it gets and answers by hand.
struct Peer
{
    Peer();
    // Waits (in real time, a few seconds at most) for the next datagram.
    QByteArray next();
    void reply(const QByteArray &bytes);
    // Answers every datagram as it comes, inside the engine's waits.
    void answerWith(std::function<QList<QByteArray>(const QByteArray &)> answer);

    QUdpSocket socket;
    QList<QByteArray> received;
    QHostAddress lastFrom;
    quint16 lastPort = 0;
};
