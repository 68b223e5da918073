// SPDX-License-Identifier: MIT
#include "PlayerRig.h"

#include "core/Text.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

class tst_PlayerGrid : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void pingFigures_data();
    void pingFigures();
    void rowsAndWidths();
};

void tst_PlayerGrid::pingFigures_data()
{
    QTest::addColumn<QStringList>("pings");
    QTest::addColumn<QString>("lblPing");
    QTest::addColumn<QString>("lblPing2");

    QTest::newRow("empty table") << QStringList{} << u"Ping (L/H): 999 / 0"_s << u"Ping (Avg/999): 0 / 0"_s;
    QTest::newRow("all 999") << QStringList{u"999"_s, u"999"_s, u"999"_s} << u"Ping (L/H): 999 / 0"_s
                             << u"Ping (Avg/999): 0 / 3"_s;
    QTest::newRow("ZMBI takes no part") << QStringList{u"ZMBI"_s, u"40"_s, u"60"_s} << u"Ping (L/H): 40 / 60"_s
                                        << u"Ping (Avg/999): 50 / 0"_s;
    QTest::newRow("999 apart") << QStringList{u"999"_s, u"20"_s, u"----"_s} << u"Ping (L/H): 20 / 20"_s
                               << u"Ping (Avg/999): 20 / 1"_s;
    QTest::newRow("50.5 to even") << QStringList{u"50"_s, u"51"_s} << u"Ping (L/H): 50 / 51"_s
                                  << u"Ping (Avg/999): 50 / 0"_s;
    QTest::newRow("51.5 to even") << QStringList{u"51"_s, u"52"_s} << u"Ping (L/H): 51 / 52"_s
                                  << u"Ping (Avg/999): 52 / 0"_s;
    QTest::newRow("above 16 bits") << QStringList{u"70000"_s, u"30"_s} << u"Ping (L/H): 30 / 30"_s
                                   << u"Ping (Avg/999): 30 / 0"_s;
}

void tst_PlayerGrid::pingFigures()
{
    QFETCH(QStringList, pings);
    QFETCH(QString, lblPing);
    QFETCH(QString, lblPing2);

    auto rig = std::make_unique<PlayerRig>();
    for (int i = 1; i <= pings.size(); ++i)
        rig->state.currentPlayers[i].ping = pings.at(i - 1);
    rig->state.currentPlayers[static_cast<qint32>(pings.size()) + 1].ping = u"1"_s; // behind the count
    rig->state.currentCount = static_cast<qint32>(pings.size());
    rig->stats.avgping = 77;
    rig->grid.RefreshGrid();

    QCOMPARE(rig->view.labels.value(View::Label::lblPing), lblPing);
    QCOMPARE(rig->view.labels.value(View::Label::lblPing2), lblPing2);
    QCOMPARE(u"Ping (Avg/999): "_s + QString::number(rig->stats.avgping), lblPing2.section(u' ', 0, 2));
}

void tst_PlayerGrid::rowsAndWidths()
{
    auto rig = std::make_unique<PlayerRig>();
    rig->settings.PingPasses = 3;
    rig->stats.players = 2;
    rig->stats.totalplayers = 9;
    rig->stats.map = u"obj/obj_team1"_s;
    rig->stats.totalmaps = 4;

    rig->grid.RefreshGrid();
    QCOMPARE(rig->view.grid.columnWidths, (QList<qint32>{500, 950, 500, 550, 950, 1000, 550, 550}));
    QCOMPARE(rig->view.grid.rows.size(), 2);

    PlayerRecord &a = rig->state.currentPlayers[1];
    a = PlayerRecord{};
    a.num = u"4"_s, a.name = u"Some Player"_s, a.ping = u"48"_s, a.score = u"12"_s, a.ip = u"192.0.2.7"_s;
    a.jointime = 0.75, a.status = u"Kicked (Ping)"_s, a.warn = 2;
    PlayerRecord &b = rig->state.currentPlayers[2];
    b = PlayerRecord{};
    b.num = b.score = b.ip = unknownField();
    b.name = u"Al"_s, b.ping = u"ZMBI"_s, b.status = u"Ok"_s;
    rig->state.currentCount = 2;
    rig->grid.RefreshGrid();

    const GridView &g = rig->view.grid;
    QCOMPARE(g.header, (QStringList{u"Client"_s, u"Name"_s, u"Ping"_s, u"Score"_s, u"IP"_s, u"Joined"_s, u"Status"_s, u"Warn"_s}));
    QCOMPARE(g.rows.size(), 4);
    QCOMPARE(g.rows.at(0).cells, (QStringList{u"4"_s, u"Some Player"_s, u"48"_s, u"12"_s, u"192.0.2.7"_s,
                                              Text::timeOfDayText(0.75), u"Kicked (Ping)"_s, u"2/3"_s}));
    QCOMPARE(g.rows.at(1).cells, (QStringList{u"----"_s, u"Al"_s, u"ZMBI"_s, u"----"_s, u"----"_s,
                                              Text::timeOfDayText(0), u"Ok"_s, u"0/3"_s}));
    QCOMPARE(g.rows.at(0).playerNumber, 1);
    QCOMPARE(g.rows.at(1).playerNumber, 2);
    QCOMPARE(g.rows.at(3).playerNumber, 0);
    QVERIFY(g.rows.at(3).cells.join(QString()).isEmpty());
    QCOMPARE(g.columnWidths, (QList<qint32>{500, 1100, 500, 550, 900, 1000, 550, 550}));

    QCOMPARE(rig->view.labels.value(View::Label::lblPlayers), u"Players (C/T): 2 / 9"_s);
    QCOMPARE(rig->view.labels.value(View::Label::lblMap), u"Map (C/T): obj/obj_team1 / 4"_s);

    a.ip = unknownField(); // a narrow column shrinks below its base width
    rig->grid.RefreshGrid();
    QCOMPARE(rig->view.grid.columnWidths.at(4), 400);
}

QTEST_GUILESS_MAIN(tst_PlayerGrid)
#include "tst_playergrid.moc"
