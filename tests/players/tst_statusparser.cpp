// SPDX-License-Identifier: MIT
#include "PlayerRig.h"
#include "ReplyText.h"

#include "core/Text.h"
#include "link/RconCodec.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace ReplyText;

namespace {

const QString status = u"status"_s;
const QString getStatus = u"getStatus"_s;
const QString info = u"\\sv_hostname\\Test\\mapname\\dm/mohdm6\\g_gametype\\1"_s;

// GoodStatus, then ParseScores on what lies behind the row area, as GetScores does.
qint32 parse(PlayerRig &rig, const QString &cmd, const QString &text)
{
    const qint32 area = rig.parser.GoodStatus(text, cmd);
    if (area > 0)
        rig.parser.ParseScores(Text::midToEnd(text, area), cmd);
    return area;
}

QStringList rows(int count)
{
    QStringList list;
    for (int k = 1; k <= count; ++k)
        list << statusRow(numberedRow(k));
    return list;
}

} // namespace

class tst_StatusParser : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void rowFields_data();
    void rowFields();
    void malformedRow_data();
    void malformedRow();
    void rowArea_data();
    void rowArea();
    void getRowBelowOne();
    void mapSequence();
};

void tst_StatusParser::rowFields_data()
{
    QTest::addColumn<QString>("cmd");
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("fields"); // num|score|ping|name|ip|port|qport|rate|lastmsg

    const auto row = [](StatusRow r) { return statusRow(r); };
    const QString tail = u"|192.0.2.7|12203|12345|25000|0"_s;
    QTest::newRow("status") << status << row({.num = u"3"_s, .score = u"12"_s, .name = u"Some Player"_s})
                            << u"3|12|48|Some Player"_s + tail;
    QTest::newRow("colour codes, short row") << status << row({.score = u"-4"_s, .name = u"^1Red ^7Baron"_s, .lastmsg = u"150"_s})
                                             << u"0|-4|48|Red Baron|192.0.2.7|12203|12345|25000|150"_s;
    QTest::newRow("long name, blanks trimmed") << status << row({.name = u"  A Name Longer Than Sixteen  "_s})
                                               << u"0|0|48|A Name Longer Than Sixteen"_s + tail;
    QTest::newRow("ZMBI, wide rate") << status << row({.ping = u"ZMBI"_s, .name = u"Gone"_s, .rate = u"100000"_s})
                                     << u"0|0|ZMBI|Gone|192.0.2.7|12203|12345|100000|0"_s;
    QTest::newRow("last colon") << status << row({.name = u"Six"_s, .address = u"fe80::1:28960"_s})
                                << u"0|0|48|Six|fe80::1|28960|12345|25000|0"_s;
    QTest::newRow("no colon keeps port") << status << row({.name = u"Bot"_s, .address = u"localhost"_s})
                                         << u"0|0|48|Bot|localhost|old|12345|25000|0"_s;
    QTest::newRow("getStatus") << getStatus << u"48 \"Some Player\""_s << u"----|----|48|Some Player|----|----|----|----|----"_s;
    QTest::newRow("getStatus keeps blanks, quotes") << getStatus << u"7 \" a \"b\" ^2c \""_s
                                                    << u"----|----|7| a \"b\" c |----|----|----|----|----"_s;
    QTest::newRow("getStatus empty name") << getStatus << u"ZMBI \"\""_s << u"----|----|ZMBI||----|----|----|----|----"_s;
    QTest::newRow("getStatus no blank") << getStatus << u"garbage"_s << u"----|----|----|----|----|----|----|----|----"_s;
}

void tst_StatusParser::rowFields()
{
    QFETCH(QString, cmd);
    QFETCH(QString, row);
    QFETCH(QString, fields);

    auto rig = std::make_unique<PlayerRig>();
    PlayerRecord &r = rig->state.scanPlayers[1];
    // what the slot's last player left
    r.port = u"old"_s, r.warn = 5, r.status = u"Kicked (Ping)"_s, r.kicktime = 0.25;
    r.unique = false, r.matched = true, r.prevIndex = 3, r.scanIndex = 4;
    const QString raw = cmd == status ? rawStatus(u"mohdm1"_s, {row}) : rawGetStatus(info, {row});
    QVERIFY(parse(*rig, cmd, replyText(cmd, raw)) > 0);

    QCOMPARE(rig->state.scanCount, 1);
    QCOMPARE(QStringList({r.num, r.score, r.ping, r.name, r.ip, r.port, r.qport, r.rate, r.lastmsg}).join(u'|'), fields);
    QCOMPARE(r.status, u"Ok"_s);
    QCOMPARE(r.warn + r.kicktime, 0);
    QCOMPARE(r.jointime, rig->clock.timeOfDay());
    QCOMPARE(r.joindate, rig->clock.today());
    QCOMPARE(r.nametime, r.jointime);
    QVERIFY(r.unique && !r.matched && r.prevIndex == -1 && r.scanIndex == -1);
}

void tst_StatusParser::malformedRow_data()
{
    QTest::addColumn<QString>("cmd");
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("fatal");

    const QString row72 = statusRow({.name = u"Abc"_s});
    QTest::newRow("status row of 55") << status << rawStatus(u"m"_s, {row72.mid(17)}) << QString();
    QTest::newRow("status row of 54") << status << rawStatus(u"m"_s, {row72.mid(18)}) << u"ParseScores"_s;
    QTest::newRow("status row of 3") << status << rawStatus(u"m"_s, {u"  1"_s}) << u"ParseScores"_s;
    QTest::newRow("256 rows") << status << rawStatus(u"m"_s, rows(256)) << QString();
    QTest::newRow("257 rows") << status << rawStatus(u"m"_s, rows(257)) << u"ParseScores"_s;
    QTest::newRow("getStatus row ends at blank") << getStatus << rawGetStatus(info, {u"48 "_s}) << u"ParseScores"_s;
    QTest::newRow("getStatus row ends behind blank") << getStatus << rawGetStatus(info, {u"48 \""_s}) << u"ParseScores"_s;
}

void tst_StatusParser::malformedRow()
{
    QFETCH(QString, cmd);
    QFETCH(QString, raw);
    QFETCH(QString, fatal);
    auto rig = std::make_unique<PlayerRig>();
    QCOMPARE(rig->fatalOf([&] { parse(*rig, cmd, replyText(cmd, raw)); }), fatal);
}

void tst_StatusParser::rowArea_data()
{
    QTest::addColumn<QString>("cmd");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("area"); // -1, 0, or 1 for any row area
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("map");

    const QString two = rawGetStatus(info, {u"1 \"a\""_s, u"2 \"b\""_s});
    const auto newRow = [](const char *name, const QString &cmd, const QString &text, int area, int count, const QString &map) {
        QTest::newRow(name) << cmd << text << area << count << map;
    };
    newRow("status", status, replyText(status, rawStatus(u"mohdm1"_s, rows(2))), 1, 2, u"mohdm1"_s);
    newRow("status empty table", status, replyText(status, rawStatus(u"mohdm1"_s, {})), 0, 0, u"old"_s);
    newRow("status last row open", status, replyText(status, rawStatus(u"mohdm1"_s, rows(3)).chopped(2)), 1, 2, u"mohdm1"_s);
    newRow("status echo only", status, replyText(status, {}), -1, 0, u"old"_s);
    newRow("status of 143", status, status + u"\r\n"_s + QString(135, u'x'), -1, 0, u"old"_s);
    newRow("status of 144", status, status + u"\r\n"_s + QString(136, u'x'), 1, 0, QString());
    newRow("status no head", status, replyText(status, RconCodec::replyHeader() + u"map: obj/obj_team2\n"_s + QString(150, u'x')),
           1, 0, u"obj/obj_team2"_s);
    newRow("status no map line", status, replyText(status, rawStatus(u"x"_s, rows(1)).remove(u"map: x\n"_s)), 1, 1, QString());
    newRow("other reply", status, replyText(getStatus, rawStatus(u"m"_s, rows(1))), -1, 0, u"old"_s);
    newRow("getStatus", getStatus, replyText(getStatus, two), 1, 2, u"dm/mohdm6"_s);
    newRow("getStatus no rows", getStatus, replyText(getStatus, rawGetStatus(info, {})), 1, 0, u"dm/mohdm6"_s);
    newRow("getStatus last row open", getStatus, replyText(getStatus, two.chopped(1)), 1, 1, u"dm/mohdm6"_s);
    newRow("getStatus echo only", getStatus, replyText(getStatus, {}), 1, 0, QString());
    newRow("getStatus mark in first six", getStatus, replyText(getStatus, rawGetStatus(u"\\mapname\\dm/mohdm6\\g\\1"_s, {})),
           1, 0, QString());
    newRow("getStatus map value at end", getStatus, replyText(getStatus, rawGetStatus(u"\\sv\\T\\mapname\\dm/mohdm6"_s, {})),
           1, 0, QString());
}

void tst_StatusParser::rowArea()
{
    QFETCH(QString, cmd);
    QFETCH(QString, text);
    QFETCH(int, area);
    QFETCH(int, rows);
    QFETCH(QString, map);

    auto rig = std::make_unique<PlayerRig>();
    rig->stats.map = u"old"_s;
    rig->state.scanCount = -7; // only ParseScores may touch it
    const qint32 got = parse(*rig, cmd, text);
    QCOMPARE(got > 0 ? 1 : got, area);
    QCOMPARE(rig->state.scanCount, area > 0 ? rows : -7);
    QCOMPARE(rig->stats.map, map);
}

void tst_StatusParser::getRowBelowOne()
{
    auto rig = std::make_unique<PlayerRig>();
    QCOMPARE(rig->parser.GetRow(u"ab\r\ncd\r\n"_s, 5), u"cd"_s);
    QCOMPARE(rig->fatalOf([&] { rig->parser.GetRow(u"ab\r\n"_s, 0); }), u"GetRow"_s);
}

void tst_StatusParser::mapSequence()
{
    // Every change of text counts once, one reply late; a reply with no map mark empties it.
    const QString steps[][3] = {
        {status, u"status\r\n==\r\nmap: A\r\n"_s, u"A||0"_s},
        {status, u"status\r\n==\r\nmap: A\r\n"_s, u"A|A|1"_s},
        {status, u"status\r\n==\r\nnum score\r\n"_s, u"|A|1"_s},
        {getStatus, u"\\gt\\12\\mapname\\A\\x"_s, u"A||2"_s},
        {status, u"status\r\n==\r\nmap: A\r\n"_s, u"A|A|3"_s},
        {status, u"status\r\n==\r\nmap: B\r\n"_s, u"B|A|3"_s},
        {status, u"status\r\n==\r\nmap: B\r"_s, u"|B|3"_s}, // a closing mark as last character does not count
    };
    auto rig = std::make_unique<PlayerRig>();
    for (const auto &[cmd, text, expected] : steps) {
        rig->parser.GetMapName(text, cmd);
        QCOMPARE(rig->stats.map + u'|' + rig->stats.prevmap + u'|' + QString::number(rig->stats.totalmaps), expected);
    }
}

QTEST_GUILESS_MAIN(tst_StatusParser)
#include "tst_statusparser.moc"
