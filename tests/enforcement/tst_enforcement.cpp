// SPDX-License-Identifier: MIT
// Check cycles against the simulated server over loopback: the commands on the wire, in
// order, what the server does with them, and the files afterwards.
#include "EngineWorld.h"
#include "SimServer.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

SimPlayer player(int slot, const char *name, const char *ip)
{
    SimPlayer p;
    p.slot = slot;
    p.name = name;
    p.ip = ip;
    p.qport = 1500;
    return p;
}

struct Rig
{
    SimServer sim;
    EngineWorld w{40};
    Settings &s = w.engine.settings;
    qsizetype seen = 0;

    Rig()
    {
        sim.setPassword("pw");
        sim.listen();
        w.connectTo(sim.port(), u"pw"_s);
        s.StatusInterval = 1;
        s.KickPing = false;
        s.SaveLog = true;
        w.engine.log().OpenLog();
    }
    void lists(const QString &file, const QByteArray &bytes)
    {
        TestEnv::writeFile(w.env.workDir() + file, bytes);
        w.engine.lists().LoadAll();
    }
    // One check; the commands the server got from it, without framing and password.
    QList<QByteArray> check()
    {
        w.engine.TkCheck();
        QList<QByteArray> out;
        const QList<SimServer::Datagram> got = sim.received();
        for (; seen < got.size(); ++seen) {
            QByteArray text = got.at(seen).bytes.mid(5);
            out.append(text.startsWith("rcon pw ") ? text.mid(8) : text);
        }
        return out;
    }
    QList<QByteArray> left() const
    {
        QList<QByteArray> names;
        for (const SimPlayer &p : sim.players())
            names.append(p.name);
        return names;
    }
};

} // namespace

class TestEnforcement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scoreAndRanges()
    {
        Rig rig;
        rig.s.KickTK = true;
        rig.s.QPort = rig.s.Rate = true;
        rig.s.QPortMin = 1000, rig.s.QPortMax = 2000;
        rig.s.RateMin = 8000, rig.s.RateMax = 25000;
        rig.s.Ban = true;
        rig.s.BanFor = 11; // TKing and bad words
        SimPlayer steady = player(0, "Steady", "192.0.2.1");
        steady.score = -3, steady.qport = 1000, steady.rate = 8000;
        rig.sim.addPlayer(steady);
        SimPlayer tk = player(1, "Teamkiller", "192.0.2.2");
        tk.score = -4;
        rig.sim.addPlayer(tk);
        SimPlayer qp = player(2, "Qp", "192.0.2.3");
        qp.qport = 2001;
        rig.sim.addPlayer(qp);
        SimPlayer rt = player(3, "Rt", "192.0.2.4");
        rt.rate = 25001;
        rig.sim.addPlayer(rt);

        QCOMPARE(rig.check(), (QList<QByteArray>{"status", "say [Quorvane]: Kicked Teamkiller for for TKing.", "clientkick 1",
                                                 "say [Quorvane]: Kicked Qp for QPort.", "clientkick 2",
                                                 "say [Quorvane]: Kicked Rt for Rate.", "clientkick 3"}));
        QCOMPARE(rig.left(), QList<QByteArray>{"Steady"});
        QCOMPARE(rig.w.file(u"banned.txt"_s), "Teamkiller\r\n"_ba);
        QCOMPARE(rig.w.file(u"bannedIP.txt"_s), "192.0.2.2\r\n"_ba);
        QVERIFY(rig.w.file(u"ReasonBanned.txt"_s).startsWith("Banned IP & name 192.0.2.2 / Teamkiller on 2026-11-22 at 12:00:"));
        QCOMPARE(rig.w.engine.view().gridRowData(1), 1);
        QCOMPARE(rig.w.view.grid.rows.at(1).cells.at(6), u"Kicked (for TKing)"_s);
    }

    void namesAndAddresses()
    {
        Rig rig;
        rig.s.StatusInterval = 2; // a cheap scan first: no slots, no addresses
        rig.s.NameCheck = true;
        rig.s.Ban = true;
        rig.s.BanFor = 100;
        rig.lists(u"banned.txt"_s, "villain\r\n");
        rig.lists(u"bannedIP.txt"_s, "198.51.100.9\r\n192.0.2.50\r\n");
        rig.lists(u"badnames.txt"_s, "cheat\r\n");
        rig.lists(u"immuneIP.txt"_s, "192.0.2.50\r\n");
        rig.sim.addPlayer(player(0, "^1Vil^7lain", "192.0.2.1"));
        rig.sim.addPlayer(player(1, "Sneaky", "198.51.100.9"));
        rig.sim.addPlayer(player(2, "xCHEATx", "192.0.2.3"));
        rig.sim.addPlayer(player(3, "Warden", "192.0.2.50"));

        QCOMPARE(rig.check(), (QList<QByteArray>{"getStatus", "say [Quorvane]: Kicked Villain for banned name.", "kick \"Villain\"",
                                                 "say [Quorvane]: Kicked xCHEATx for bad word in name.", "kick \"xCHEATx\""}));
        QCOMPARE(rig.check(), (QList<QByteArray>{"status", "say [Quorvane]: Kicked Sneaky for banned IP.", "clientkick 1",
                                                 "say [Quorvane]: Immune (Warden / banned IP)."}));
        QCOMPARE(rig.left(), QList<QByteArray>{"Warden"});
        QCOMPARE(rig.w.file(u"banned.txt"_s), "villain\r\nVillain\r\nxCHEATx\r\nSneaky\r\n"_ba);
        QCOMPARE(rig.w.file(u"bannedIP.txt"_s), "198.51.100.9\r\n192.0.2.50\r\n198.51.100.9\r\n"_ba);
        QCOMPARE(rig.w.engine.stats.banadds, 3);
        const QByteArray log = rig.w.file(u"servlog.txt"_s);
        QVERIFY(log.contains("Skipped banning IP of Villain due to unknown IP\r\n\r\nKicked Villain [----] for banned name."));
        // Sneaky's ban puts his name on the list before his name walk: a second hit.
        QVERIFY(log.contains("kickBannedPlayers: 3 players kicked.\r\n\r\nkickBadNamePlayers: 0 players kicked.\r\n\r\n"
                             "kickImpersonators: 0 players kicked."));
    }

    void lastingHighPing()
    {
        Rig rig;
        rig.s.KickPing = true;
        rig.s.PingPasses = 2;
        rig.lists(u"highping.txt"_s, "%name%, your ping of %ping% is over %pinglimit%.\r\n");
        SimPlayer steady = player(0, "Steady", "192.0.2.1");
        steady.ping = 750;
        rig.sim.addPlayer(steady);
        SimPlayer laggy = player(1, "Laggy", "192.0.2.2");
        laggy.ping = 751;
        rig.sim.addPlayer(laggy);
        QCOMPARE(rig.check(), QList<QByteArray>{"status"});
        QCOMPARE(rig.check(), (QList<QByteArray>{"status", "say [Quorvane]: Laggy, your ping of 751 is over 750.", "clientkick 1"}));
        QCOMPARE(rig.left(), QList<QByteArray>{"Steady"});
        QCOMPARE(rig.w.engine.stats.pingkicks, 1);
    }

    void impersonatorWarnedThenKicked()
    {
        Rig rig;
        rig.sim.addPlayer(player(0, "Hawk", "192.0.2.1"));
        QCOMPARE(rig.check(), QList<QByteArray>{"status"});
        rig.sim.addPlayer(player(1, "hawk", "192.0.2.2"));
        const QByteArray warning = "say WARNING: hawk - there is another player already playing with that name. You have 60 sec to change your name.";
        QCOMPARE(rig.check(), (QList<QByteArray>{"status", warning}));
        rig.w.clock.jump(63);
        QCOMPARE(rig.check(), (QList<QByteArray>{"status", "say [Quorvane]: Kicked hawk for stealing names.", "clientkick 1"}));
        QCOMPARE(rig.left(), QList<QByteArray>{"Hawk"});
    }

    void forceKickRoads()
    {
        Rig rig;
        rig.s.ForceKick = true;
        rig.lists(u"banned.txt"_s, "Ghost\r\n^1Gone\r\n");
        rig.sim.addPlayer(player(0, "^1Gone", "192.0.2.1"));
        // No policy but the list ones: through the queue, and the cycle ends there.
        QCOMPARE(rig.check(), (QList<QByteArray>{"kick \"Ghost\"", "kick \"^1Gone\""}));
        QVERIFY(rig.left().isEmpty());
        QVERIFY(rig.w.file(u"servlog.txt"_s).endsWith("...force kicking.\r\n\r\n"));
        // The ping check needs this cycle's table: past the queue, then the status.
        rig.s.KickPing = true;
        const QDateTime before = rig.w.clock.now();
        QCOMPARE(rig.check(), (QList<QByteArray>{"kick \"Ghost\"", "kick \"^1Gone\"", "status"}));
        QVERIFY(before.msecsTo(rig.w.clock.now()) >= 2000);
        QCOMPARE(rig.w.engine.stats.checks, 2);
    }
};

QTEST_GUILESS_MAIN(TestEnforcement)
#include "tst_enforcement.moc"
