// SPDX-License-Identifier: MIT
#pragma once

#include "FakeClock.h"
#include "HeadlessView.h"
#include "TestEnv.h"
#include "core/SettingsStore.h"
#include "enforcement/CheckRoutine.h"
#include "engine/Engine.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"

#include <QNetworkDatagram>
#include <QTimer>
#include <QUdpSocket>

#include <functional>

// A check routine of the test's own: a tick runs `run`; the engine and the link see
// `running` as checkRunning.
struct TestCheck final : CheckRoutine
{
    std::function<void()> run;
    std::function<bool()> running = [] { return false; };
    void TkCheck() override
    {
        if (run)
            run();
    }
    bool checkRunning() const override { return running(); }
};

// Runs `act` from the event loop inside a drain of the queue with nothing to send, as a
// timer or a click runs while SendCommands waits. The clock moves on by the drain's second
// unless `act` moved it further.
inline void whileDraining(Engine &engine, FakeClock &clock, const std::function<void()> &act)
{
    const QDateTime start = clock.now();
    QTimer step; // goes with the drain, so it never fires into what comes after
    step.setSingleShot(true);
    QObject::connect(&step, &QTimer::timeout, &clock, [&] {
        act();
        const double left = 1.0 - start.msecsTo(clock.now()) / 1000.0;
        if (left > 0)
            clock.jump(left);
    });
    step.start(0);
    engine.queue().SendCommands();
}

// An engine on a headless window, a fake clock and a private folder, with a fatal
// report that throws FatalExit instead of ending the test; with a check routine and a
// Status command of the test's own where it gives them.
struct EngineWorld
{
    explicit EngineWorld(double clockSpeed = 0, CheckRoutine *check = nullptr, std::function<void()> statusCommand = {})
        : clock(FakeClock::firstMoment(), clockSpeed)
        , engine(clock, view, parts(env.workDir(), check, std::move(statusCommand)))
    {
        engine.settings.FileLoc = env.workDir();
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
    void whileDraining(const std::function<void()> &act) { ::whileDraining(engine, clock, act); }
    // Turns the activity log on, verbose or brief, and opens it.
    void openLog(bool brief = false)
    {
        engine.settings.SaveLog = true, engine.settings.LogBrief = brief;
        engine.log().OpenLog();
    }
    // Runs `step`: the box of the fatal report it ends in, or nothing when it returns.
    QString fatal(const std::function<void()> &step)
    {
        try {
            step();
        } catch (const FatalExit &) {
            return view.boxes.value(view.boxes.size() - 1);
        }
        return {};
    }

    static EngineParts parts(const QString &programDirectory, CheckRoutine *check, std::function<void()> statusCommand)
    {
        EngineParts p;
        p.check = check;
        p.statusCommand = std::move(statusCommand);
        p.terminate = [] { throw FatalExit{QStringLiteral("fatal")}; };
        p.programDirectory = programDirectory;
        return p;
    }

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
