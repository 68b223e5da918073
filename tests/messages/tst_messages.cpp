// SPDX-License-Identifier: MIT
// The six lists (file format, table forms, the 2048-entry bound), the %
// variables (their order, the rules of their replacement, the computed values) and the
// announcer on a fast test clock.
#include "EngineWorld.h"
#include "messages/Announcer.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QStringList files = {u"servmsg.txt"_s, u"highping.txt"_s, u"banned.txt"_s,
                           u"bannedIP.txt"_s, u"badnames.txt"_s, u"immuneIP.txt"_s};
} // namespace

class TestMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Missing files are created empty. Each table holds its own file in its own form; 2048
    // entries load, any line end ends a line, lines of blanks do not count, a line of a tab
    // and one that begins with a semicolon do; a 2049th ends the program with the loader's words.
    void listsLoad()
    {
        const QStringList words{u"server messages"_s, u"high ping messages"_s, u"banned names"_s,
                                u"banned IPs"_s,      u"bad names"_s,          u"Immune IPs"_s};
        const QStringList first{u" S\u00F6ren b "_s, u" S\u00F6ren b "_s, u" S\u00F6ren b "_s,
                                u"S\u00F6ren b"_s,   u" S\u00D6REN B "_s, u" S\u00F6ren b "_s};
        QByteArray lines = " S\xF6ren b \r\n";
        for (int i = 1; i < 2047; ++i)
            lines += ";" + QByteArray::number(i) + (i % 2 ? "\n \r" : "\r\n \r\n");
        lines += "\t\r\n\r\n";
        for (int which = 0; which < files.size(); ++which) {
            EngineWorld w;
            TestEnv::writeFile(w.env.workDir() + files[which], lines);
            w.engine.LoadSettings(u"quorvane12"_s);
            for (const QString &file : files)
                QVERIFY(QFile::exists(w.env.workDir() + file));
            const ListFiles &l = w.engine.lists();
            const ListTable *tables[] = {&l.serverMessages(), &l.highPingMessages(), &l.bannedNames(),
                                         &l.bannedIPs(),      &l.badNames(),         &l.immuneIPs()};
            const ListTable &t = *tables[which];
            QCOMPARE(QStringList({QString::number(t.top), t.at(0), t.at(1), t.at(2047)}),
                     QStringList({u"2047"_s, first[which], u";1"_s, u"\t"_s}));
            TestEnv::writeFile(w.env.workDir() + files[which], lines + "x2048\r\n");
            QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.LoadSettings(u"quorvane12"_s));
            QVERIFY(w.file(u"ErrLog.txt"_s).contains("AppMsg: Error loading " + words[which].toLatin1() + "\"\r\n"));
        }
    }

    // The program started on the 20th at 06:29, 5.52 hours before the hour now (noon of the 22nd).
    void expand()
    {
        EngineWorld w;
        TestEnv::writeFile(w.env.workDir() + u"bannedIP.txt"_s, "192.0.2.1\r\n192.0.2.1\r\n");
        w.clock.setNow(QDateTime(QDate(2026, 11, 20), QTime(6, 29)));
        w.engine.LoadSettings(u"quorvane12"_s); // the start of the run
        w.clock.setNow(FakeClock::firstMoment());
        Stats &s = w.engine.stats;
        s.pingkicks = 1, s.bankicks = 2, s.banadds = 3, s.players = 4, s.totalplayers = 5;
        s.checks = 6, s.tkkicks = 7, s.totalmaps = 8, s.avgping = 9;
        w.engine.settings.Host = u"203.0.113.5"_s;
        PlayerRecord &r = w.engine.players().currentPlayers[1];
        r.ip = u"192.0.2.9"_s, r.ping = u"ZMBI"_s;
        const QString m = u"obj/obj_team2"_s, bob = u"Bob"_s;
        // message, player, map, name, expected
        const QList<std::tuple<QString, int, QString, QString, QString>> rows{
            {u"%MAP% %foo% %map% %map"_s, 1, m, bob, u"%MAP% %foo% obj/obj_team2 %map"_s}, // capitals and others stay
            {u"%pingkicks%%bankicks%%banadds%%players%%totalplayers%%checks%%tkkicks%%totalmaps%%avgping%"_s, -1, m, bob, u"123456789"_s},
            {u"%startdate% %starttime% up %uptime%"_s, -1, m, bob, u"2026-11-20 06:29:00 up 2d / 6h"_s},
            {u"%serverip%:%serverport% %pinglimit% for %pingtime%s"_s, -1, m, bob, u"203.0.113.5:12203 750 for 60s"_s},
            {u"%numbanip%/%numbanname%"_s, -1, m, bob, u"2/0"_s},
            {u"%name% [%ip%] %ping%"_s, 1, m, bob, u"Bob [192.0.2.9] ZMBI"_s},
            {u"%name% [%ip%] %ping% on %map%"_s, -1, m, bob, u"%name% [%ip%] %ping% on obj/obj_team2"_s}, // no player: they stay
            {u"%%name%"_s, 1, m, bob, u"%Bob"_s},
            {u"%name%"_s, 1, m, u"%map%"_s, m},                     // a later pass expands a value
            {u"%map%"_s, 1, u"%name%"_s, bob, u"%name%"_s},         // an earlier one does not
            {u"%name%!"_s, 1, m, u"%name%"_s, u"%name%!"_s},        // no rescan
            {u"%map%map%"_s, -1, m, bob, u"obj/obj_team2map%"_s},   // left to right, no overlap
            {u"%map%%map%"_s, -1, QString(), bob, u"%map%%map%"_s}, // nothing but empty values stays
            {u"on %map%"_s, -1, QString(), bob, u"on "_s}};
        for (const auto &[message, player, map, name, expected] : rows) {
            s.map = map;
            r.name = name;
            QCOMPARE(w.engine.variables().ExpandVariables(message, player), expected);
        }
        s.starttime = (17 * 60 + 31) / 1440.0; // 5.52 hours after the hour now
        w.engine.settings.CheckInt = 12500;
        QCOMPARE(w.engine.variables().ExpandVariables(u"%uptime% %pingtime%"_s, -1), u"2d / -6h 37.5"_s);
        w.engine.settings.CheckInt = 20000, w.engine.settings.PingPasses = 5000;
        QCOMPARE(w.engine.variables().ExpandVariables(u"%pingtime%"_s, -1), u"100000"_s);
        w.engine.settings.CheckInt = 5001, w.engine.settings.PingPasses = 5;
        QCOMPARE(w.engine.variables().ExpandVariables(u"%pingtime%"_s, -1), u"25.005"_s);
    }

    // Armed by the load of the window, a minute a tick: with the engine stopped every second
    // tick is due and says nothing; running, the lines go in turn and round again, blank ones
    // skipped, the head from the trimmed voice, no player's variables. Only "ON" arms the
    // timer. A blank voice leaves no colon; an emptied file leaves the old first line.
    // Refused or random, by hand. At 600 clock seconds a real second the minute timer ticks
    // every 100 ms; a peer on loopback stands for the server and answers every command, and
    // Start runs no status exchange.
    void said()
    {
        EngineWorld w(600, nullptr, [] {});
        Peer peer;
        peer.answerWith([](const QByteArray &) { return QList<QByteArray>{"\xff\xff\xff\xffprint\n"_ba}; });
        const auto messages = [&w](const QByteArray &lines) {
            TestEnv::writeFile(w.env.workDir() + u"servmsg.txt"_s, lines);
            w.engine.lists().LoadServerMessages();
        };
        const auto sent = [&peer](qsizetype count) { // the commands that reached the server, once `count` have
            QStringList out;
            [[maybe_unused]] const bool all = QTest::qWaitFor([&] { return peer.received.size() >= count; }, 5000);
            for (const QByteArray &d : peer.received)
                out << QString::fromLatin1(d.mid(d.indexOf("rcon pw ") + 8));
            return out;
        };
        messages("one\r\n\r\n   \r\n%map% %name%%ip% %numbanname%/%pinglimit%\r\n"_ba);
        Settings &s = w.engine.settings;
        s.Voice = u"  [Q]  "_s, s.lngAnnounce = 2, s.CommandDelay = 0, s.MsgRandom = false;
        w.engine.stats.map = u"dm/mohdm1"_s;
        s.CheckInt = 2000000000; // no check comes while the test runs
        s.intAnnouce = 1, s.LocalPort = 0, s.Port = peer.socket.localPort(), s.Host = u"127.0.0.1"_s, s.Pwd = u"pw"_s;
        w.engine.Form_Load(QString()); // puts the settings into the fields
        Announcer &a = w.engine.announcer();
        QVERIFY(a.timAnnounce.isActive() && a.timAnnounce.interval() == 60000);
        QList<qint32> counts;
        connect(&a.timAnnounce, &Ticker::tick, this, [&] { counts << a.announceTicks; });
        QVERIFY(QTest::qWaitFor([&] { return counts.size() >= 4; }, 5000));
        QVERIFY(peer.received.isEmpty());
        w.engine.cmdStart_Click();
        const QString var = u"dm/mohdm1 %name%%ip% 0/750"_s;
        QCOMPARE(sent(3).mid(0, 3), QStringList({u"say [Q]: one"_s, u"say [Q]: "_s + var, u"say [Q]: one"_s}));
        a.announceTicks = 1;
        a.Announce_Timer_Control(u"on"_s);
        QVERIFY(!a.timAnnounce.isActive() && a.announceTicks == 0);
        QCOMPARE(counts.mid(0, 4), QList<qint32>({1, 0, 1, 0}));
        const qsizetype before = sent(3).size();
        s.lngAnnounce = 0; // every tick
        s.Voice = u"   "_s;
        a.timAnnounce_Timer();
        messages(""_ba);
        a.timAnnounce_Timer();
        // Refused while the queue drains: dropped, told in the pane and the log; the sequence moves on.
        messages("a\r\nb\r\nc\r\n"_ba);
        w.openLog();
        QString pane;
        QByteArray log;
        w.whileDraining([&] {
            a.timAnnounce_Timer();
            pane = w.engine.pane().text(), log = w.file(u"servlog.txt"_s);
        });
        QVERIFY(pane.endsWith(u"\r\nError sending timed announcement.\r\n"_s));
        QVERIFY(log.endsWith("\r\n\r\nError sending timed announcement.\r\n\r\n"));
        a.timAnnounce_Timer();
        QCOMPARE(sent(before + 3).mid(before), QStringList({u"say "_s + var, u"say one"_s, u"say b"_s}));
        // Random picks reach every line and leave the sequence be.
        s.MsgRandom = true;
        for (int i = 0; i < 40; ++i)
            a.timAnnounce_Timer();
        QStringList picked = sent(before + 43).mid(before + 3);
        picked.removeDuplicates();
        picked.sort();
        QCOMPARE(picked, QStringList({u"say a"_s, u"say b"_s, u"say c"_s}));
        QCOMPARE(w.engine.lists().nextMessage, 2);
    }
};

QTEST_GUILESS_MAIN(TestMessages)
#include "tst_messages.moc"
