// SPDX-License-Identifier: MIT
// The paced queue, with the clock running fast so that seconds pass in milliseconds.
#include "EngineWorld.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"

#include <QTest>

namespace {
const QByteArray printHead("\xFF\xFF\xFF\xFF\x01print\n", 11);
constexpr double speed = 40; // clock seconds per real second

QByteArray commandOf(const QByteArray &datagram)
{
    QByteArray text = datagram.mid(5);
    if (text.startsWith("rcon "))
        text = text.mid(text.indexOf(' ', 5) + 1);
    return text;
}

QList<QByteArray> echoBack(const QByteArray &d)
{
    return {printHead + "ok " + commandOf(d) + "\n"};
}

int timeouts(const QString &pane)
{
    return static_cast<int>(pane.count(QStringLiteral("Warning: SendCommands timed out.\r\n")));
}

} // namespace

class TestCommandQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drainsInOrderWithinTheLastCall()
    {
        EngineWorld w(speed);
        Peer peer;
        peer.answerWith(echoBack);
        w.connectTo(peer.socket.localPort(), QStringLiteral("pw"));
        CommandQueue &q = w.engine.queue();
        QVERIFY(q.AddSrvCmd(QStringLiteral("one"), true, false, true));
        QVERIFY(q.AddSrvCmd(QStringLiteral("two"), false, false, false));
        QVERIFY(q.AddSrvCmd(QStringLiteral("three"), true, false, true, -5));
        QCOMPARE(peer.received.size(), 0);
        const QDateTime before = w.clock.now();
        QVERIFY(q.AddSrvCmd(QStringLiteral("four"), true, true, true));
        const double took = before.msecsTo(w.clock.now()) / 1000.0;
        QCOMPARE(peer.received.size(), 4);
        QCOMPARE(peer.received.at(0), QByteArray("\xFF\xFF\xFF\xFF\x02rcon pw one"));
        QCOMPARE(peer.received.at(1), QByteArray("\xFF\xFF\xFF\xFF\x02two"));
        QCOMPARE(commandOf(peer.received.at(3)), QByteArray("four"));
        QVERIFY2(took >= 5.0 && took < 6.5, qPrintable(QString::number(took)));
        QCOMPARE(q.srvqueueTop, -1);
        QVERIFY(!w.engine.queueDraining);
        QCOMPARE(timeouts(w.engine.pane().text()), 0);
        // Echoes only for the entries that asked for them, each reply behind its echo.
        const QString pane = w.engine.pane().text();
        QVERIFY(pane.indexOf(QStringLiteral(">one")) < pane.indexOf(QStringLiteral("ok one")));
        QVERIFY(!pane.contains(QStringLiteral(">two")));
        QVERIFY(pane.contains(QStringLiteral("ok two")));
    }

    void emptyDrainTakesASecond()
    {
        EngineWorld w(speed);
        Peer peer;
        w.connectTo(peer.socket.localPort());
        const QDateTime before = w.clock.now();
        w.engine.queue().SendCommands();
        const double took = before.msecsTo(w.clock.now()) / 1000.0;
        QVERIFY(took >= 1.0 && took < 1.5);
        QCOMPARE(peer.received.size(), 0);
        // The three queue controls go off and come back.
        QCOMPARE(w.view.enableLog.first(), qMakePair(View::Control::cmdStatus, false));
        QCOMPARE(w.view.enableLog.last(), qMakePair(View::Control::cmdServerInfo, true));
    }

    void timeOuts_data()
    {
        QTest::addColumn<double>("delay");
        QTest::addColumn<int>("intPause");
        QTest::addColumn<bool>("answered");
        QTest::addColumn<int>("expected");
        QTest::newRow("no answer") << 1.0 << 0 << false << 2;
        QTest::newRow("answered") << 1.0 << 0 << true << 0;
        QTest::newRow("delay 0 lets no reply in") << 0.0 << 0 << true << 2;
        QTest::newRow("reply during intPause counts") << 0.0 << 1 << true << 0;
        QTest::newRow("negative intPause is none") << 0.0 << -3 << true << 2;
    }

    void timeOuts()
    {
        QFETCH(double, delay);
        QFETCH(int, intPause);
        QFETCH(bool, answered);
        QFETCH(int, expected);
        EngineWorld w(speed);
        Peer peer;
        if (answered)
            peer.answerWith(echoBack);
        w.connectTo(peer.socket.localPort());
        w.engine.settings.CommandDelay = delay;
        w.engine.settings.SaveLog = true;
        w.engine.settings.LogBrief = true;
        w.engine.log().OpenLog();
        w.engine.queue().AddSrvCmd(QStringLiteral("a"), false, false, true, intPause);
        w.engine.queue().AddSrvCmd(QStringLiteral("b \"x\""), false, true, true, intPause);
        QCOMPARE(timeouts(w.engine.pane().text()), expected);
        w.engine.log().CloseLog();
        const QByteArray log = w.file(QStringLiteral("servlog.txt"));
        QCOMPARE(static_cast<int>(log.count("Error: SendCommands timed out waiting for response. Couldn't send ")),
                 expected);
        if (expected)
            QVERIFY(log.contains("Couldn't send b \"x\"\r\n\r\n"));
        QVERIFY(!w.engine.waitingForServer);
    }

    void lateReplyClearsTheNextEntry()
    {
        EngineWorld w(speed);
        Peer peer;
        // Each command is answered only when the next one comes in.
        peer.answerWith([&peer](const QByteArray &) -> QList<QByteArray> {
            if (peer.received.size() < 2)
                return {};
            return {printHead + "late " + commandOf(peer.received.at(peer.received.size() - 2)) + "\n"};
        });
        w.connectTo(peer.socket.localPort());
        w.engine.queue().AddSrvCmd(QStringLiteral("first"), true);
        w.engine.queue().AddSrvCmd(QStringLiteral("second"), true, true);
        const QString pane = w.engine.pane().text();
        QCOMPARE(timeouts(pane), 1);
        QVERIFY(pane.indexOf(QStringLiteral("Warning")) < pane.indexOf(QStringLiteral(">second")));
        QVERIFY(pane.indexOf(QStringLiteral("late first")) > pane.indexOf(QStringLiteral(">second")));
    }

    void twoDatagramsForOneCommand()
    {
        EngineWorld w(speed);
        Peer peer;
        peer.answerWith([](const QByteArray &) {
            return QList<QByteArray>{printHead + "part one ", printHead + "part two\n"};
        });
        w.connectTo(peer.socket.localPort());
        w.engine.queue().AddSrvCmd(QStringLiteral("status"), true, true, true);
        QVERIFY(w.engine.pane().text().endsWith(QStringLiteral("part one part two\r\n")));
        QCOMPARE(timeouts(w.engine.pane().text()), 0);
    }

    void refusesDuringDrainAndStaysWhole()
    {
        EngineWorld w(speed);
        Peer peer;
        CommandQueue &q = w.engine.queue();
        bool refused = false;
        qint32 topSeen = -2;
        int nestedSends = 0;
        peer.answerWith([&](const QByteArray &d) {
            if (commandOf(d) == "first") {
                // Inside the drain's wait: an addition is refused, and a second drain
                // entered directly must not send the entries again.
                refused = !q.AddSrvCmd(QStringLiteral("intruder"));
                topSeen = q.srvqueueTop;
                const qsizetype before = peer.received.size();
                q.SendCommands();
                nestedSends = static_cast<int>(peer.received.size() - before);
            }
            return QList<QByteArray>{printHead + "ok\n"};
        });
        w.connectTo(peer.socket.localPort());
        q.AddSrvCmd(QStringLiteral("first"));
        q.AddSrvCmd(QStringLiteral("second"));
        q.SendCommands();
        QVERIFY(refused);
        QCOMPARE(topSeen, 1);
        QCOMPARE(nestedSends, 0);
        QCOMPARE(peer.received.size(), 2);
        QCOMPARE(commandOf(peer.received.at(1)), QByteArray("second"));
        QVERIFY(!w.engine.queueDraining);
        QVERIFY(q.AddSrvCmd(QStringLiteral("after")));
        QCOMPARE(q.srvqueueTop, 0);
    }

    void entryBeyondTheTableIsFatal()
    {
        EngineWorld w;
        CommandQueue &q = w.engine.queue();
        for (int i = 0; i < CommandQueue::Size; ++i)
            QVERIFY(q.AddSrvCmd(QStringLiteral("say %1").arg(i)));
        QCOMPARE(q.srvqueueTop, 2048);
        QVERIFY_THROWS_EXCEPTION(FatalExit, q.AddSrvCmd(QStringLiteral("one too many")));
        QCOMPARE(w.view.boxes.size(), 1);
        QVERIFY(w.view.boxes.first().endsWith(QStringLiteral("Error adding to srvqueue (AddSrvCmd)[9]: Subscript out of range")));
    }
};

QTEST_GUILESS_MAIN(TestCommandQueue)
#include "tst_commandqueue.moc"
