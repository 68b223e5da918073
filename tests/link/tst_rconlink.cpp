// SPDX-License-Identifier: MIT
// The link over real loopback UDP against a bare peer.
#include "EngineWorld.h"
#include "core/RuntimeError.h"
#include "core/Text.h"
#include "link/RconCodec.h"
#include "link/RconLink.h"

#include <QTest>

namespace {
const QByteArray head("\xFF\xFF\xFF\xFF\x02", 5);
const QByteArray printHead("\xFF\xFF\xFF\xFF\x01print\n", 11);
} // namespace

class TestRconLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framing_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("cmd");
        QTest::addColumn<bool>("rcon");
        QTest::addColumn<QByteArray>("wire");

        QTest::newRow("rcon") << "secret" << "status" << true << head + "rcon secret status";
        QTest::newRow("password trimmed") << "  secret " << "status" << true << head + "rcon secret status";
        QTest::newRow("empty password keeps both blanks") << "" << "status" << true << head + "rcon  status";
        QTest::newRow("connectionless has no password") << "secret" << "getStatus" << false << head + "getStatus";
        QTest::newRow("quotes go unchanged") << "pw" << "kick \"A \"B\"" << true << head + "rcon pw kick \"A \"B\"";
        QTest::newRow("high bytes one each") << "pw" << QString::fromLatin1("say \xE9\xFF") << true
                                             << head + "rcon pw say \xE9\xFF";
    }

    void framing()
    {
        QFETCH(QString, password);
        QFETCH(QString, cmd);
        QFETCH(bool, rcon);
        QFETCH(QByteArray, wire);
        EngineWorld w;
        Peer peer;
        w.connectTo(peer.socket.localPort(), password);
        w.engine.settings.SaveLog = true;
        w.engine.log().OpenLog();
        w.engine.link().UDPClient_SendMessage(cmd, true, rcon);
        QCOMPARE(peer.next(), wire);
        // The echo, never the password.
        QCOMPARE(w.engine.pane().text(), QStringLiteral("\r\n") + RconCodec::echo(QStringLiteral("12:00:00"), cmd));
        QCOMPARE(w.view.pane, w.engine.pane().text());
        w.engine.log().CloseLog();
        if (!Text::trimBlanks(password).isEmpty())
            QVERIFY(!w.file(QStringLiteral("servlog.txt")).contains(Text::toWire(Text::trimBlanks(password))));
    }

    void replyLandsBehindEcho()
    {
        EngineWorld w;
        Peer peer;
        w.connectTo(peer.socket.localPort(), QStringLiteral("pw"));
        w.engine.waitingForServer = true;
        w.engine.link().UDPClient_SendMessage(QStringLiteral("status"), true, true);
        peer.next();
        w.clock.jump(0.25);
        peer.reply(printHead + "map: ^1obj/^7team1\nrow one\n");
        peer.reply(printHead + "row two^^11\n\n");
        QTRY_VERIFY(w.engine.pane().text().endsWith(QStringLiteral("\r\n\r\n")));
        QCOMPARE(w.engine.pane().text(), QStringLiteral("\r\n12:00:00>status\r\n===============\r\n"
                                                        "map: obj/team1\r\nrow one\r\nrow two^1\r\n\r\n"));
        QVERIFY(w.engine.serverAnswered);
        QVERIFY(!w.engine.waitingForServer);
        QCOMPARE(w.view.labels.value(View::Label::lblResponseTime), QStringLiteral("250 ms"));
        QCOMPARE(w.view.cursorMoves, 2);
    }

    // The send moment and the arrival are kept alike, so a prompt reply never looks like
    // one from before midnight; only a real midnight adds a day.
    void responseTimeAtAnyHour_data()
    {
        QTest::addColumn<QTime>("sent");
        QTest::addColumn<double>("later");
        QTest::addColumn<QString>("label");
        QTest::newRow("morning, at once") << QTime(8, 0, 0, 1) << 0.0 << "0 ms";
        QTest::newRow("evening, at once") << QTime(21, 43, 17, 311) << 0.0 << "0 ms";
        QTest::newRow("late evening, at once") << QTime(23, 0, 0, 123) << 0.0 << "0 ms";
        QTest::newRow("last millisecond, at once") << QTime(23, 59, 59, 999) << 0.0 << "0 ms";
        QTest::newRow("evening, 7 ms") << QTime(22, 30, 0, 7) << 0.007 << "7 ms";
        QTest::newRow("across midnight") << QTime(23, 59, 59, 900) << 0.25 << "250 ms";
    }

    void responseTimeAtAnyHour()
    {
        QFETCH(QTime, sent);
        QFETCH(double, later);
        QFETCH(QString, label);
        EngineWorld w;
        Peer peer;
        w.connectTo(peer.socket.localPort(), QStringLiteral("pw"));
        w.clock.setNow(QDateTime(QDate(2026, 11, 22), sent));
        w.engine.link().UDPClient_SendMessage(QStringLiteral("status"), true, true);
        peer.next();
        if (later > 0)
            w.clock.jump(later);
        peer.reply(printHead + "x\n");
        QTRY_COMPARE(w.view.labels.value(View::Label::lblResponseTime), label);
    }

    void cleanReply_data()
    {
        QTest::addColumn<QByteArray>("raw");
        QTest::addColumn<QString>("clean");
        QTest::newRow("codes 0 to 7") << QByteArray("^0a^1b^2c^3d^4e^5f^6g^7h") << "abcdefgh";
        QTest::newRow("8 and 9 stay") << QByteArray("^8x^9y") << "^8x^9y";
        QTest::newRow("doubled code joins once") << QByteArray("^^11") << "^1";
        QTest::newRow("print alone stays") << QByteArray("print\n") << "print\r\n";
        QTest::newRow("head inside text goes") << printHead + "a" + printHead + "b" << "ab";
        QTest::newRow("CR LF gets another CR") << QByteArray("a\r\nb") << "a\r\r\nb";
        QTest::newRow("statusResponse head stays")
            << QByteArray("\xFF\xFF\xFF\xFFstatusResponse\n") << QString::fromLatin1("\xFF\xFF\xFF\xFFstatusResponse\r\n");
    }

    void cleanReply()
    {
        QFETCH(QByteArray, raw);
        QFETCH(QString, clean);
        QCOMPARE(RconCodec::CleanReply(Text::fromWire(raw)), clean);
    }

    void shortDatagramsMeanNoConnection()
    {
        EngineWorld w;
        Peer peer;
        w.connectTo(peer.socket.localPort());
        w.engine.link().UDPClient_SendMessage(QStringLiteral("x"), false, true);
        peer.next();
        w.engine.serverAnswered = true;
        w.view.labels[View::Label::lblResponseTime] = QStringLiteral("7 ms");
        peer.reply(QByteArray("\xFF", 1));
        QTRY_VERIFY(w.engine.pane().text().endsWith(QStringLiteral("(no connection)")));
        QVERIFY(!w.engine.serverAnswered);
        peer.reply(QByteArray());
        QTRY_COMPARE(w.engine.pane().text(), QStringLiteral("\r\n(no connection)\r\n(no connection)"));
        QCOMPARE(w.view.labels.value(View::Label::lblResponseTime), QStringLiteral("7 ms"));
    }

    void largestDatagramTakenWhole()
    {
        EngineWorld w;
        Peer peer;
        w.connectTo(peer.socket.localPort());
        w.engine.link().UDPClient_SendMessage(QStringLiteral("x"), false, true);
        peer.next();
        QByteArray big(65507, 'a');
        for (int i = 0; i < big.size(); i += 97)
            big[i] = static_cast<char>(0x80 + i % 128);
        peer.reply(big);
        QTRY_COMPARE(w.engine.pane().length(), qsizetype(65507));
        QCOMPARE(Text::toWire(w.engine.pane().text()), big);
    }

    void paneEmptiedAtLimitBeforeAppend()
    {
        EngineWorld w;
        Peer peer;
        w.connectTo(peer.socket.localPort());
        w.engine.pane().append(QString(23999, u'x'));
        w.engine.link().UDPClient_SendMessage(QStringLiteral("x"), false, true);
        peer.next();
        peer.reply(QByteArray(500, 'r'));
        QTRY_COMPARE(w.engine.pane().length(), qsizetype(24499));
        peer.reply(QByteArray("ab"));
        QTRY_COMPARE(w.engine.pane().text(), QStringLiteral("ab"));
        QCOMPARE(w.view.pane, QStringLiteral("ab"));
    }

    void logLevels()
    {
        for (const bool brief : {true, false}) {
            EngineWorld w;
            Peer peer;
            w.connectTo(peer.socket.localPort(), QStringLiteral("pw"));
            w.engine.settings.SaveLog = true;
            w.engine.settings.LogBrief = brief;
            w.engine.log().OpenLog();
            w.engine.link().UDPClient_SendMessage(QStringLiteral("serverinfo"), false, true);
            peer.next();
            peer.reply(printHead + "Server info settings:\n");
            QTRY_VERIFY(w.engine.pane().text().contains(QStringLiteral("Server info")));
            w.engine.log().CloseLog();
            const QByteArray log = w.file(QStringLiteral("servlog.txt"));
            const QByteArray body = log.mid(log.indexOf("\r\n\r\n") + 4);
            if (brief)
                QVERIFY(body.startsWith("serverinfo\r\n\r\n---"));
            else
                QVERIFY(body.startsWith("12:00:00>serverinfo\r\n===================\r\n\r\n\r\n"
                                        "Server info settings:\r\n\r\n\r\n---"));
        }
    }

    void refusedSendIsRecordedAndGoesOn()
    {
        EngineWorld w;
        w.engine.link().bind(0);
        w.view.fields[View::Field::txtHost] = QStringLiteral(" 000.000.000.000 ");
        w.view.fields[View::Field::txtPort] = QStringLiteral("12203");
        w.engine.settings.SaveLog = true;
        w.engine.log().OpenLog();
        w.engine.link().UDPClient_SendMessage(QStringLiteral("status"), true, true);
        QVERIFY(w.view.boxes.isEmpty());
        QVERIFY(w.file(QStringLiteral("ErrLog.txt"))
                    .contains("] - Error 126: No address for host 000.000.000.000\r\n\tCalling Function: UDPClient"));
        QVERIFY(w.file(QStringLiteral("ErrLog.txt")).endsWith("\tAppMsg: Error sending via UDP (UDPClient_SendMessage)\"\r\n"));
        // The steps after the send still ran.
        QVERIFY(w.engine.pane().text().contains(QStringLiteral(">status")));
        QVERIFY(w.file(QStringLiteral("servlog.txt")).contains(">status\r\n"));
    }

    void portThatIsNoNumberIsFatal()
    {
        EngineWorld w;
        w.engine.link().bind(0);
        w.view.fields[View::Field::txtPort] = QStringLiteral("12x");
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.link().UDPClient_SendMessage(QStringLiteral("status"), true, true));
        QCOMPARE(w.view.boxes.size(), 1);
        QVERIFY(w.view.boxes.first().endsWith(QStringLiteral("Error sending via UDP (UDPClient_SendMessage)[13]: Type mismatch")));
    }

};

QTEST_GUILESS_MAIN(TestRconLink)
#include "tst_rconlink.moc"
