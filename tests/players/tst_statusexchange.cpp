// SPDX-License-Identifier: MIT
// A status exchange end to end: the engine against the simulated server over loopback.
#include "EngineWorld.h"
#include "SimServer.h"
#include "link/CommandQueue.h"
#include "players/PlayerState.h"

#include <QTest>

namespace {
constexpr double speed = 40;

SimPlayer player(const char *name, int ping, const char *ip, quint16 port, int score = 0)
{
    SimPlayer p;
    p.name = name;
    p.ping = ping;
    p.ip = ip;
    p.port = port;
    p.score = score;
    p.qport = 1000 + port % 1000;
    return p;
}
} // namespace

class TestStatusExchange : public QObject
{
    Q_OBJECT

    struct Rig
    {
        SimServer sim;
        EngineWorld w{speed};
        Rig()
        {
            sim.setPassword("pw");
            sim.setMap("obj/obj_team2");
            sim.listen();
            w.connectTo(sim.port(), QStringLiteral("pw"));
        }
        QStringList row(int r) const { return w.view.grid.rows.at(r).cells; }
    };

private Q_SLOTS:
    void statusFillsGridAndPanel()
    {
        Rig rig;
        rig.sim.addPlayer(player("^1Red^7Baron", 48, "192.0.2.7", 12203, 12));
        rig.sim.addPlayer(player("Some Player", 999, "198.51.100.4", 27960, -2));
        SimPlayer zombie = player("Zed", 0, "203.0.113.9", 1024);
        zombie.state = SimPlayer::State::Zombie;
        rig.sim.addPlayer(zombie);
        rig.sim.addPlayer(player("Quick", 51, "203.0.113.10", 1025, 3));

        rig.w.engine.mnuStatus_Click();

        QCOMPARE(rig.w.engine.players().currentCount, 4);
        const GridView &g = rig.w.view.grid;
        QCOMPARE(g.header, (QStringList{QStringLiteral("Client"), QStringLiteral("Name"), QStringLiteral("Ping"),
                                        QStringLiteral("Score"), QStringLiteral("IP"), QStringLiteral("Joined"),
                                        QStringLiteral("Status"), QStringLiteral("Warn")}));
        QCOMPARE(g.rows.size(), 6); // four players and the two empty rows
        // Joined when the reply was digested: a drain's first second and one CommandDelay on.
        QStringList first = rig.row(0);
        QVERIFY2(first.takeAt(5).startsWith(QStringLiteral("12:00:0")), qPrintable(rig.row(0).at(5)));
        QCOMPARE(first, (QStringList{QStringLiteral("0"), QStringLiteral("RedBaron"), QStringLiteral("48"),
                                     QStringLiteral("12"), QStringLiteral("192.0.2.7"), QStringLiteral("Ok"),
                                     QStringLiteral("0/3")}));
        QCOMPARE(rig.row(1).at(1), QStringLiteral("Some Player"));
        QCOMPARE(rig.row(2).at(2), QStringLiteral("ZMBI"));
        QCOMPARE(g.rows.at(3).playerNumber, 4);
        QCOMPARE(rig.w.view.labels.value(View::Label::lblPlayers), QStringLiteral("Players (C/T): 4 / 4"));
        QCOMPARE(rig.w.view.labels.value(View::Label::lblPing), QStringLiteral("Ping (L/H): 48 / 51"));
        QCOMPARE(rig.w.view.labels.value(View::Label::lblPing2), QStringLiteral("Ping (Avg/999): 50 / 1"));
        QCOMPARE(rig.w.view.labels.value(View::Label::lblMap), QStringLiteral("Map (C/T): obj/obj_team2 / 0"));
        QCOMPARE(rig.w.view.trayTip, QStringLiteral("Players:4/4\r\nMap:obj/obj_team2\r\nChecks:0\r\nKicks:0\r\nBans:0"));

        // The next scan carries the players over: nobody new.
        rig.sim.removePlayer(2);
        rig.w.engine.mnuStatus_Click();
        QCOMPARE(rig.w.engine.players().currentCount, 3);
        QCOMPARE(rig.w.engine.stats.totalplayers, 4);
    }

    void cheapScanWithEqualNamesBecomesFull()
    {
        Rig rig;
        rig.sim.addPlayer(player("Twin", 40, "192.0.2.1", 1001));
        rig.sim.addPlayer(player("Twin", 60, "192.0.2.2", 1002));
        QVERIFY(rig.w.engine.statusCycle().sendStatus(QStringLiteral("getStatus")));
        const QString pane = rig.w.engine.pane().text();
        const qsizetype notice = pane.indexOf(QStringLiteral("\r\nDetected impersonator - running a full status to trap IPs\r\n"));
        QVERIFY(notice > pane.indexOf(QStringLiteral(">getStatus")));
        QVERIFY(pane.indexOf(QStringLiteral(">status\r\n")) > notice);
        QCOMPARE(rig.w.engine.players().currentCount, 2);
        QCOMPARE(rig.w.engine.players().currentPlayers[2].ip, QStringLiteral("192.0.2.2"));
        // The cheap datagram went without the password, the full one with it.
        QList<QByteArray> sent;
        for (const auto &d : rig.sim.received())
            sent.append(d.bytes);
        QCOMPARE(sent, (QList<QByteArray>{QByteArray("\xFF\xFF\xFF\xFF\x02getStatus"),
                                          QByteArray("\xFF\xFF\xFF\xFF\x02rcon pw status")}));
    }

    void noServerLeavesTheTable()
    {
        Rig rig;
        rig.sim.addPlayer(player("Stays", 40, "192.0.2.1", 1001));
        rig.w.engine.mnuStatus_Click();
        rig.sim.close();
        rig.w.engine.settings.SaveLog = true;
        rig.w.engine.log().OpenLog();
        QVERIFY(!rig.w.engine.statusCycle().sendStatus(QStringLiteral("status")));
        QCOMPARE(rig.w.engine.players().currentCount, 1);
        QVERIFY(rig.w.engine.pane().text().endsWith(QStringLiteral("Warning: SendCommands timed out.\r\n")));
    }

    void checkAlternatesCommandsAndSkipsWhileWaiting()
    {
        Rig rig;
        rig.sim.addPlayer(player("One", 40, "192.0.2.1", 1001));
        rig.w.engine.settings.StatusInterval = 2;
        rig.w.engine.TkCheck();
        rig.w.engine.TkCheck();
        rig.w.engine.waitingForServer = true;
        rig.w.engine.TkCheck();
        rig.w.engine.waitingForServer = false;
        rig.w.engine.TkCheck();
        QCOMPARE(rig.w.engine.stats.checks, 3);
        QList<QByteArray> sent;
        for (const auto &d : rig.sim.received())
            sent.append(d.bytes.mid(5));
        QCOMPARE(sent, (QList<QByteArray>{"getStatus", "rcon pw status", "getStatus"}));
        QVERIFY(!rig.w.engine.checkRunning);
        QCOMPARE(rig.w.engine.players().currentCount, 1);
    }
};

QTEST_GUILESS_MAIN(TestStatusExchange)
#include "tst_statusexchange.moc"
