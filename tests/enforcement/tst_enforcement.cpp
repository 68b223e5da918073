// SPDX-License-Identifier: MIT
// Check cycles against the simulated server over loopback, one group of policies each:
// the commands on the wire in order, what the server does with them, the files after.
#include "EngineWorld.h"
#include "SimServer.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Wire = QList<QByteArray>;

namespace {

// slot, name, score, ping, address, qport, rate
SimPlayer player(int slot, const char *name, const char *ip, int score = 0, int ping = 50, int qport = 1500, int rate = 9000)
{
    return {slot, name, score, ping, SimPlayer::State::Active, 0, ip, 27960, qport, rate};
}

struct Rig
{
    SimServer sim;
    EngineWorld w{40};
    Settings &s = w.engine.settings;
    qsizetype seen = 0;

    Rig(std::initializer_list<SimPlayer> players)
    {
        sim.setPassword("pw");
        sim.listen();
        w.connectTo(sim.port(), u"pw"_s);
        s.StatusInterval = 1;
        s.KickPing = false;
        s.SaveLog = true;
        w.engine.log().OpenLog();
        for (const SimPlayer &p : players)
            sim.addPlayer(p);
    }
    void lists(const QString &file, const QByteArray &bytes)
    {
        TestEnv::writeFile(w.env.workDir() + file, bytes);
        w.engine.lists().LoadAll();
    }
    // One check; what the server got from it, without framing and password.
    Wire check()
    {
        w.engine.TkCheck();
        Wire out;
        for (const QList<SimServer::Datagram> got = sim.received(); seen < got.size(); ++seen) {
            const QByteArray text = got.at(seen).bytes.mid(5);
            out.append(text.startsWith("rcon pw ") ? text.mid(8) : text);
        }
        return out;
    }
    Wire left() const
    {
        Wire names;
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
        Rig rig{player(0, "Steady", "192.0.2.1", -3, 50, 1000, 8000), player(1, "Edge", "192.0.2.2", 0, 50, 2000, 9000),
                player(2, "Teamkiller", "192.0.2.3", -4), player(3, "Qlow", "192.0.2.4", 0, 50, 999),
                player(4, "Qhigh", "192.0.2.5", 0, 50, 2001), player(5, "Rlow", "192.0.2.6", 0, 50, 1500, 7999),
                player(6, "Rhigh", "192.0.2.7", 0, 50, 1500, 9001)};
        rig.s.StatusInterval = 2; // the cheap scan first: no score, qport or rate known yet
        rig.s.KickTK = rig.s.QPort = rig.s.Rate = rig.s.Ban = true;
        rig.s.QPortMin = 1000, rig.s.QPortMax = 2000, rig.s.RateMin = 8000, rig.s.RateMax = 9000;
        rig.s.BanFor = 11; // TKing and bad words
        QCOMPARE(rig.check(), Wire{"getStatus"});
        QCOMPARE(rig.check(), (Wire{"status", "say [Quorvane]: Kicked Teamkiller for for TKing.", "clientkick 2",
                                    "say [Quorvane]: Kicked Qlow for QPort.", "clientkick 3", "say [Quorvane]: Kicked Qhigh for QPort.",
                                    "clientkick 4", "say [Quorvane]: Kicked Rlow for Rate.", "clientkick 5",
                                    "say [Quorvane]: Kicked Rhigh for Rate.", "clientkick 6"}));
        QCOMPARE(rig.left(), (Wire{"Steady", "Edge"}));
        QCOMPARE(rig.w.file(u"banned.txt"_s), "Teamkiller\r\n"_ba);
        QCOMPARE(rig.w.file(u"bannedIP.txt"_s), "192.0.2.3\r\n"_ba);
        QVERIFY(rig.w.file(u"ReasonBanned.txt"_s).startsWith("Banned IP & name 192.0.2.3 / Teamkiller on 2026-11-22 at 12:00:"));
        QCOMPARE(rig.w.view.grid.rows.at(2).cells.at(6), u"Kicked (for TKing)"_s);
        // The kick is echoed in the pane, the words to the players are not.
        QVERIFY(rig.w.view.pane.contains(u">clientkick 2\r\n"_s));
        QVERIFY(!rig.w.view.pane.contains(u">say"_s));
    }

    void namesAndAddresses()
    {
        Rig rig{player(0, "^1Vil^7lain", "192.0.2.1"), player(1, "Sneaky", "198.51.100.9"), player(2, "xCHEATx", "192.0.2.3"),
                player(3, "Warden", "192.0.2.50")};
        rig.s.StatusInterval = 2; // the cheap scan first: no slots, no addresses
        rig.s.NameCheck = rig.s.Ban = true;
        rig.s.BanFor = 100;
        rig.lists(u"banned.txt"_s, "villain\r\n");
        rig.lists(u"bannedIP.txt"_s, "198.51.100.9\r\n192.0.2.50\r\n");
        rig.lists(u"badnames.txt"_s, "cheat\r\n");
        rig.lists(u"immuneIP.txt"_s, "192.0.2.50\r\n");
        QCOMPARE(rig.check(), (Wire{"getStatus", "say [Quorvane]: Kicked Villain for banned name.", "kick \"Villain\"",
                                    "say [Quorvane]: Kicked xCHEATx for bad word in name.", "kick \"xCHEATx\""}));
        QCOMPARE(rig.check(), (Wire{"status", "say [Quorvane]: Kicked Sneaky for banned IP.", "clientkick 1",
                                    "say [Quorvane]: Immune (Warden / banned IP)."}));
        QCOMPARE(rig.left(), Wire{"Warden"});
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
        Rig rig{player(0, "Steady", "192.0.2.1", 0, 750), player(1, "Laggy", "192.0.2.2", 0, 751)};
        rig.s.KickPing = true;
        rig.s.PingPasses = 2;
        rig.lists(u"highping.txt"_s, "%name%, your ping of %ping% is over %pinglimit%.\r\n");
        QCOMPARE(rig.check(), Wire{"status"});
        QCOMPARE(rig.check(), (Wire{"status", "say [Quorvane]: Laggy, your ping of 751 is over 750.", "clientkick 1"}));
        QCOMPARE(rig.left(), Wire{"Steady"});
        QCOMPARE(rig.w.engine.stats.pingkicks, 1);
    }

    void impersonatorWarnedThenKicked()
    {
        Rig rig{player(0, "Hawk", "192.0.2.1")};
        QCOMPARE(rig.check(), Wire{"status"});
        rig.sim.addPlayer(player(1, "hawk", "192.0.2.2"));
        QCOMPARE(rig.check(), (Wire{"status", "say WARNING: hawk - there is another player already playing with that name. "
                                              "You have 60 sec to change your name."}));
        rig.w.clock.jump(63);
        QCOMPARE(rig.check(), (Wire{"status", "say [Quorvane]: Kicked hawk for stealing names.", "clientkick 1"}));
        QCOMPARE(rig.left(), Wire{"Hawk"});
    }

    void forceKickRoads()
    {
        Rig rig{player(0, "^1Gone", "192.0.2.1")};
        rig.s.ForceKick = true;
        rig.lists(u"banned.txt"_s, "Ghost\r\n^1Gone\r\n");
        // No other policy needs this cycle's table: through the queue, and the cycle ends.
        QCOMPARE(rig.check(), (Wire{"kick \"Ghost\"", "kick \"^1Gone\""}));
        QVERIFY(rig.left().isEmpty());
        QVERIFY(rig.w.file(u"servlog.txt"_s).endsWith("...force kicking.\r\n\r\n"));
        // The ping check needs it: past the queue, every event held back, then the status.
        rig.s.KickPing = true;
        const QDateTime before = rig.w.clock.now();
        QCOMPARE(rig.check(), (Wire{"kick \"Ghost\"", "kick \"^1Gone\"", "status"}));
        QVERIFY(before.msecsTo(rig.w.clock.now()) >= 2000);
        QCOMPARE(rig.w.engine.stats.checks, 2);
    }
};

QTEST_GUILESS_MAIN(TestEnforcement)
#include "tst_enforcement.moc"
