// SPDX-License-Identifier: MIT
// The socket and the paced queue over real loopback UDP against a bare peer.
#include "EngineWorld.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray head("\xFF\xFF\xFF\xFF\x02", 5);
const QByteArray printHead("\xFF\xFF\xFF\xFF\x01print\n", 11);

QByteArray commandOf(const QByteArray &datagram)
{
    QByteArray text = datagram.mid(5);
    return text.startsWith("rcon ") ? text.mid(text.indexOf(' ', 5) + 1) : text;
}

QList<QByteArray> echoBack(const QByteArray &d)
{
    return {printHead + "ok " + commandOf(d) + "\n"};
}

int timeouts(Engine &e)
{
    return static_cast<int>(e.pane().text().count(u"Warning: SendCommands timed out.\r\n"_s));
}

} // namespace

class TestLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What goes out, what comes in and how it shows, over one socket to a bare peer.
    void sendingAndArrivals()
    {
        EngineWorld w;
        Peer peer;
        w.connectTo(peer.socket.localPort());
        const QList<std::tuple<QString, QString, bool>> sends{
            {u"  secret "_s, u"status"_s, true}, // the password trimmed
            {QString(), u"status"_s, true},      // an empty one leaves both blanks
            {u"secret"_s, u"getStatus"_s, false},
            {u"pw"_s, u"kick \"A \"B\" \u00e9\u00ff"_s, true}}; // quotes unchanged, one byte a character
        QList<QByteArray> got;
        for (const auto &[password, cmd, rcon] : sends) {
            w.view.fields[View::Field::txtPwd] = password;
            w.engine.link().UDPClient_SendMessage(cmd, true, rcon);
            got << peer.next();
        }
        QCOMPARE(got, (QList<QByteArray>{head + "rcon secret status", head + "rcon  status", head + "getStatus",
                                         head + "rcon pw kick \"A \"B\" \xE9\xFF"}));
        QVERIFY(!w.engine.pane().text().contains(u"secret"_s)); // the echo never holds the password
        w.engine.pane().clear();
        w.openLog(); // verbose: the echo and every reply
        QSignalSpy replies(&w.engine.link(), &RconLink::replyArrived); // each ends the wait for the server
        w.engine.link().UDPClient_SendMessage(u"status"_s, true, true);
        peer.next();
        w.clock.jump(0.25);
        peer.reply(printHead + "map: ^1obj/^7team1\n^0a^2b^3c^4d^5e^6f ^8x^9y print ^^11\n");
        peer.reply(printHead + "a\r\n" + printHead + "\xFF\xFF\xFF\xFFstatusResponse\n\n");
        QTRY_VERIFY(w.engine.pane().text().endsWith(u"\r\n\r\n"_s));
        QCOMPARE(w.engine.pane().text(), u"\r\n12:00:00>status\r\n===============\r\nmap: obj/team1\r\nabcdef ^8x^9y print "
                                         "^1\r\na\r\r\n\u00ff\u00ff\u00ff\u00ffstatusResponse\r\n\r\n"_s);
        const QByteArray log = w.file(u"servlog.txt"_s);
        QCOMPARE(log.mid(log.indexOf("\r\n\r\n") + 4),
                 "12:00:00>status\r\n===============\r\n\r\n\r\nmap: obj/team1\r\nabcdef ^8x^9y print ^1\r\n\r\n\r\n"
                 "a\r\r\n\xFF\xFF\xFF\xFFstatusResponse\r\n\r\n\r\n\r\n"_ba);
        QVERIFY(w.engine.link().serverAnswered() && replies.count() == 2);
        QCOMPARE(w.view.labels.value(View::Label::lblResponseTime), u"250 ms"_s);
        QCOMPARE(w.view.cursorMoves, 2);
        // Fewer than two bytes, whatever they are, mean no connection and leave the time.
        w.engine.pane().clear();
        peer.reply(QByteArray("\xFF", 1));
        QTRY_VERIFY(!w.engine.link().serverAnswered());
        peer.reply(QByteArray());
        QTRY_COMPARE(w.engine.pane().text(), u"\r\n(no connection)\r\n(no connection)"_s);
        QCOMPARE(w.view.labels.value(View::Label::lblResponseTime), u"250 ms"_s);
        // Only a real midnight between send and reply adds a day.
        const QList<std::tuple<QTime, double, QString>> times{{QTime(23, 59, 59, 999), 0.0, u"0 ms"_s},
                                                              {QTime(22, 30, 0, 7), 0.007, u"7 ms"_s},
                                                              {QTime(23, 59, 59, 900), 0.25, u"250 ms"_s}};
        for (const auto &[sent, later, label] : times) {
            w.clock.setNow(QDateTime(QDate(2026, 11, 22), sent));
            w.engine.link().UDPClient_SendMessage(u"status"_s, false, true);
            peer.next();
            w.clock.jump(later);
            w.view.labels.clear();
            peer.reply(printHead + "x\n");
            QTRY_COMPARE(w.view.labels.value(View::Label::lblResponseTime), label);
        }
        // The pane is emptied before a reply when it holds 24000 characters or more.
        for (const auto &[before, after] : {std::pair(23999, 24001), std::pair(24000, 2)}) {
            w.engine.pane().clear();
            w.engine.pane().append(QString(before, u'x'));
            peer.reply("ab");
            QTRY_VERIFY(w.engine.pane().text().endsWith(u"ab"_s));
            QCOMPARE(w.engine.pane().length(), qsizetype(after));
        }
        // A datagram the network refuses is recorded, and the steps after the send still run.
        w.view.fields[View::Field::txtHost] = u" 000.000.000.000 "_s;
        w.engine.link().UDPClient_SendMessage(u"status"_s, true, true);
        const QByteArray record = w.file(u"ErrLog.txt"_s);
        QVERIFY(record.startsWith("\"[2026-11-23 00:00:00] - Error 126: No address for host 000.000.000.000\r\n"
                                  "\tCalling Function: UDPClient\r\n"));
        QVERIFY(record.endsWith("\tSource: UDPClient\r\n\tAppMsg: Error sending via UDP (UDPClient_SendMessage)\"\r\n"));
        QVERIFY(w.file(u"servlog.txt"_s).endsWith("\r\n00:00:00>status\r\n===============\r\n\r\n\r\n"));
        // A port that is no number is no refused datagram: it ends the program.
        w.view.fields[View::Field::txtPort] = u"12x"_s;
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.link().UDPClient_SendMessage(u"status"_s, true, true));
        QCOMPARE(w.view.boxes, QStringList{u"Quorvane has encountered an error and will shut down.\r\n\r\n"
                                           "Error sending via UDP (UDPClient_SendMessage)[13]: Type mismatch"_s});
    }

    // Only the server is heard: the address and port the last datagram went to. Anyone else's
    // datagram touches nothing; the operator hears of them at most once a minute, and not
    // while an exchange is under way. (What is still untold at the stop: the core's flood run;
    // ServerOnly off: the enforcement's forged tables.)
    void strangers()
    {
        bool checking = false;
        TestCheck check;
        check.running = [&] { return checking; };
        EngineWorld w(0, &check);
        Engine &e = w.engine;
        Peer server;
        QUdpSocket port2, host2, host3, host4; // the server's address on another port, the server's port elsewhere
        QVERIFY(port2.bind(QHostAddress::LocalHost, 0));
        const quint16 p = server.socket.localPort();
        QVERIFY(host2.bind(QHostAddress(u"127.0.0.2"_s), p) && host3.bind(QHostAddress(u"127.0.0.3"_s), p)
                && host4.bind(QHostAddress(u"127.0.0.4"_s), p));
        w.connectTo(p);
        const auto forge = [&](QUdpSocket &from) { from.writeDatagram(printHead + "0 evil\n", QHostAddress::LocalHost, e.link().localPort()); };
        const auto dropped = [&](QList<QUdpSocket *> senders) {
            for (QUdpSocket *from : senders) {
                const qint64 before = e.link().gate().untold();
                forge(*from);
                QTRY_COMPARE(e.link().gate().untold(), before + 1);
            }
        };
        const QString at = u"127.0.0.%1:%2"_s;
        const QString told[] = {
            u"Ignored 1 datagram not from the server: 1 from %1."_s.arg(at.arg(1).arg(p)),
            u"Ignored 2 datagrams not from the server: 1 from 127.0.0.1:%1, 1 from %2."_s.arg(port2.localPort()).arg(at.arg(2).arg(p)),
            u"Ignored 4 datagrams not from the server: 1 from %1, 1 from %2, 1 from %3, 1 from others."_s.arg(
                at.arg(2).arg(p), at.arg(3).arg(p), at.arg(4).arg(p))};
        forge(server.socket); // before the first send nobody is the server
        QTRY_VERIFY(!e.pane().text().isEmpty());
        QSignalSpy replies(&e.link(), &RconLink::replyArrived); // each ends the wait for the server
        e.link().UDPClient_SendMessage(u"status"_s, true, true);
        server.next();
        dropped({&port2, &host2});
        QString pane = u"\r\n"_s + told[0] + u"\r\n\r\n12:00:00>status\r\n===============\r\n"_s;
        QCOMPARE(e.pane().text(), pane);
        QVERIFY(replies.isEmpty() && !e.link().serverAnswered() && w.view.labels.isEmpty());
        w.clock.jump(59.9);
        QCOMPARE(e.link().gate().untold(), 2);
        w.clock.jump(0.1);
        pane += u"\r\n"_s + told[1] + u"\r\n"_s;
        QCOMPARE(e.pane().text(), pane);
        checking = true; // a line now could stand between an echo and its reply
        dropped({&host2, &host3, &host4, &port2});
        w.clock.jump(61);
        QCOMPARE(e.link().gate().untold(), 4);
        checking = false;
        w.clock.jump(1);
        pane += u"\r\n"_s + told[2] + u"\r\n"_s;
        QCOMPARE(e.pane().text(), pane);
        server.reply(printHead + "ok\n");
        QTRY_COMPARE(replies.count(), 1);
        QVERIFY(e.link().serverAnswered() && w.view.labels.value(View::Label::lblResponseTime) == u"122000 ms"_s);
        QCOMPARE(e.pane().text(), pane + u"ok\r\n"_s);
    }

    void queueDrainsInOrderWithinTheLastCall()
    {
        EngineWorld w(40);
        Peer peer;
        CommandQueue &q = w.engine.queue();
        QString inside;
        peer.answerWith([&](const QByteArray &d) {
            if (commandOf(d) == "one") {
                // Inside the drain's wait: an addition is refused, and a second drain
                // entered directly must not send the entries again.
                const bool added = q.AddSrvCmd(u"intruder"_s);
                const qsizetype before = peer.received.size();
                q.SendCommands();
                inside = u"%1 %2 %3"_s.arg(int(added)).arg(q.srvqueueTop()).arg(peer.received.size() - before);
            }
            return echoBack(d);
        });
        w.connectTo(peer.socket.localPort(), u"pw"_s);
        QVERIFY(q.AddSrvCmd(u"one"_s, true, false, true));
        QVERIFY(q.AddSrvCmd(u"two"_s, false, false, false));
        QVERIFY(q.AddSrvCmd(u"three"_s, true, false, true, -5));
        const QDateTime before = w.clock.now();
        QVERIFY(q.AddSrvCmd(u"four"_s, true, true, true));
        const double took = before.msecsTo(w.clock.now()) / 1000.0; // a second, then one delay each
        QCOMPARE(peer.received, (QList<QByteArray>{head + "rcon pw one", head + "two", head + "rcon pw three",
                                                   head + "rcon pw four"}));
        QVERIFY2(took >= 5.0 && took < 6.5, qPrintable(QString::number(took)));
        QCOMPARE(inside, u"0 3 0"_s);
        QVERIFY(q.srvqueueTop() == -1 && !q.queueDraining() && timeouts(w.engine) == 0);
        // Echoes only for the entries that asked for them, each reply behind its echo.
        const QString pane = w.engine.pane().text();
        QVERIFY(pane.indexOf(u">one"_s) < pane.indexOf(u"ok one"_s));
        QVERIFY(!pane.contains(u">two"_s) && pane.contains(u"ok two"_s));
        // The three queue controls go off for the drain and come back.
        QCOMPARE(w.view.enableLog.first(), qMakePair(View::Control::cmdStatus, false));
        QCOMPARE(w.view.enableLog.last(), qMakePair(View::Control::cmdServerInfo, true));
        // Emptied, it takes entries again, to the last place and no further.
        for (int i = 0; i < 2049; ++i)
            QVERIFY(q.AddSrvCmd(u"say %1"_s.arg(i)));
        QCOMPARE(q.srvqueueTop(), 2048);
        QVERIFY_THROWS_EXCEPTION(FatalExit, q.AddSrvCmd(u"one too many"_s));
        QVERIFY(w.view.boxes.value(0).endsWith(u"Error adding to srvqueue (AddSrvCmd)[9]: Subscript out of range"_s));
    }

    // The wait after a send is the time the server has to answer: CommandDelay, then intPause.
    void timeOuts()
    {
        const QList<std::tuple<double, int, bool, int>> cases{{1.0, 0, false, 2}, {1.0, 0, true, 0},
                                                              {0.0, 0, true, 2}, // no reply gets in
                                                              {0.0, 1, true, 0}, {0.0, -3, true, 2}};
        for (const auto &[delay, intPause, answered, expected] : cases) {
            EngineWorld w(40);
            Peer peer;
            if (answered)
                peer.answerWith(echoBack);
            w.connectTo(peer.socket.localPort());
            w.engine.settings.CommandDelay = delay;
            w.openLog(true);
            w.engine.queue().AddSrvCmd(u"a"_s, false, false, true, intPause);
            w.engine.queue().AddSrvCmd(u"b \"x\""_s, false, true, true, intPause);
            QCOMPARE(timeouts(w.engine), expected);
            const QByteArray log = w.file(u"servlog.txt"_s);
            QCOMPARE(int(log.count("Error: SendCommands timed out waiting for response. Couldn't send ")), expected);
            QCOMPARE(log.contains("Couldn't send b \"x\"\r\n\r\n"), expected > 0);
            QVERIFY(!w.engine.queue().waitingForServer());
        }
    }
};

QTEST_GUILESS_MAIN(TestLink)
#include "tst_link.moc"
