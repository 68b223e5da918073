// SPDX-License-Identifier: MIT
// The six lists (file format, table forms, the 2048-entry bound, appending) and the %
// variables (their order, the rules of their replacement, the two computed values).
#include "EngineWorld.h"

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

QStringList entries(const ListTable &t)
{
    QStringList out;
    for (qint32 i = 0; i <= t.top; ++i)
        out.append(t.at(i));
    return out;
}
} // namespace

class TestMessages : public QObject
{
    Q_OBJECT

    // Noon of 2026-11-22; the program started on the 20th at 06:00.
    static void setUp(EngineWorld &w, const QString &map, const QString &playerName)
    {
        TestEnv::writeFile(w.env.workDir() + u"bannedIP.txt"_s, "192.0.2.1\r\n192.0.2.1\r\n");
        w.engine.LoadSettings(u"quorvane12"_s);
        Stats &s = w.engine.stats;
        s.startdate = QDate(2026, 11, 20);
        s.starttime = 0.25;
        s.pingkicks = 1, s.bankicks = 2, s.banadds = 3, s.players = 4, s.totalplayers = 5;
        s.checks = 6, s.tkkicks = 7, s.totalmaps = 8, s.avgping = 9;
        s.map = map;
        w.engine.settings.Host = u"203.0.113.5"_s;
        PlayerRecord &r = w.engine.players().currentPlayers[1];
        r.name = playerName;
        r.ip = u"192.0.2.9"_s;
        r.ping = u"ZMBI"_s;
    }

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

    void forms()
    {
        QFETCH(int, which);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, expected);
        EngineWorld w;
        TestEnv::writeFile(w.env.workDir() + files[which], bytes);
        w.engine.LoadSettings(u"quorvane12"_s);
        for (int i = 0; i < files.size(); ++i) {
            QVERIFY(QFile::exists(w.env.workDir() + files[i])); // missing ones are created empty
            QCOMPARE(entries(tableOf(w.engine.lists(), i)), i == which ? expected : QStringList());
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

    void bound()
    {
        QFETCH(int, which);
        QFETCH(QString, words);
        EngineWorld w;
        QByteArray lines;
        for (int i = 0; i < 2048; ++i)
            lines += "x" + QByteArray::number(i) + "\r\n \r\n";
        TestEnv::writeFile(w.env.workDir() + files[which], lines);
        w.engine.LoadSettings(u"quorvane12"_s);
        QCOMPARE(tableOf(w.engine.lists(), which).top, 2047); // blank lines do not count

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

        w.engine.settings.FileLoc = w.env.workDir() + QStringLiteral("gone/");
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.lists().AppendToFile(u"banned.txt"_s, QStringLiteral("x")));
        QVERIFY(w.view.boxes.value(0).contains(u"\r\n\r\nError appending x to banned.txt[75]"_s));
    }
    void expand_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("player");
        QTest::addColumn<QString>("map");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        const QString m = u"obj/obj_team2"_s;
        const QString bob = u"Bob"_s;
        QTest::newRow("no variable") << u"Play fair."_s << -1 << m << bob << u"Play fair."_s;
        QTest::newRow("unknown and capitals stay") << u"%MAP% %foo% %map"_s << 1 << m << bob << u"%MAP% %foo% %map"_s;
        QTest::newRow("statistics") << u"%pingkicks%%bankicks%%banadds%%players%%totalplayers%%checks%%tkkicks%%totalmaps%%avgping%"_s
                                    << -1 << m << bob << u"123456789"_s;
        QTest::newRow("start and uptime") << u"%startdate% %starttime% up %uptime%"_s << -1 << m << bob
                                          << u"2026-11-20 06:00:00 up 2d / 6h"_s;
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

    void expand()
    {
        QFETCH(QString, message);
        QFETCH(int, player);
        QFETCH(QString, map);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        EngineWorld w;
        setUp(w, map, name);
        QCOMPARE(w.engine.ExpandVariables(message, player), expected);
    }

    void computedValues()
    {
        EngineWorld w;
        setUp(w, QString(), QString());
        w.engine.stats.starttime = 0.75; // 18:00, after the present time of day
        w.engine.settings.CheckInt = 12500;
        QCOMPARE(w.engine.ExpandVariables(u"%uptime% %pingtime%"_s, -1), u"2d / -6h 37.5"_s);
        w.engine.settings.CheckInt = 20000, w.engine.settings.PingPasses = 5000;
        QCOMPARE(w.engine.ExpandVariables(u"%pingtime%"_s, -1), u"100000"_s);
        w.engine.settings.CheckInt = 5001, w.engine.settings.PingPasses = 5;
        QCOMPARE(w.engine.ExpandVariables(u"%pingtime%"_s, -1), u"25.005"_s);
    }
};

QTEST_GUILESS_MAIN(TestMessages)
#include "tst_messages.moc"
