// SPDX-License-Identifier: MIT
// A reply's text to rows, the rows merged into the player table, the table into the grid; then
// whole exchanges with the simulated server over loopback.
#include "EngineWorld.h"
#include "ReplyText.h"
#include "SimServer.h"
#include "core/Text.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace ReplyText;

namespace {

const QString info = u"\\sv_hostname\\Test\\mapname\\dm/mohdm6\\g_gametype\\1"_s;

// The words of the fatal box that `step` ends in; empty when it ends normally.
QString fatalOf(EngineWorld &w, const std::function<void()> &step)
{
    return w.fatal(step).section(u"\r\n\r\n"_s, 1).section(u'[', 0, 0);
}

// Player k on slot k, from 10.0.<k/256>.<k%256>:<27000+k>.
QStringList rows(int count)
{
    QStringList list;
    for (int k = 1; k <= count; ++k)
        list << statusRow({.num = QString::number(k), .name = u"Player%1"_s.arg(k),
                           .address = u"10.0.%1.%2:%3"_s.arg(k / 256).arg(k % 256).arg(27000 + k)});
    return list;
}

QStringList list(const QString &items)
{
    return items.isEmpty() ? QStringList() : items.split(u',');
}

// "num name ip:port [!]": "-" for a value the reply did not carry, "!" for a kicked player.
PlayerRecord record(const QString &fields)
{
    const QStringList parts = fields.split(u' ');
    const auto known = [](const QString &v) { return v == u"-" ? unknownField() : v; };
    PlayerRecord r;
    r.num = known(parts.at(0));
    r.name = parts.at(1);
    r.ip = known(parts.at(2).section(u':', 0, 0));
    r.port = known(parts.at(2).section(u':', 1));
    r.score = r.qport = r.rate = r.lastmsg = r.num == unknownField() ? r.num : r.num + u'0';
    r.status = parts.size() > 3 ? u"Kicked (Ping)"_s : u"Ok"_s;
    return r;
}

// Previous record j joined at j/100 with warn j and took its name at j/100 + 0.001; a
// kicked one was kicked at j/100 + 0.002. The scan's rows are parsed at noon.
void load(PlayerState &state, const QStringList &previous, const QStringList &scan)
{
    for (int j = 1; j <= previous.size(); ++j) {
        PlayerRecord &r = state.currentPlayers[j] = record(previous.at(j - 1));
        r.warn = j, r.jointime = j / 100.0, r.nametime = j / 100.0 + 0.001;
        r.kicktime = r.status == u"Ok" ? 0 : j / 100.0 + 0.002;
    }
    state.currentCount = static_cast<qint32>(previous.size());
    for (int i = 1; i <= scan.size(); ++i) {
        PlayerRecord &r = state.scanPlayers[i] = record(scan.at(i - 1));
        r.jointime = r.nametime = 0.5;
    }
    state.scanCount = static_cast<qint32>(scan.size());
}

} // namespace

class TestPlayers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The area (-1, 0, or 1 for one found), the rows parsed, the map and, where a row's
    // num|score|ping|name|ip|port|qport|rate|lastmsg are given, the first row's; or the fatal
    // report. A parsed row keeps nothing of what the slot's last player left.
    void parsing()
    {
        const auto one = [](const StatusRow &r) { return statusReply(u"m"_s, {statusRow(r)}); };
        const QString row72 = statusRow({.name = u"Abc"_s});
        const QList<QPair<QString, QString>> cases{
            {statusReply(u"mohdm1"_s, {}), u"0 - old"_s},
            {statusReply(u"mohdm1"_s, rows(3)).chopped(4), u"1 2 mohdm1"_s}, // the last row without its line end
            {u"status\r\n"_s + QString(135, u'x'), u"-1 - old"_s},
            {u"status\r\n"_s + QString(136, u'x'), u"1 0 "_s},
            {getStatusReply(info, {u"1 \"a\""_s, u"2 \"b\""_s}), u"1 2 dm/mohdm6"_s},
            {u"getStatus\r\n==================\r\n"_s, u"1 0 "_s},
            {getStatusReply(u"\\mapname\\dm/mohdm6\\g\\1"_s, {}), u"1 0 "_s},  // the mark within the first six
            {getStatusReply(u"\\sv\\T\\mapname\\dm/mohdm6"_s, {}), u"1 0 "_s}, // no mark behind the value
            {statusReply(u"m"_s, {row72.mid(17)}), u"1 1 m"_s},
            {statusReply(u"m"_s, {row72.mid(18)}), u"ParseScores"_s},
            {statusReply(u"m"_s, rows(256)), u"1 256 m"_s},
            {statusReply(u"m"_s, rows(257)), u"ParseScores"_s},
            {getStatusReply(info, {u"48 "_s}), u"ParseScores"_s},
            {getStatusReply(info, {u"48 \""_s}), u"ParseScores"_s},
            {one({.num = u"3"_s, .score = u"-12"_s, .name = u"  A Name Longer Than Sixteen  "_s}),
             u"1 1 m 3|-12|48|A Name Longer Than Sixteen|192.0.2.7|12203|12345|25000|0"_s},
            {one({.ping = u"ZMBI"_s, .name = u"Gone"_s, .rate = u"100000"_s}), u"1 1 m 0|0|ZMBI|Gone|192.0.2.7|12203|12345|100000|0"_s},
            {one({.name = u"Six"_s, .address = u"fe80::1:28960"_s}), u"1 1 m 0|0|48|Six|fe80::1|28960|12345|25000|0"_s},
            {one({.name = u"Bot"_s, .address = u"localhost"_s}), u"1 1 m 0|0|48|Bot|localhost|old|12345|25000|0"_s},
            {getStatusReply(info, {u"7 \" a \"b\" c \""_s}), u"1 1 dm/mohdm6 ----|----|7| a \"b\" c |----|----|----|----|----"_s},
            {getStatusReply(info, {u"garbage"_s}), u"1 1 dm/mohdm6 ----|----|----|----|----|----|----|----|----"_s}};
        for (const auto &[text, expected] : cases) {
            EngineWorld w;
            w.engine.stats.map = u"old"_s;
            PlayerState &p = w.engine.players();
            p.scanCount = -7; // only ParseScores may touch it
            PlayerRecord &r = p.scanPlayers[1];
            r.port = u"old"_s, r.warn = 5, r.status = u"Kicked (Ping)"_s, r.kicktime = 0.25;
            r.unique = false, r.matched = true, r.prevIndex = 3, r.scanIndex = 4;
            QString got;
            const QString fatal = fatalOf(w, [&] {
                // GoodStatus, then ParseScores behind the row area, as GetScores does
                const QString cmd = text.section(u'\r', 0, 0);
                const qint32 area = w.engine.parser().GoodStatus(text, cmd);
                if (area > 0)
                    w.engine.parser().ParseScores(Text::midToEnd(text, area), cmd);
                got = u"%1 %2 %3"_s.arg(area > 0 ? 1 : area).arg(p.scanCount < 0 ? u"-"_s : QString::number(p.scanCount), w.engine.stats.map);
            });
            if (expected.contains(u'|'))
                got += u' ' + QStringList({r.num, r.score, r.ping, r.name, r.ip, r.port, r.qport, r.rate, r.lastmsg}).join(u'|');
            QCOMPARE(fatal.isEmpty() ? got : fatal, expected);
            if (fatal.isEmpty() && p.scanCount > 0) { // the clock stands at noon
                QCOMPARE(u"%1 %2 %3 %4 %5 "_s.arg(r.status).arg(r.warn).arg(r.kicktime).arg(r.jointime).arg(r.nametime)
                             + r.joindate.toString(Qt::ISODate), u"Ok 0 0 0.5 0.5 2026-11-22"_s);
                QVERIFY(r.unique && !r.matched && r.prevIndex == -1 && r.scanIndex == -1);
            }
        }
    }

    // Per merged row: "new", or "p<j>" for previous record j, with "reset" when warn, status
    // and kicktime start over and "fresh" when nametime is the scan's own.
    void matching()
    {
        const QString kicked = u"1 Bob 1.1.1.1:100 !"_s;
        const QList<std::tuple<QString, QString, QString>> cases{
            {u"1 Bob 1.1.1.1:100"_s, u"1 Robert 1.1.1.1:100"_s, u"p1 fresh"_s},
            {kicked, u"1 Bob 1.1.1.1:100"_s, u"p1"_s},
            {kicked, u"4 Bob 1.1.1.1:100"_s, u"p1 reset"_s}, // a reconnect onto another slot
            {kicked, u"1 Bob 1.1.1.1:101"_s, u"p1"_s},
            {kicked, u"1 Carl 1.1.1.1:101"_s, u"new"_s}, // same address, other port
            {kicked, u"1 Carl 1.1.1.2:100"_s, u"new"_s}, // same port, other address
            {kicked, u"- bob -"_s, u"new"_s},            // a name that differs in case
            {kicked, u"- Bob -"_s, u"p1 reset"_s},
            {u"1 Bob 1.1.1.1:1,2 Ann 2.2.2.2:2"_s, u"1 Ann 1.1.1.1:1"_s, u"p1 fresh"_s},
            {u"1 X 1.1.1.1:1,2 X 2.2.2.2:2 !"_s, u"2 X 2.2.2.2:2,1 X 1.1.1.1:1"_s, u"p2,p1"_s},
            {u"- Bob -"_s, u"- Robert -"_s, u"new"_s},
            {u"- Robert -"_s, u"2 Robert 1.1.1.1:100"_s, u"p1"_s},
            {u"- Bob -,- Bob -"_s, u"- Bob -"_s, u"new"_s},
            {u"1 X 1.1.1.1:1 !,2 A 2.2.2.2:2,3 X 3.3.3.3:3"_s, u"- X -,- A -,- X -"_s, u"p1,p2,p3"_s},
            {u"- A -,- X -,- A -,- X -"_s, u"- A -,- X -,- C -,- X -"_s, u"new,p4,new,new"_s},
            {u"- A -,- X -,- B -,- X -"_s, u"- A -,- X -,- B -,- A -,- X -"_s, u"p1,p2,p3,new,new"_s},
            {u"- X -,- B -,- X -"_s, u"- X -,- X -"_s, u"new,new"_s},
            {QString(), u"1 A 1.1.1.1:1,- B -,- A -"_s, u"new,new,new"_s}};
        for (const auto &[previous, scan, expected] : cases) {
            EngineWorld w;
            w.engine.stats.totalplayers = 10;
            load(w.engine.players(), list(previous), list(scan));
            w.engine.merge().CopyPlayers();
            const QStringList merged = list(expected);
            QCOMPARE(w.engine.players().currentCount, merged.size());
            QCOMPARE(w.engine.stats.players, merged.size());
            QCOMPARE(w.engine.stats.totalplayers, 10 + merged.count(u"new"_s));
            for (int k = 1; k <= merged.size(); ++k) {
                const PlayerRecord &r = w.engine.players().currentPlayers[k];
                const QStringList how = merged.at(k - 1).split(u' ');
                const int j = how.first().mid(1).toInt(); // 0 for a new player
                const bool warned = j > 0 && !how.contains(u"reset"_s);
                const bool kept = warned && record(list(previous).at(j - 1)).status != u"Ok";
                QCOMPARE(r.name, record(list(scan).at(k - 1)).name);
                QCOMPARE(QList<double>({r.jointime, r.nametime, double(r.warn), r.kicktime}),
                         QList<double>({j > 0 ? j / 100.0 : 0.5, j > 0 && !how.contains(u"fresh"_s) ? j / 100.0 + 0.001 : 0.5,
                                        warned ? double(j) : 0, kept ? j / 100.0 + 0.002 : 0}));
                QCOMPARE(r.status, kept ? u"Kicked (Ping)"_s : u"Ok"_s);
            }
        }
    }

    void cheapScanBorrowsAndFailsWhole()
    {
        EngineWorld w;
        PlayerState &p = w.engine.players();
        load(p, {u"3 Bob 1.1.1.1:100"_s, u"7 Ann 2.2.2.2:200"_s}, {u"- Ann -"_s, u"- Bob -"_s});
        p.scanPlayers[1].ping = u"33"_s;
        w.engine.merge().CopyPlayers();
        const PlayerRecord &r = p.currentPlayers[1];
        QCOMPARE(QStringList({r.num, r.name, r.ping, r.score, r.ip, r.port, r.qport, r.rate, r.lastmsg}).join(u'|'),
                 u"7|Ann|33|70|2.2.2.2|200|70|70|70"_s);
        // Only names equal to the letter make a cheap scan useless.
        QStringList same;
        for (const QString &names : {u"- a -"_s, u"- Bob -,- bob -,- BOB -"_s, u"- Bob -,- Ann -,- Bob -"_s}) {
            load(p, {}, list(names));
            p.scanPlayers[p.scanCount + 1].name = u"a"_s; // behind the count: not read
            same << QString::number(w.engine.merge().SameNames());
        }
        QCOMPARE(same.join(u' '), u"0 0 1"_s);
        p.scanCount = 257;
        QCOMPARE(fatalOf(w, [&] { w.engine.merge().CopyPlayers(); }), u"CopyPlayers"_s);
        QCOMPARE(fatalOf(w, [&] { w.engine.parser().GetRow(u"ab\r\n"_s, 0); }), u"GetRow"_s);
    }

    void pingFigures()
    {
        const QList<QPair<QString, QString>> cases{ // lblPing|lblPing2
            {QString(), u"Ping (L/H): 999 / 0|Ping (Avg/999): 0 / 0"_s},
            {u"999,999,999"_s, u"Ping (L/H): 999 / 0|Ping (Avg/999): 0 / 3"_s},
            {u"ZMBI,40,60"_s, u"Ping (L/H): 40 / 60|Ping (Avg/999): 50 / 0"_s},
            {u"999,20,----"_s, u"Ping (L/H): 20 / 20|Ping (Avg/999): 20 / 1"_s},
            {u"50,51"_s, u"Ping (L/H): 50 / 51|Ping (Avg/999): 50 / 0"_s}, // halves to even
            {u"51,52"_s, u"Ping (L/H): 51 / 52|Ping (Avg/999): 52 / 0"_s},
            {u"1000,32767"_s, u"Ping (L/H): 999 / 32767|Ping (Avg/999): 16884 / 0"_s},
            {u"32768,30"_s, u"Ping (L/H): 30 / 30|Ping (Avg/999): 30 / 0"_s}};
        for (const auto &[pings, labels] : cases) {
            EngineWorld w;
            PlayerState &p = w.engine.players();
            const QStringList ping = list(pings);
            for (int i = 1; i <= ping.size(); ++i)
                p.currentPlayers[i].ping = ping.at(i - 1);
            p.currentPlayers[static_cast<qint32>(ping.size()) + 1].ping = u"1"_s; // behind the count
            p.currentCount = static_cast<qint32>(ping.size());
            w.engine.stats.avgping = 77; // the label shows the figure the grid leaves here
            w.engine.grid().RefreshGrid();
            QCOMPARE(w.view.labels.value(View::Label::lblPing) + u'|' + w.view.labels.value(View::Label::lblPing2), labels);
            QCOMPARE(w.view.grid.rows.size(), ping.size() + 2); // two empty rows below the players
            QCOMPARE(w.view.grid.columnWidths, (QList<qint32>{500, 950, 500, 550, 950, 1000, 550, 550})); // no names
        }
    }

    // Two equal names on a cheap scan: a full one follows. No reply: the table stays; a
    // refused command is logged, and no check starts while a command waits for its answer.
    void cheapScanBecomesFullAndNoServerLeavesTheTable()
    {
        SimServer sim;
        sim.setPassword("pw");
        sim.setMap("obj/obj_team2");
        sim.listen();
        EngineWorld w(40);
        w.connectTo(sim.port(), u"pw"_s);
        sim.addPlayer({.name = "Twin", .ping = 40, .ip = "192.0.2.1", .port = 1001});
        sim.addPlayer({.name = "Twin", .ping = 60, .ip = "192.0.2.2", .port = 1002});
        QVERIFY(w.engine.statusCycle().sendStatus(u"getStatus"_s));
        const QString pane = w.engine.pane().text();
        const qsizetype notice = pane.indexOf(u"\r\nDetected impersonator - running a full status to trap IPs\r\n"_s);
        QVERIFY(notice > pane.indexOf(u">getStatus"_s));
        QVERIFY(pane.indexOf(u">status\r\n"_s) > notice);
        QCOMPARE(w.engine.players().currentPlayers[2].ip, u"192.0.2.2"_s);
        QCOMPARE(w.view.labels.value(View::Label::lblPlayers) + u'|' + w.view.labels.value(View::Label::lblMap),
                 u"Players (C/T): 2 / 2|Map (C/T): obj/obj_team2 / 1"_s);
        QCOMPARE(w.view.trayTip, u"Players:2/2\r\nMap:obj/obj_team2\r\nChecks:0\r\nKicks:0\r\nBans:0"_s);
        QCOMPARE(w.view.grid.columnWidths, (QList<qint32>{500, 400, 500, 550, 900, 1000, 550, 550})); // the longest name and IP
        // The cheap datagram went without the password, the full one with it.
        const QList<SimServer::Datagram> sent = sim.received();
        QCOMPARE(sent.size(), 2);
        QCOMPARE(sent.at(0).bytes + u'|' + sent.at(1).bytes, "\xFF\xFF\xFF\xFF\x02getStatus|\xFF\xFF\xFF\xFF\x02rcon pw status"_ba);
        sim.close();
        QVERIFY(!w.engine.statusCycle().sendStatus(u"status"_s));
        QCOMPARE(w.engine.players().currentCount, 2);
        w.openLog(true);
        bool taken = true;
        w.whileDraining([&] { taken = w.engine.statusCycle().sendStatus(u"status"_s); }); // the queue refuses it
        QVERIFY(!taken);
        // A check that comes while a command waits for its answer goes no further than its guard.
        Peer late; // takes the command and never answers
        w.pointAt(late.socket.localPort(), u"pw"_s);
        late.answerWith([&](const QByteArray &) {
            w.engine.TkCheck();
            return QList<QByteArray>{};
        });
        w.engine.settings.CommandDelay = 10;
        w.engine.queue().AddSrvCmd(u"status"_s, true, true, true);
        QCOMPARE(w.engine.stats.checks, 0);
        QVERIFY(w.file(u"servlog.txt"_s).contains("\r\n\r\nError: sendStatus couldn't add status command to queue.\r\n\r\nstatus\r\n\r\n["));
        QVERIFY(w.file(u"servlog.txt"_s).endsWith("]\r\nRunning a TK check.\r\n\r\n...skipped check, still waiting for server.\r\n\r\n"
                                                      "Error: SendCommands timed out waiting for response. Couldn't send status\r\n\r\n"));
    }
};

QTEST_GUILESS_MAIN(TestPlayers)
#include "tst_players.moc"
