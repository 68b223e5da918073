// SPDX-License-Identifier: MIT
// The sim over real loopback UDP, with a bare socket as the client: what goes on the
// wire is checked byte for byte, not through the engine's own codec.
#include "SimServer.h"
#include "SimText.h"

#include <QNetworkDatagram>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

#include <memory>

namespace {

const QByteArray kPrint = QByteArrayLiteral("\xFF\xFF\xFF\xFF\x01print\n");
const QByteArray kStatusHead = QByteArrayLiteral("\xFF\xFF\xFF\xFFstatusResponse\n");
constexpr int kWaitMs = 2000;

QByteArray oob(char direction, const QByteArray &text)
{
    return QByteArrayLiteral("\xFF\xFF\xFF\xFF") + direction + text;
}

QByteArray rcon(const QByteArray &text)
{
    return oob('\x02', text);
}

} // namespace

class TstSimServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void replies_data();
    void replies();
    void statusBytes();
    void longStatusSplits();
    void kickedPlayerRejoins();

private:
    void addFourPlayers();
    void send(const QByteArray &datagram);
    // Waits for `count` more replies in all, then checks that nothing else came: the
    // next answer after a probe must be the probe's.
    void expectReplies(int count);

    std::unique_ptr<SimServer> m_server;
    std::unique_ptr<QUdpSocket> m_client;
    QList<QByteArray> m_replies;
};

void TstSimServer::init()
{
    m_server = std::make_unique<SimServer>();
    QVERIFY(m_server->listen(QHostAddress::LocalHost, 0));
    m_server->setPassword("secret");
    m_client = std::make_unique<QUdpSocket>();
    QVERIFY(m_client->bind(QHostAddress::LocalHost, 0));
    m_replies.clear();
    connect(m_client.get(), &QUdpSocket::readyRead, this, [this] {
        while (m_client->hasPendingDatagrams())
            m_replies.append(m_client->receiveDatagram().data());
    });
}

void TstSimServer::cleanup()
{
    m_client.reset();
    m_server.reset();
}

void TstSimServer::addFourPlayers()
{
    using S = SimPlayer::State;
    const QList<SimPlayer> players{
        {0, "Ironside", 12, 48, S::Active, 0, "203.0.113.10", 27960, 1871, 25000},
        {3, "^1Red^7Baron", -3, 999, S::Active, 50, "198.51.100.7", 28004, 40213, 8000},
        {7, "Harrowgate_Quintus", 1000, 0, S::Connecting, 350, "192.0.2.150", 27960, 0, 25000},
        {12, "Zed\xE9", 0, 20, S::Zombie, 9, "192.0.2.1", 1, 5, 99999},
    };
    for (const SimPlayer &p : players)
        QCOMPARE(m_server->addPlayer(p), p.slot);
}

void TstSimServer::send(const QByteArray &datagram)
{
    QCOMPARE(m_client->writeDatagram(datagram, QHostAddress::LocalHost, m_server->port()), datagram.size());
}

void TstSimServer::expectReplies(int count)
{
    QVERIFY2(QTest::qWaitFor([&] { return m_replies.size() >= count; }, kWaitMs),
             qPrintable(QStringLiteral("%1 of %2 replies").arg(m_replies.size()).arg(count)));
    send(oob('\x02', "getStatus"));
    QVERIFY(QTest::qWaitFor([&] { return m_replies.size() > count; }, kWaitMs));
    QCOMPARE(m_replies.size(), count + 1);
    QVERIFY(m_replies.takeLast().startsWith(kStatusHead));
}

void TstSimServer::replies_data()
{
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QByteArray>("datagram");
    QTest::addColumn<QByteArray>("reply");

    const QByteArray none = "No rconpassword set on the server.\n";
    const QByteArray bad = "Bad rconpassword.\n";
    QTest::newRow("no password set") << QByteArray() << rcon("rcon  status") << none;
    QTest::newRow("no password set, one given") << QByteArray() << rcon("rcon secret status") << none;
    QTest::newRow("wrong password") << QByteArray("secret") << rcon("rcon hunter2 status") << bad;
    QTest::newRow("password case") << QByteArray("secret") << rcon("rcon Secret status") << bad;
    QTest::newRow("password prefix") << QByteArray("secret") << rcon("rcon secre status") << bad;
    QTest::newRow("password longer") << QByteArray("secret") << rcon("rcon secrets status") << bad;
    QTest::newRow("empty password") << QByteArray("secret") << rcon("rcon  status") << bad;
    QTest::newRow("empty command") << QByteArray("secret") << rcon("rcon secret") << QByteArray();
    QTest::newRow("say") << QByteArray("secret") << rcon("rcon secret say Hello \"all\" ^2x") << QByteArray("console: Hello \"all\" ^2x\n");
    QTest::newRow("unknown") << QByteArray("secret") << rcon("rcon secret Frobnicate 1") << QByteArray("Unknown command \"Frobnicate\"\n");
    QTest::newRow("serverinfo, any case") << QByteArray("secret") << rcon("rcon secret SerVerInfo")
                                          << QByteArray("Server info settings:\n"
                                                        "sv_hostname         Sim Server\n"
                                                        "g_gametype          2\n"
                                                        "mapname             obj/obj_team1\n"
                                                        "sv_maxclients       64\n");
    QTest::newRow("kick nobody") << QByteArray("secret") << rcon("rcon secret kick \"Nobody Here\"")
                                 << QByteArray("User Nobody Here is not on the server\n");
    QTest::newRow("kick done") << QByteArray("secret") << rcon("rcon secret kick Ironside") << QByteArray();
    QTest::newRow("kick without colours") << QByteArray("secret") << rcon("rcon secret kick \"redbaron\"") << QByteArray();
    QTest::newRow("kick near miss") << QByteArray("secret") << rcon("rcon secret kick \"Red Baron\"")
                                    << QByteArray("User Red Baron is not on the server\n");
    QTest::newRow("clientkick word") << QByteArray("secret") << rcon("rcon secret clientkick abc") << QByteArray("Bad client slot: abc\n");
    QTest::newRow("clientkick negative") << QByteArray("secret") << rcon("rcon secret clientkick -1") << QByteArray("Bad client slot: -1\n");
    QTest::newRow("clientkick 64") << QByteArray("secret") << rcon("rcon secret clientkick 64") << QByteArray("Bad client slot: 64\n");
    QTest::newRow("clientkick empty slot") << QByteArray("secret") << rcon("rcon secret clientkick 5") << QByteArray("Client 5 is not active\n");
    QTest::newRow("clientkick done") << QByteArray("secret") << rcon("rcon secret clientkick 3") << QByteArray();
    QTest::newRow("direction 00") << QByteArray("secret") << oob('\x00', "rcon secret say x") << QByteArray("console: x\n");
    QTest::newRow("direction FF") << QByteArray("secret") << oob('\xFF', "rcon secret say x") << QByteArray("console: x\n");
    QTest::newRow("direction r") << QByteArray("secret") << oob('r', "rcon secret say x") << QByteArray("console: x\n");
}

void TstSimServer::replies()
{
    QFETCH(QByteArray, password);
    QFETCH(QByteArray, datagram);
    QFETCH(QByteArray, reply);
    addFourPlayers();
    m_server->setPassword(password);
    send(datagram);
    expectReplies(1);
    QCOMPARE(m_replies, QList<QByteArray>{kPrint + reply});
}

void TstSimServer::statusBytes()
{
    addFourPlayers();
    send(rcon("rcon secret status"));
    expectReplies(1);
    const QByteArray table =
        "map: obj/obj_team1\n"
        "num score ping name            lastmsg address               qport rate\n"
        "--- ----- ---- --------------- ------- --------------------- ----- -----\n"
        "  0    12   48 Ironside              0 203.0.113.10:27960     1871 25000\n"
        "  3    -3  999 ^1Red^7Baron         50 198.51.100.7:28004    40213  8000\n"
        "  7  1000 CNCT Harrowgate_Quintus    350 192.0.2.150:27960         0 25000\n"
        " 12     0 ZMBI Zed\xE9                  9 192.0.2.1:1               5 99999\n"
        "\n";
    QCOMPARE(m_replies.first(), kPrint + table);
}

void TstSimServer::longStatusSplits()
{
    QByteArray table = "map: obj/obj_team1\n"
                       "num score ping name            lastmsg address               qport rate\n"
                       "--- ----- ---- --------------- ------- --------------------- ----- -----\n";
    for (int i = 0; i < 40; ++i) {
        const QByteArray name = "Player" + QByteArray::number(i);
        const QByteArray ip = "192.0.2." + QByteArray::number(i + 1);
        QCOMPARE(m_server->addPlayer({-1, name, i * 3, 40 + i, SimPlayer::State::Active, i, ip, 27960, 100 + i, 25000}), i);
        table += QString::asprintf("%3d %5d %4d %-16s%7d %-22s%5d %5d\n", i, i * 3, 40 + i, name.constData(), i,
                                   (ip + ":27960").constData(), 100 + i, 25000)
                     .toLatin1();
    }
    table += '\n';
    const int parts = int((table.size() + 1006) / 1007);
    QVERIFY(parts >= 3);

    send(rcon("rcon secret status"));
    expectReplies(parts);
    QByteArray joined;
    for (int i = 0; i < parts; ++i) {
        QVERIFY(m_replies[i].startsWith(kPrint));
        const QByteArray text = m_replies[i].mid(kPrint.size());
        QVERIFY(text.size() <= 1007);
        if (i < parts - 1)
            QCOMPARE(text.size(), 1007);
        joined += text;
    }
    QCOMPARE(joined, table);
}

void TstSimServer::kickedPlayerRejoins()
{
    SimScript script;
    QVERIFY(script.parse("1 join Bob slot=4\n3 ping Bob 70\n5 join Bob slot=2\n6 ping Bob 80\n"));
    m_server->setPassword("secret");
    m_server->setScript(script);
    m_server->advanceTo(2);
    send(rcon("rcon secret clientkick 4"));
    expectReplies(1);
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    m_server->advanceTo(4); // gone: his event is dropped without a warning
    QVERIFY(m_server->players().isEmpty());
    m_server->advanceTo(6);
    QCOMPARE(m_server->player(2)->ping, 80);
}

// "console: " and the line end make 10 bytes around the said text.

QTEST_GUILESS_MAIN(TstSimServer)
#include "tst_simserver.moc"
