// SPDX-License-Identifier: MIT
// Script reading and the sim's player list over script time.
#include "SimScript.h"
#include "SimServer.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

namespace {

// The whole visible state in one line: map, then slot:name:ping:score per player.
QByteArray summary(const SimServer &server)
{
    QByteArray out = server.map();
    for (const SimPlayer &p : server.players()) {
        QByteArray ping = QByteArray::number(p.ping);
        if (p.state == SimPlayer::State::Connecting)
            ping = "CNCT";
        else if (p.state == SimPlayer::State::Zombie)
            ping = "ZMBI";
        out += ' ' + QByteArray::number(p.slot) + ':' + p.name + ':' + ping + ':' + QByteArray::number(p.score);
    }
    return out;
}

const QByteArray kScript = R"(# a comment line
0    map start/map_one
1    join "Alpha One" ping=CNCT qport=77
1    join Bravo slot=5 score=3 ping=60 ip=192.0.2.9 port=28000 rate=8000 lastmsg=12
1.5  ping "Alpha One" 45   # trailing comment
3    join "^1Red\x80" ping=zmbi
2    name 5 "Bravo #2"
2    score "Bravo #2" -4
4    leave 0
4    join Charlie
6.25 ping 5 CNCT
6.25 map next/map_two

)";

} // namespace

class TstSimScript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void joinFields();
    void advanceTo_data();
    void advanceTo();
    void runFollowsRealTime();
    void demoScript();
};

// What the summary in advanceTo() does not show.
void TstSimScript::joinFields()
{
    SimScript script;
    QString error;
    QVERIFY2(script.parse(kScript, &error), qPrintable(error));
    QCOMPARE(script.events().size(), 11);
    const SimPlayer bravo{5, "Bravo", 3, 60, SimPlayer::State::Active, 12, "192.0.2.9", 28000, 0, 8000};
    QVERIFY(script.events()[2].player == bravo);
    QCOMPARE(script.events()[1].player.qport, 77);
}

void TstSimScript::advanceTo_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<QByteArray>("state");

    QTest::newRow("before start") << 0.0 << QByteArray("start/map_one");
    QTest::newRow("joins") << 1.0 << QByteArray("start/map_one 0:Alpha One:CNCT:0 5:Bravo:60:3");
    QTest::newRow("ping in") << 1.5 << QByteArray("start/map_one 0:Alpha One:45:0 5:Bravo:60:3");
    QTest::newRow("renamed, then scored by new name") << 2.0 << QByteArray("start/map_one 0:Alpha One:45:0 5:Bravo #2:60:-4");
    QTest::newRow("first free slot") << 3.0 << QByteArray("start/map_one 0:Alpha One:45:0 1:^1Red\x80:ZMBI:0 5:Bravo #2:60:-4");
    QTest::newRow("leave frees a slot for the next") << 4.0 << QByteArray("start/map_one 0:Charlie:50:0 1:^1Red\x80:ZMBI:0 5:Bravo #2:60:-4");
    QTest::newRow("just before") << 6.2 << QByteArray("start/map_one 0:Charlie:50:0 1:^1Red\x80:ZMBI:0 5:Bravo #2:60:-4");
    QTest::newRow("map") << 6.25 << QByteArray("next/map_two 0:Charlie:50:0 1:^1Red\x80:ZMBI:0 5:Bravo #2:CNCT:-4");
}

void TstSimScript::advanceTo()
{
    QFETCH(double, time);
    QFETCH(QByteArray, state);
    SimScript script;
    QVERIFY(script.parse(kScript));
    SimServer server;
    server.setScript(script);
    server.advanceTo(time);
    QCOMPARE(summary(server), state);
    QCOMPARE(server.scriptDone(), time >= 6.25);
}

void TstSimScript::runFollowsRealTime()
{
    SimScript script;
    QVERIFY(script.parse("0 join Now\n0.15 join Later\n"));
    SimServer server;
    server.setScript(script);
    QElapsedTimer clock;
    qint64 laterAt = -1;
    connect(&server, &SimServer::playersChanged, this, [&] {
        if (server.players().size() == 2)
            laterAt = clock.elapsed();
    });
    clock.start();
    server.run();
    QCOMPARE(server.players().size(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(laterAt >= 0, 2000);
    QVERIFY2(laterAt >= 140, qPrintable(QString::number(laterAt)));
    QVERIFY(server.scriptDone());
}

// The demo must keep what it is shown for: a full server early, colours, a ping that
// climbs past 750 and stays, a zombie, a map change near two minutes, and no lull
// longer than half a minute over five minutes.
void TstSimScript::demoScript()
{
    SimScript script;
    QString error;
    QVERIFY2(script.load(QStringLiteral(QUORVANE_DEMO_SCRIPT), &error), qPrintable(error));
    SimServer server;
    server.setScript(script);

    double last = 0;
    for (const SimScript::Event &e : script.events()) {
        QVERIFY2(e.time - last <= 30, qPrintable(QStringLiteral("lull before line %1").arg(e.line)));
        last = e.time;
    }
    QVERIFY(last >= 290);

    server.advanceTo(10);
    QVERIFY(server.players().size() >= 6);
    bool coloured = false;
    for (const SimPlayer &p : server.players())
        coloured = coloured || p.name.contains('^');
    QVERIFY(coloured);

    const QByteArray firstMap = server.map();
    bool zombie = false;
    double highSince = -1;
    double mapChangedAt = -1;
    for (double t = 10; t <= 310; t += 1) {
        server.advanceTo(t);
        int highest = 0;
        for (const SimPlayer &p : server.players()) {
            zombie = zombie || p.state == SimPlayer::State::Zombie;
            if (p.state == SimPlayer::State::Active)
                highest = std::max(highest, p.ping);
        }
        if (highest <= 750)
            highSince = -1;
        else if (highSince < 0)
            highSince = t;
        if (mapChangedAt < 0 && server.map() != firstMap)
            mapChangedAt = t;
    }
    QVERIFY(zombie);
    QVERIFY(highSince >= 0 && highSince < 120);
    QVERIFY(mapChangedAt >= 100 && mapChangedAt <= 150);
    QVERIFY(server.scriptDone());
}

QTEST_GUILESS_MAIN(TstSimScript)
#include "tst_simscript.moc"
