// SPDX-License-Identifier: MIT
#pragma once

#include "FakeClock.h"
#include "HeadlessView.h"
#include "TestEnv.h"
#include "core/Engine.h"
#include "core/SettingsStore.h"
#include "link/RconLink.h"

#include <QNetworkDatagram>
#include <QUdpSocket>

#include <functional>

// An engine on a headless window, a fake clock and a private folder, with a fatal
// report that throws FatalExit instead of ending the test.
struct EngineWorld
{
    explicit EngineWorld(double clockSpeed = 0)
        : clock(FakeClock::firstMoment(), clockSpeed)
        , engine(clock, view)
    {
        SettingsStore::setProgramDirectoryForTesting(env.workDir());
        engine.settings.FileLoc = env.workDir();
        engine.errors().setTerminate([] { throw FatalExit{QStringLiteral("fatal")}; });
        view.fields[View::Field::txtHost] = QStringLiteral("127.0.0.1");
    }

    // Binds the engine's socket to a free port and points the window at `serverPort`.
    void connectTo(quint16 serverPort, const QString &password = QString())
    {
        engine.link().bind(0);
        pointAt(serverPort, password);
    }
    // Points the window at `serverPort` without binding (Form_Load binds).
    void pointAt(quint16 serverPort, const QString &password = QString())
    {
        view.fields[View::Field::txtPort] = QString::number(serverPort);
        view.fields[View::Field::txtPwd] = password;
    }
    QByteArray file(const QString &name) const { return TestEnv::readFile(env.workDir() + name); }

    TestEnv env;
    FakeClock clock;
    HeadlessView view;
    Engine engine;
};

// A bare peer on loopback that records what it gets and answers by hand.
struct Peer
{
    Peer() { socket.bind(QHostAddress::LocalHost, 0); }

    // Waits (in real time, a few seconds at most) for the next datagram.
    QByteArray next()
    {
        if (!socket.hasPendingDatagrams())
            socket.waitForReadyRead(3000);
        return socket.hasPendingDatagrams() ? take() : QByteArray("<nothing>");
    }
    void reply(const QByteArray &bytes) { socket.writeDatagram(bytes, lastFrom, lastPort); }
    // Answers every datagram as it comes, inside the engine's waits.
    void answerWith(std::function<QList<QByteArray>(const QByteArray &)> answer)
    {
        QObject::connect(&socket, &QUdpSocket::readyRead, &socket, [this, answer] {
            while (socket.hasPendingDatagrams()) {
                received.append(take());
                for (const QByteArray &out : answer(received.last()))
                    reply(out);
            }
        });
    }

    QUdpSocket socket;
    QList<QByteArray> received;
    QHostAddress lastFrom;
    quint16 lastPort = 0;

private:
    QByteArray take()
    {
        const QNetworkDatagram d = socket.receiveDatagram();
        lastFrom = d.senderAddress();
        lastPort = static_cast<quint16>(d.senderPort());
        return d.data();
    }
};
