// SPDX-License-Identifier: MIT
// The six lists (file format, table forms, the 2048-entry bound, appending), the %
// variables (their order, the rules of their replacement, the computed values) and the
// announcer on a fast test clock.
#include "EngineWorld.h"
#include "link/RconLink.h"
#include "messages/Announcer.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QStringList files = {u"servmsg.txt"_s, u"highping.txt"_s, u"banned.txt"_s,
                           u"bannedIP.txt"_s, u"badnames.txt"_s, u"immuneIP.txt"_s};

const ListTable &tableOf(ListFiles &l, int which)
{
    const ListTable *tables[] = {&l.serverMessages(), &l.highPingMessages(), &l.bannedNames(),
                                 &l.bannedIPs(),      &l.badNames(),         &l.immuneIPs()};
    return *tables[which];
}

// 600 clock seconds a real second: the minute timer ticks every 100 ms. A peer on loopback
// stands for the server and answers every command.
struct Announcing : EngineWorld
{
    Announcing() : EngineWorld(600)
    {
        peer.answerWith([](const QByteArray &) { return QList<QByteArray>{"\xff\xff\xff\xffprint\n"_ba}; });
        pointAt(peer.socket.localPort(), u"pw"_s);
        engine.settings.CommandDelay = 0;
        engine.settings.lngAnnounce = 1;
        engine.settings.MsgRandom = false;
    }
    void messages(const QByteArray &lines)
    {
        TestEnv::writeFile(env.workDir() + u"servmsg.txt"_s, lines);
        engine.lists().LoadServerMessages();
    }
    // The commands that reached the server, once `count` have.
    QStringList said(qsizetype count)
    {
        QStringList out;
        [[maybe_unused]] const bool all = QTest::qWaitFor([&] { return peer.received.size() >= count; }, 5000);
        for (const QByteArray &d : peer.received)
            out << QString::fromLatin1(d.mid(d.indexOf("rcon pw ") + 8));
        return out;
    }
    Peer peer;
};
} // namespace

class TestMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void forms_data()
    {
        QTest::addColumn<int>("which");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("blanks skipped, tab and leading blank kept")
            << 0 << QByteArray("   \r\n\t\r\n abc\r\n\r\n;not a comment") << QStringList{u"\t"_s, u" abc"_s, u";not a comment"_s};
        QTest::newRow("LF and CR end lines too") << 1 << QByteArray("one\ntwo\rthree\r\n") << QStringList{u"one"_s, u"two"_s, u"three"_s};
        QTest::newRow("names as read, Latin-1") << 2 << QByteArray(" S\xF6ren \r\nS\xF6ren\r\n")
                                               << QStringList{u" S\u00F6ren "_s, u"S\u00F6ren"_s};
        QTest::newRow("addresses trimmed") << 3 << QByteArray("  192.0.2.1  \r\n192.0.2.1\t\r\n")
                                           << QStringList{u"192.0.2.1"_s, u"192.0.2.1\t"_s};
        QTest::newRow("bad names in upper case, blanks stay") << 4 << QByteArray("Foo bar \r\n\xE9t\xDF\xFF\r\n")
                                                              << QStringList{u"FOO BAR "_s, u"\u00C9T\u00DF\u00FF"_s};
        QTest::newRow("immune as read") << 5 << QByteArray("192.0.2.1 \r\n") << QStringList{u"192.0.2.1 "_s};
    }

    // Missing files are created empty; each table holds its own file in its own form.
    void forms()
    {
        QFETCH(int, which);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, expected);
        EngineWorld w;
        TestEnv::writeFile(w.env.workDir() + files[which], bytes);
        w.engine.LoadSettings(u"quorvane12"_s);
        for (int i = 0; i < files.size(); ++i) {
            QVERIFY(QFile::exists(w.env.workDir() + files[i]));
            const ListTable &t = tableOf(w.engine.lists(), i);
            QStringList entries;
            for (qint32 k = 0; k <= t.top; ++k)
                entries.append(t.at(k));
            QCOMPARE(entries, i == which ? expected : QStringList());
        }
    }

    void bound_data()
    {
        QTest::addColumn<int>("which");
        QTest::addColumn<QString>("words");
        QTest::newRow("servmsg") << 0 << u"Error loading server messages"_s;
        QTest::newRow("highping") << 1 << u"Error loading high ping messages"_s;
        QTest::newRow("banned") << 2 << u"Error loading banned names"_s;
        QTest::newRow("bannedIP") << 3 << u"Error loading banned IPs"_s;
        QTest::newRow("badnames") << 4 << u"Error loading bad names"_s;
        QTest::newRow("immuneIP") << 5 << u"Error loading Immune IPs"_s;
    }

    // 2048 entries load, blank lines between them not counted and a line of a tab counted;
    // a 2049th ends the program with the loader's words.
    void bound()
    {
        QFETCH(int, which);
        QFETCH(QString, words);
        EngineWorld w;
        QByteArray lines;
        for (int i = 0; i < 2047; ++i)
            lines += "x" + QByteArray::number(i) + "\r\n \r\n";
        lines += "\t\r\n\r\n";
        TestEnv::writeFile(w.env.workDir() + files[which], lines);
        w.engine.LoadSettings(u"quorvane12"_s);
        QCOMPARE(tableOf(w.engine.lists(), which).top, 2047);
        QCOMPARE(tableOf(w.engine.lists(), which).at(2047), u"\t"_s);

        TestEnv::writeFile(w.env.workDir() + files[which], lines + "x2048\r\n");
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.LoadSettings(u"quorvane12"_s));
        QVERIFY(w.file(u"ErrLog.txt"_s).contains("AppMsg: " + words.toLatin1() + "\"\r\n"));
        QCOMPARE(w.view.boxes.size(), 1);
    }

    void appendCreatesAndFailsFatally()
    {
        EngineWorld w;
        w.engine.lists().AppendToFile(u"banned.txt"_s, u"S\u00F6ren"_s);
        w.engine.lists().AppendToFile(u"banned.txt"_s, u"S\u00F6ren"_s);
        QCOMPARE(w.file(u"banned.txt"_s), QByteArray("S\xF6ren\r\nS\xF6ren\r\n"));
        // A folder that cannot be written: here, one that is not there.
        w.engine.settings.FileLoc = w.env.workDir() + u"gone/"_s;
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.lists().AppendToFile(u"banned.txt"_s, u"x y"_s));
        QVERIFY(w.view.boxes.value(0).contains(u"\r\n\r\nError appending x y to banned.txt[75]"_s));
    }

    void expand_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("player");
        QTest::addColumn<QString>("map");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        const QString m = u"obj/obj_team2"_s, bob = u"Bob"_s;
        QTest::newRow("no variable") << u"Play fair."_s << -1 << m << bob << u"Play fair."_s;
        QTest::newRow("unknown and capitals stay") << u"%MAP% %foo% %map"_s << 1 << m << bob << u"%MAP% %foo% %map"_s;
        QTest::newRow("statistics") << u"%pingkicks%%bankicks%%banadds%%players%%totalplayers%%checks%%tkkicks%%totalmaps%%avgping%"_s
                                    << -1 << m << bob << u"123456789"_s;
        QTest::newRow("start and uptime") << u"%startdate% %starttime% up %uptime%"_s << -1 << m << bob
                                          << u"2026-11-20 06:29:00 up 2d / 6h"_s;
        QTest::newRow("server and limits") << u"%serverip%:%serverport% %pinglimit% for %pingtime%s"_s << -1 << m << bob
                                           << u"203.0.113.5:12203 750 for 60s"_s;
        QTest::newRow("list counts") << u"%numbanip%/%numbanname%"_s << -1 << m << bob << u"2/0"_s;
        QTest::newRow("player fields") << u"%name% [%ip%] %ping%"_s << 1 << m << bob << u"Bob [192.0.2.9] ZMBI"_s;
        QTest::newRow("no player: fields stay") << u"%name% [%ip%] %ping% on %map%"_s << -1 << m << bob
                                                << u"%name% [%ip%] %ping% on obj/obj_team2"_s;
        QTest::newRow("percent before a variable") << u"%%name%"_s << 1 << m << bob << u"%Bob"_s;
        QTest::newRow("later pass expands a value") << u"%name%"_s << 1 << m << u"%map%"_s << m;
        QTest::newRow("earlier pass does not") << u"%map%"_s << 1 << u"%name%"_s << bob << u"%name%"_s;
        QTest::newRow("no rescan") << u"%name%!"_s << 1 << m << u"%name%"_s << u"%name%!"_s;
        QTest::newRow("left to right, no overlap") << u"%map%map%"_s << -1 << m << bob << u"obj/obj_team2map%"_s;
        QTest::newRow("nothing but empty maps stays") << u"%map%%map%"_s << -1 << QString() << bob << u"%map%%map%"_s;
        QTest::newRow("empty map beside text") << u"on %map%"_s << -1 << QString() << bob << u"on "_s;
    }

    // Noon of 2026-11-22; the program started on the 20th at 06:29, 5.52 hours before the hour now.
    void expand()
    {
        QFETCH(int, player);
        EngineWorld w;
        TestEnv::writeFile(w.env.workDir() + u"bannedIP.txt"_s, "192.0.2.1\r\n192.0.2.1\r\n");
        w.engine.LoadSettings(u"quorvane12"_s);
        Stats &s = w.engine.stats;
        s.startdate = QDate(2026, 11, 20);
        s.starttime = (6 * 60 + 29) / 1440.0;
        s.pingkicks = 1, s.bankicks = 2, s.banadds = 3, s.players = 4, s.totalplayers = 5;
        s.checks = 6, s.tkkicks = 7, s.totalmaps = 8, s.avgping = 9;
        QFETCH(QString, map);
        s.map = map;
        w.engine.settings.Host = u"203.0.113.5"_s;
        PlayerRecord &r = w.engine.players().currentPlayers[1];
        QFETCH(QString, name);
        r.name = name;
        r.ip = u"192.0.2.9"_s;
        r.ping = u"ZMBI"_s;
        QFETCH(QString, message);
        QTEST(w.engine.ExpandVariables(message, player), "expected");
    }

    void computedValues()
    {
        EngineWorld w;
        Settings &s = w.engine.settings;
        w.engine.stats.startdate = QDate(2026, 11, 20);
        w.engine.stats.starttime = (17 * 60 + 31) / 1440.0; // 5.52 hours after the hour now
        s.CheckInt = 12500;
        QCOMPARE(w.engine.ExpandVariables(u"%uptime% %pingtime%"_s, -1), u"2d / -6h 37.5"_s);
        s.CheckInt = 20000, s.PingPasses = 5000;
        QCOMPARE(w.engine.ExpandVariables(u"%pingtime%"_s, -1), u"100000"_s);
        s.CheckInt = 5001, s.PingPasses = 5;
        QCOMPARE(w.engine.ExpandVariables(u"%pingtime%"_s, -1), u"25.005"_s);
    }

    void said_data()
    {
        QTest::addColumn<QString>("voice");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("in turn, round again") << u"  [Q]  "_s << "one\r\n\r\n   \r\ntwo\r\n"_ba
                                               << QStringList{u"say [Q]: one"_s, u"say [Q]: two"_s, u"say [Q]: one"_s};
        QTest::newRow("blank voice") << u"   "_s << "hi\r\n"_ba << QStringList{u"say hi"_s, u"say hi"_s};
        QTest::newRow("empty list") << u"[Q]"_s << ""_ba << QStringList{u"say [Q]: "_s};
        QTest::newRow("variables, no player") << u"[Q]"_s << "%map% %name%%ip% %numbanname%/%pinglimit%\r\n"_ba
                                              << QStringList{u"say [Q]: dm/mohdm1 %name%%ip% 0/750"_s};
    }

    // Armed by the load of the window, one announcement each minute while the engine runs.
    void said()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, expected);
        Announcing w;
        w.messages(file);
        Settings &s = w.engine.settings;
        QFETCH(QString, voice);
        s.Voice = voice;
        w.engine.stats.map = u"dm/mohdm1"_s;
        s.intAnnouce = 1;
        s.LocalPort = 0;
        s.Host = u"127.0.0.1"_s; // the load puts the settings into the fields
        s.Port = w.peer.socket.localPort();
        s.Pwd = u"pw"_s;
        w.engine.Form_Load(QString());
        QVERIFY(w.engine.announcer().timAnnounce.isActive());
        QCOMPARE(w.engine.announcer().timAnnounce.interval(), 60000);
        w.engine.engineRunning = true; // as Start leaves it, without its status exchange
        QCOMPARE(w.said(expected.size()).mid(0, expected.size()), expected);
    }

    void count_data()
    {
        QTest::addColumn<qint32>("every");
        QTest::addColumn<QList<qint32>>("counts");
        QTest::newRow("3 minutes") << 3 << QList<qint32>{1, 2, 0, 1, 2, 0};
        QTest::newRow("1 minute") << 1 << QList<qint32>{0, 0, 0};
        QTest::newRow("0 is every tick") << 0 << QList<qint32>{0, 0, 0};
    }

    // With the engine stopped the count still runs and returns to 0, and nothing is said.
    void count()
    {
        QFETCH(qint32, every);
        QFETCH(QList<qint32>, counts);
        Announcing w;
        w.messages("x\r\n"_ba);
        w.engine.settings.lngAnnounce = every;
        Announcer &a = w.engine.announcer();
        QList<qint32> seen;
        connect(&a.timAnnounce, &Ticker::tick, this, [&] { seen << a.announceTicks; });
        a.announceTicks = 5;
        a.Announce_Timer_Control(u"ON"_s);
        QCOMPARE(a.announceTicks, 0);
        QVERIFY(QTest::qWaitFor([&] { return seen.size() >= counts.size(); }, 5000));
        QCOMPARE(seen.mid(0, counts.size()), counts);
        a.announceTicks = 2;
        a.Announce_Timer_Control(u"on"_s); // anything but "ON" stops it
        QVERIFY(!a.timAnnounce.isActive() && a.announceTicks == 0);
        QVERIFY(w.peer.received.isEmpty());
    }

    // Random picks reach every line and leave the sequence where it stood.
    void randomPicksAll()
    {
        Announcing w;
        w.messages("a\r\nb\r\nc\r\n"_ba);
        w.engine.link().bind(0);
        w.engine.settings.MsgRandom = true;
        w.engine.lists().nextMessage = 1;
        w.engine.engineRunning = true;
        for (int i = 0; i < 40; ++i)
            w.engine.announcer().timAnnounce_Timer();
        QStringList said = w.said(40);
        said.removeDuplicates();
        said.sort();
        QCOMPARE(said, QStringList({u"say [Quorvane]: a"_s, u"say [Quorvane]: b"_s, u"say [Quorvane]: c"_s}));
        QCOMPARE(w.engine.lists().nextMessage, 1);
    }

    // While the queue drains the announcement is refused and dropped; the sequence moves on.
    void refusedWhileDraining()
    {
        Announcing w;
        w.messages("a\r\nb\r\n"_ba);
        w.engine.link().bind(0);
        w.engine.settings.SaveLog = true;
        w.engine.log().OpenLog();
        w.engine.engineRunning = true;
        w.engine.queueDraining = true;
        Announcer &a = w.engine.announcer();
        a.timAnnounce_Timer();
        QCOMPARE(w.engine.pane().text(), u"Error sending timed announcement.\r\n"_s);
        QVERIFY(w.file(u"servlog.txt"_s).endsWith("\r\n\r\nError sending timed announcement.\r\n\r\n"));
        QCOMPARE(w.engine.lists().nextMessage, 1);
        w.engine.queueDraining = false;
        a.timAnnounce_Timer();
        QCOMPARE(w.said(1), QStringList{u"say [Quorvane]: b"_s});
    }
};

QTEST_GUILESS_MAIN(TestMessages)
#include "tst_messages.moc"
