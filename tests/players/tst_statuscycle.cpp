// SPDX-License-Identifier: MIT
#include "PlayerRig.h"
#include "ReplyText.h"

#include "link/RconCodec.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace ReplyText;

class tst_StatusCycle : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void getScores_data();
    void getScores();
};

void tst_StatusCycle::getScores_data()
{
    QTest::addColumn<QString>("cmd");
    QTest::addColumn<QString>("pane");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("names"); // currentPlayers afterwards
    QTest::addColumn<QString>("map");

    const QString status = u"status"_s;
    const QString getStatus = u"getStatus"_s;
    const QString info = u"\\sv_hostname\\T\\mapname\\dm/mohdm6\\g_gametype\\1"_s;
    const QString two = rawStatus(u"mohdm1"_s, {statusRow(numberedRow(1)), statusRow(numberedRow(2))});
    const QString third = rawStatus(u"mohdm2"_s, {statusRow(numberedRow(3))});
    const QString named = rawStatus(u"mohdm4"_s, {statusRow({.name = u"Xstatus"_s})});
    const QString twins = rawStatus(u"mohdm3"_s, {statusRow({.name = u"Twin"_s}),
                                                  statusRow({.name = u"Twin"_s, .address = u"1.2.3.4:5"_s})});
    const QStringList old{u"Old"_s};

    QTest::newRow("accepted") << status << paneText(status, two) << 1 << QStringList{u"Player1"_s, u"Player2"_s}
                              << u"mohdm1"_s;
    QTest::newRow("last echo wins") << status << paneText(status, two) + paneText(status, third) + u"\r\nx"_s << 1
                                    << QStringList{u"Player3"_s} << u"mohdm2"_s;
    QTest::newRow("getStatus echo is no status echo") << status << paneText(status, two) + paneText(getStatus, {})
                                                      << 1 << QStringList{u"Player1"_s, u"Player2"_s} << u"mohdm1"_s;
    QTest::newRow("name holding the word") << status << paneText(status, named) << -1 << old << u"old"_s;
    QTest::newRow("pane cleared before reply") << status << RconCodec::CleanReply(two) << -1 << old << u"old"_s;
    QTest::newRow("empty table") << status << paneText(status, rawStatus(u"m"_s, {})) << -1 << old << u"old"_s;
    QTest::newRow("status timed out") << status << paneText(status, {}) << -1 << old << u"old"_s;
    QTest::newRow("equal names in status") << status << paneText(status, twins) << 1
                                           << QStringList{u"Twin"_s, u"Twin"_s} << u"mohdm3"_s;
    QTest::newRow("getStatus") << getStatus << paneText(getStatus, rawGetStatus(info, {u"5 \"Bob\""_s})) << 1
                               << QStringList{u"Bob"_s} << u"dm/mohdm6"_s;
    QTest::newRow("equal names in getStatus")
        << getStatus << paneText(getStatus, rawGetStatus(info, {u"5 \"Bob\""_s, u"9 \"Bob\""_s})) << 0 << old
        << u"dm/mohdm6"_s;
    QTest::newRow("names differ in case")
        << getStatus << paneText(getStatus, rawGetStatus(info, {u"5 \"Bob\""_s, u"9 \"bob\""_s})) << 1
        << QStringList{u"Bob"_s, u"bob"_s} << u"dm/mohdm6"_s;
    QTest::newRow("getStatus timed out") << getStatus << paneText(getStatus, {}) << -1 << old << QString();
}

void tst_StatusCycle::getScores()
{
    QFETCH(QString, cmd);
    QFETCH(QString, pane);
    QFETCH(int, answer);
    QFETCH(QStringList, names);
    QFETCH(QString, map);

    auto rig = std::make_unique<PlayerRig>();
    rig->state.currentPlayers[1].name = u"Old"_s;
    rig->state.currentCount = 1;
    rig->stats.map = u"old"_s;
    rig->pane.append(pane);

    QCOMPARE(rig->cycle.GetScores(cmd), answer);
    QStringList got;
    for (qint32 k = 1; k <= rig->state.currentCount; ++k)
        got << rig->state.currentPlayers[k].name;
    QCOMPARE(got, names);
    QCOMPARE(rig->stats.map, map);
}

QTEST_GUILESS_MAIN(tst_StatusCycle)
#include "tst_statuscycle.moc"
