// SPDX-License-Identifier: MIT
// The announcer on a fast test clock: a minute passes in a few milliseconds.
#include "EngineWorld.h"
#include "link/RconLink.h"
#include "messages/Announcer.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestAnnouncer : public QObject
{
    Q_OBJECT

    // 600 clock seconds a real second: one tick of the minute timer every 100 ms.
    struct World : EngineWorld
    {
        World() : EngineWorld(600)
        {
            peer.answerWith([](const QByteArray &) { return QList<QByteArray>{"\xff\xff\xff\xffprint\n"_ba}; });
            pointAt(peer.socket.localPort(), u"pw"_s); // Form_Load, or a test, binds
            engine.settings.CommandDelay = 0;
            engine.settings.lngAnnounce = 1;
            engine.settings.MsgRandom = false;
        }
        void messages(const QByteArray &lines)
        {
            TestEnv::writeFile(env.workDir() + u"servmsg.txt"_s, lines);
            engine.lists().LoadServerMessages();
        }
        // The announcements that reached the server, once `count` have.
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

private Q_SLOTS:
    void said_data()
    {
        QTest::addColumn<QString>("voice");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("in turn, round again") << u"  [Q]  "_s << "one\r\n\r\n   \r\ntwo\r\n"_ba
                                               << QStringList{u"say [Q]: one"_s, u"say [Q]: two"_s, u"say [Q]: one"_s};
        QTest::newRow("blank voice") << u"   "_s << "hi\r\n"_ba << QStringList{u"say hi"_s, u"say hi"_s};
        QTest::newRow("empty list") << u"[Q]"_s << ""_ba << QStringList{u"say [Q]: "_s};
        QTest::newRow("variables, no player")
            << u"[Q]"_s << "%map% %name%%ip% %numbanname%/%pinglimit%\r\n"_ba
            << QStringList{u"say [Q]: dm/mohdm1 %name%%ip% 0/750"_s};
    }

    // Started by the load of the window, one announcement each minute while the engine runs.
    void said()
    {
        QFETCH(QString, voice);
        QFETCH(QByteArray, file);
        QFETCH(QStringList, expected);
        World w;
        w.messages(file);
        w.engine.settings.Voice = voice;
        w.engine.stats.map = u"dm/mohdm1"_s;
        w.engine.settings.intAnnouce = 1;
        w.engine.settings.LocalPort = 0;
        w.engine.settings.Host = u"127.0.0.1"_s; // the load puts the settings into the fields
        w.engine.settings.Port = w.peer.socket.localPort();
        w.engine.settings.Pwd = u"pw"_s;
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
        World w;
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
        QVERIFY(!a.timAnnounce.isActive());
        QCOMPARE(a.announceTicks, 0);
        QVERIFY(w.peer.received.isEmpty());
    }

    void randomPicksAll()
    {
        World w;
        w.messages("a\r\nb\r\nc\r\n"_ba);
        w.engine.link().bind(0);
        w.engine.settings.MsgRandom = true;
        w.engine.lists().nextMessage = 1;
        w.engine.engineRunning = true;
        w.engine.announcer().Announce_Timer_Control(u"ON"_s);
        QStringList said = w.said(40);
        said.removeDuplicates();
        said.sort();
        QCOMPARE(said, QStringList({u"say [Quorvane]: a"_s, u"say [Quorvane]: b"_s, u"say [Quorvane]: c"_s}));
        QCOMPARE(w.engine.lists().nextMessage, 1);
    }

    // While the queue drains the announcement is refused and dropped; the sequence moves on.
    void refusedWhileDraining()
    {
        World w;
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

QTEST_GUILESS_MAIN(TestAnnouncer)
#include "tst_announcer.moc"
