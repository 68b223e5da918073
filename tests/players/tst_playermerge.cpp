// SPDX-License-Identifier: MIT
#include "PlayerRig.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr double ScanTime = 0.5;
double joinOf(int j) { return j / 100.0; }
double nameTimeOf(int j) { return j / 100.0 + 0.001; }

QStringList list(const QString &items)
{
    return items.isEmpty() ? QStringList() : items.split(u',');
}

// "num name ip:port [!]", "-" for a value the reply did not carry, "!" for a kicked player.
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

// Previous record j joined at joinOf(j) with warn j; the scan's rows are parsed at ScanTime.
void load(PlayerRig &rig, const QStringList &previous, const QStringList &scan)
{
    for (int j = 1; j <= previous.size(); ++j) {
        PlayerRecord &r = rig.state.currentPlayers[j] = record(previous.at(j - 1));
        r.warn = j, r.jointime = joinOf(j), r.nametime = nameTimeOf(j);
        r.kicktime = r.status == u"Ok" ? 0 : joinOf(j) + 0.002;
    }
    rig.state.currentCount = static_cast<qint32>(previous.size());
    for (int i = 1; i <= scan.size(); ++i) {
        PlayerRecord &r = rig.state.scanPlayers[i] = record(scan.at(i - 1));
        r.jointime = r.nametime = ScanTime;
    }
    rig.state.scanCount = static_cast<qint32>(scan.size());
}

} // namespace

class tst_PlayerMerge : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void matching_data();
    void matching();
    void cheapScanBorrows();
    void sameNames_data();
    void sameNames();
    void failureIsFatal();
};

void tst_PlayerMerge::matching_data()
{
    QTest::addColumn<QString>("previous");
    QTest::addColumn<QString>("scan");
    // per merged row: "new", or "p<j>" for previous record j, with "reset" when warn,
    // status and kicktime start over and "fresh" when nametime is the scan's own
    QTest::addColumn<QString>("expected");

    QTest::newRow("status name change") << u"1 Bob 1.1.1.1:100"_s << u"1 Robert 1.1.1.1:100"_s << u"p1 fresh"_s;
    QTest::newRow("same slot keeps kick") << u"1 Bob 1.1.1.1:100 !"_s << u"1 Bob 1.1.1.1:100"_s << u"p1"_s;
    QTest::newRow("reconnect on other slot") << u"1 Bob 1.1.1.1:100 !"_s << u"4 Bob 1.1.1.1:100"_s << u"p1 reset"_s;
    QTest::newRow("new port, same name") << u"1 Bob 1.1.1.1:100 !"_s << u"1 Bob 1.1.1.1:101"_s << u"p1"_s;
    QTest::newRow("address beats name") << u"1 Bob 1.1.1.1:1,2 Ann 2.2.2.2:2"_s << u"1 Ann 1.1.1.1:1"_s << u"p1 fresh"_s;
    QTest::newRow("equal names by address") << u"1 X 1.1.1.1:1,2 X 2.2.2.2:2 !"_s << u"2 X 2.2.2.2:2,1 X 1.1.1.1:1"_s
                                            << u"p2,p1"_s;
    QTest::newRow("getStatus name resets kick") << u"1 Bob 1.1.1.1:100 !"_s << u"- Bob -"_s << u"p1 reset"_s;
    QTest::newRow("getStatus name change") << u"- Bob -"_s << u"- Robert -"_s << u"new"_s;
    QTest::newRow("status after getStatus") << u"- Robert -"_s << u"2 Robert 1.1.1.1:100"_s << u"p1"_s;
    QTest::newRow("unique in scan only") << u"- Bob -,- Bob -"_s << u"- Bob -"_s << u"new"_s;
    QTest::newRow("neighbours keep kick") << u"1 X 1.1.1.1:1 !,2 A 2.2.2.2:2,3 X 3.3.3.3:3"_s << u"- X -,- A -,- X -"_s
                                          << u"p1,p2,p3"_s;
    QTest::newRow("last fitting neighbour") << u"- A -,- X -,- A -,- X -"_s << u"- A -,- X -,- C -,- X -"_s
                                            << u"new,p4,new,new"_s;
    QTest::newRow("candidate taken already") << u"- A -,- X -,- B -,- X -"_s << u"- A -,- X -,- B -,- A -,- X -"_s
                                             << u"p1,p2,p3,new,new"_s;
    QTest::newRow("no neighbour beyond ends") << u"- X -,- B -,- X -"_s << u"- X -,- X -"_s << u"new,new"_s;
    QTest::newRow("empty previous table") << QString() << u"1 A 1.1.1.1:1,- B -,- A -"_s << u"new,new,new"_s;
}

void tst_PlayerMerge::matching()
{
    QFETCH(QString, previous);
    QFETCH(QString, scan);
    QFETCH(QString, expected);

    auto rig = std::make_unique<PlayerRig>();
    rig->stats.totalplayers = 10;
    load(*rig, list(previous), list(scan));
    rig->merge.CopyPlayers();

    const QStringList rows = list(expected);
    QCOMPARE(rig->state.currentCount, rows.size());
    QCOMPARE(rig->stats.players, rows.size());
    QCOMPARE(rig->stats.totalplayers, 10 + rows.count(u"new"_s));
    for (int k = 1; k <= rows.size(); ++k) {
        const PlayerRecord &r = rig->state.currentPlayers[k];
        const QStringList how = rows.at(k - 1).split(u' ');
        const int j = how.first().mid(1).toInt(); // 0 for a new player
        const PlayerRecord p = j > 0 ? record(list(previous).at(j - 1)) : PlayerRecord{};
        const bool reset = j == 0 || how.contains(u"reset"_s);
        QCOMPARE(r.name, record(list(scan).at(k - 1)).name);
        QCOMPARE(r.jointime, j > 0 ? joinOf(j) : ScanTime);
        QCOMPARE(r.nametime, j > 0 && !how.contains(u"fresh"_s) ? nameTimeOf(j) : ScanTime);
        QCOMPARE(r.warn, reset ? 0 : j);
        QCOMPARE(r.status, reset ? u"Ok"_s : p.status);
        QCOMPARE(r.kicktime, reset || p.status == u"Ok" ? 0 : joinOf(j) + 0.002);
    }
}

void tst_PlayerMerge::cheapScanBorrows()
{
    auto rig = std::make_unique<PlayerRig>();
    load(*rig, {u"3 Bob 1.1.1.1:100"_s, u"7 Ann 2.2.2.2:200"_s}, {u"- Ann -"_s, u"- Bob -"_s});
    rig->state.scanPlayers[1].ping = u"33"_s;
    rig->merge.CopyPlayers();
    const PlayerRecord &r = rig->state.currentPlayers[1];
    QCOMPARE(QStringList({r.num, r.name, r.ping, r.score, r.ip, r.port, r.qport, r.rate, r.lastmsg}).join(u'|'),
             u"7|Ann|33|70|2.2.2.2|200|70|70|70"_s);
}

void tst_PlayerMerge::sameNames_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<bool>("same");
    QTest::newRow("none") << QString() << false;
    QTest::newRow("one") << u"a"_s << false;
    QTest::newRow("case differs") << u"Bob,bob,BOB"_s << false;
    QTest::newRow("apart") << u"Bob,Ann,Bob"_s << true;
}

void tst_PlayerMerge::sameNames()
{
    QFETCH(QString, names);
    QFETCH(bool, same);
    auto rig = std::make_unique<PlayerRig>();
    const QStringList scan = list(names);
    for (int i = 1; i <= scan.size() + 1; ++i) // the record behind the count is not read
        rig->state.scanPlayers[i].name = scan.value(i - 1, scan.value(0));
    rig->state.scanCount = static_cast<qint32>(scan.size());
    QCOMPARE(rig->merge.SameNames(), same);
}

void tst_PlayerMerge::failureIsFatal()
{
    auto rig = std::make_unique<PlayerRig>();
    rig->state.scanCount = 257;
    QCOMPARE(rig->fatalOf([&] { rig->merge.CopyPlayers(); }), u"CopyPlayers"_s);
}

QTEST_GUILESS_MAIN(tst_PlayerMerge)
#include "tst_playermerge.moc"
