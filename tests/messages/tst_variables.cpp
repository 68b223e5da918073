// SPDX-License-Identifier: MIT
// The % variables: their order, the rules of their replacement, the two computed values.
#include "EngineWorld.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestVariables : public QObject
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
    }
};

QTEST_GUILESS_MAIN(TestVariables)
#include "tst_variables.moc"
