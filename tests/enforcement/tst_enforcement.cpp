// SPDX-License-Identifier: MIT
// Enforcement twice over: check cycles against the simulated server over loopback (the
// commands on the wire in order, what the server does with them, the files after), and
// the policies and the kick and ban actions on a table and lists of their own (what
// matches and what nearly does, the repeat gate, the words, the ban tables).
#include "EngineWorld.h"
#include "PolicyStack.h"
#include "SimServer.h"
#include "enforcement/ImpersonatorPolicy.h"
#include "enforcement/NamePolicies.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Wire = QList<QByteArray>;

namespace {

// slot, name, address, score, ping, qport, rate, lastmsg
SimPlayer player(int slot, const char *name, const char *ip, int score = 0, int ping = 50, int qport = 1500, int rate = 9000,
                 int lastmsg = 0)
{
    return {slot, name, score, ping, SimPlayer::State::Active, lastmsg, ip, 27960, qport, rate};
}

// The engine against the simulated server, a full status at every check, pings not looked at.
struct Live
{
    SimServer sim;
    EngineWorld w{40};
    Settings &s = w.engine.settings;
    qsizetype seen = 0;

    Live(std::initializer_list<SimPlayer> players)
    {
        sim.setPassword("pw");
        sim.listen();
        w.connectTo(sim.port(), u"pw"_s);
        s.StatusInterval = 1, s.KickPing = false;
        w.openLog();
        for (const SimPlayer &p : players)
            sim.addPlayer(p);
    }
    void lists(const QList<std::pair<QString, QByteArray>> &files)
    {
        for (const auto &[file, bytes] : files)
            TestEnv::writeFile(w.env.workDir() + file, bytes);
        w.engine.lists().LoadAll();
    }
    // One check; what the server got from it, without framing and password.
    Wire check()
    {
        w.engine.TkCheck();
        Wire out;
        for (const QList<SimServer::Datagram> got = sim.received(); seen < got.size(); ++seen)
            out.append(got.at(seen).bytes.mid(5).replace("rcon pw ", ""));
        return out;
    }
    Wire left() const
    {
        Wire names;
        for (const SimPlayer &p : sim.players())
            names.append(p.name);
        return names;
    }
};

// The policies and the actions on the engine's table with lists, log and queue of their own
// (see PolicyStack); 192.0.2.50 is immune, the clock stands at noon.
struct Table : EngineWorld
{
    Settings &settings = engine.settings;
    Stats &stats = engine.stats;
    PlayerState &players = engine.players();
    PolicyStack stack{players, settings, stats, clock, engine.errors(), engine.pane()};
    QStringList &queued = stack.queued;

    Table()
    {
        settings.SaveLog = true;
        list(u"immuneIP.txt"_s, "192.0.2.50\r\n");
        stack.log.OpenLog();
    }
    void list(const QString &file, const QByteArray &bytes)
    {
        TestEnv::writeFile(env.workDir() + file, bytes);
        stack.lists.LoadAll();
    }
    // A player on the next row, as a full status shows him; his slot is the row's number.
    PlayerRecord &add(const QString &name, const QString &ip = u"192.0.2.1"_s)
    {
        PlayerRecord &r = players.currentPlayers[++players.currentCount];
        r = PlayerRecord{};
        r.num = QString::number(players.currentCount);
        r.name = name, r.ip = ip, r.status = u"Ok"_s;
        r.jointime = r.nametime = clock.timeOfDay();
        return r;
    }
    QStringList logLines() const // the log's records after its head block
    {
        const QStringList records = QString::fromLatin1(file(u"servlog.txt"_s)).split(u"\r\n\r\n"_s);
        return records.mid(1, records.size() - 2);
    }
};

struct ListRow { QString files; QByteArray bytes; QString name, ip; int hits; QString status; };
struct PairRow { QString nameA, nameB, ipB, pingA; double agoB; QString how, act; };
struct BanRow { int type; QString ip, reason; QByteArray banned, bannedIP; QStringList log; QByteArray record; int banadds; };

} // namespace

Q_DECLARE_METATYPE(ListRow)
Q_DECLARE_METATYPE(PairRow)
Q_DECLARE_METATYPE(BanRow)

class TestEnforcement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Score strictly below the limit, QPort and Rate outside their inclusive ranges.
    void scoreAndRanges()
    {
        // The teamkiller's name fills its column, up against a lastmsg of seven digits.
        Live rig{player(0, "Steady", "192.0.2.1", -3, 50, 1000, 8000), player(1, "Edge", "192.0.2.2", 0, 50, 2000, 9000),
                 player(2, "Harrowgate_Quint", "192.0.2.3", -4, 50, 1500, 9000, 1234567),
                 player(3, "Qlow", "192.0.2.4", 0, 50, 999), player(4, "Qhigh", "192.0.2.5", 0, 50, 2001),
                 player(5, "Rlow", "192.0.2.6", 0, 50, 1500, 7999), player(6, "Rhigh", "192.0.2.7", 0, 50, 1500, 9001)};
        rig.s.StatusInterval = 2; // the cheap scan first: no score, qport or rate known yet
        rig.s.KickTK = rig.s.QPort = rig.s.Rate = rig.s.Ban = true;
        rig.s.QPortMin = 1000, rig.s.QPortMax = 2000, rig.s.RateMin = 8000, rig.s.RateMax = 9000;
        rig.s.BanFor = 11; // TKing and bad words
        QCOMPARE(rig.check(), Wire{"getStatus"});
        QCOMPARE(rig.check(), (Wire{"status", "say [Quorvane]: Kicked Harrowgate_Quint for for TKing.", "clientkick 2",
                                    "say [Quorvane]: Kicked Qlow for QPort.", "clientkick 3", "say [Quorvane]: Kicked Qhigh for QPort.",
                                    "clientkick 4", "say [Quorvane]: Kicked Rlow for Rate.", "clientkick 5",
                                    "say [Quorvane]: Kicked Rhigh for Rate.", "clientkick 6"}));
        QCOMPARE(rig.left(), (Wire{"Steady", "Edge"}));
        QCOMPARE(rig.w.file(u"banned.txt"_s) + rig.w.file(u"bannedIP.txt"_s), "Harrowgate_Quint\r\n192.0.2.3\r\n"_ba);
    }

    void namesAndAddresses()
    {
        Live rig{player(0, "^1Vil^7lain", "192.0.2.1"), player(1, "Jos\xe9", "198.51.100.9"), player(2, "xCHEATx", "192.0.2.3"),
                 player(3, "Warden", "192.0.2.50")};
        rig.s.StatusInterval = 2; // the cheap scan first: no slots, no addresses
        rig.s.NameCheck = rig.s.Ban = true;
        rig.s.BanFor = 100;
        rig.lists({{u"banned.txt"_s, "villain\r\n"}, {u"bannedIP.txt"_s, "198.51.100.9\r\n192.0.2.50\r\n"},
                   {u"badnames.txt"_s, "cheat\r\n"}, {u"immuneIP.txt"_s, "192.0.2.50\r\n"}});
        QCOMPARE(rig.check(), (Wire{"getStatus", "say [Quorvane]: Kicked Villain for banned name.", "kick \"Villain\"",
                                    "say [Quorvane]: Kicked xCHEATx for bad word in name.", "kick \"xCHEATx\""}));
        QCOMPARE(rig.check(), (Wire{"status", "say [Quorvane]: Kicked Jos\xe9 for banned IP.", "clientkick 1",
                                    "say [Quorvane]: Immune (Warden / banned IP)."}));
        QCOMPARE(rig.left(), Wire{"Warden"});
        // Appended a byte a character, as the server sent the name.
        QCOMPARE(rig.w.file(u"banned.txt"_s), "villain\r\nVillain\r\nxCHEATx\r\nJos\xe9\r\n"_ba);
        QCOMPARE(rig.w.file(u"bannedIP.txt"_s), "198.51.100.9\r\n192.0.2.50\r\n198.51.100.9\r\n"_ba);
        // José's ban reloads both lists under the walk: the address walk keeps its bound,
        // the name walk after it sees his name.
        QVERIFY(rig.w.file(u"servlog.txt"_s).contains("kickBannedPlayers: 3 players kicked.\r\n\r\n"
                                                      "kickBadNamePlayers: 0 players kicked.\r\n\r\nkickImpersonators: 0 players kicked."));
    }

    // A stranger's status table (slot 2 "evil one" at 203.0.113.99), and the same with a short
    // row behind it, land between the echo and the reply of a server 10 ms away. Heard from
    // the server only, they kick nobody, ban nobody and end nothing, check after check;
    // heard from anyone, the old harm returns.
    void forgedTables()
    {
        SimServer forger;
        forger.addPlayer(player(2, "evil one", "203.0.113.99"));
        const QByteArray table = QByteArray("\xFF\xFF\xFF\xFF\x01print\n", 11) + forger.statusText();
        const QByteArray shortRow = table.chopped(1) + "  9     0   50 short\n\n";
        const QList<std::tuple<bool, QByteArray, QString>> cases{
            {true, shortRow, u"status/status Steady,Innocent  scanned 2"_s},
            {false, table, u"status,say [Quorvane]: Kicked evil one for bad word in name.,clientkick 2/status,say "
                           "[Quorvane]: Kicked evil one for banned IP.,clientkick 2 Steady evil one\r\n203.0.113.99\r\n scanned 1"_s},
            {false, shortRow, u"ParseScores"_s}};
        for (const auto &[serverOnly, forged, outcome] : cases) {
            Live rig{player(0, "Steady", "192.0.2.1"), player(2, "Innocent", "192.0.2.2")};
            rig.sim.setReplyDelay(10);
            rig.s.ServerOnly = serverOnly;
            rig.s.NameCheck = rig.s.Ban = true, rig.s.BanFor = 1, rig.s.BanType = 3;
            rig.lists({{u"badnames.txt"_s, "evil\r\n"}});
            QUdpSocket stranger;
            QVERIFY(stranger.bind(QHostAddress::LocalHost, 0));
            connect(&rig.sim, &SimServer::datagramReceived, &stranger, [&](const QByteArray &d) {
                if (d.endsWith("status"))
                    stranger.writeDatagram(forged, QHostAddress::LocalHost, rig.w.engine.link().localPort());
            });
            QString got;
            const QString fatal = rig.w.fatal([&] {
                const Wire first = rig.check();
                rig.w.clock.jump(10); // past the five seconds that hold a second kick of one player back
                const Wire second = rig.check();
                got = QString::fromLatin1(first.join(',') + '/' + second.join(',') + ' ' + rig.left().join(',') + ' '
                                          + rig.w.file(u"banned.txt"_s) + rig.w.file(u"bannedIP.txt"_s))
                    + u" scanned %1"_s.arg(rig.w.engine.stats.players);
            });
            QCOMPARE(fatal.isEmpty() ? got : fatal.section(u"\r\n\r\n"_s, 1).section(u'[', 0, 0), outcome);
        }
    }

    // A ping above the limit at three checks in a row kicks: equal to the limit is no pass,
    // a low one starts again, a tag neither helps nor harms, the first check on a new map
    // is skipped where SkipMap says so.
    void pingOverChecks()
    {
        Live rig{player(0, "Steady", "192.0.2.1", 0, 750), player(1, "Laggy", "192.0.2.2", 0, 751)};
        rig.s.KickPing = rig.s.Ban = true, rig.s.BanFor = 100; // all but high pings
        rig.lists({{u"highping.txt"_s, "%name%, your ping of %ping% is over %pinglimit%.\r\n"}});
        QStringList warns;
        Wire said;
        for (const QByteArray step : {"751", "751", "ZMBI", "100", "751", "map", "skip", "751"}) {
            SimPlayer laggy = *rig.sim.player(1);
            laggy.state = step == "ZMBI" ? SimPlayer::State::Zombie : SimPlayer::State::Active;
            laggy.ping = step.toInt() ? step.toInt() : laggy.ping;
            rig.sim.updatePlayer(laggy);
            rig.s.SkipMap = step == "skip";
            if (!step.toInt() && step != "ZMBI")
                rig.sim.setMap(rig.sim.map() == "dm/a" ? "dm/b" : "dm/a");
            said += rig.check().mid(1);
            warns << rig.w.view.grid.rows.at(0).cells.at(7) + u' ' + rig.w.view.grid.rows.at(1).cells.at(7);
        }
        QCOMPARE(warns, QStringList({u"0/3 1/3"_s, u"0/3 2/3"_s, u"0/3 2/3"_s, u"0/3 0/3"_s, u"0/3 1/3"_s, u"0/3 2/3"_s,
                                     u"0/3 2/3"_s, u"0/3 3/3"_s}));
        QCOMPARE(said, (Wire{"say [Quorvane]: Laggy, your ping of 751 is over 750.", "clientkick 1"}));
        QCOMPARE(rig.left(), Wire{"Steady"});
        QCOMPARE(rig.w.file(u"banned.txt"_s) + rig.w.file(u"bannedIP.txt"_s), QByteArray());
        QCOMPARE(rig.w.view.pane.count(u"skipping ping check"_s), 1);
        QVERIFY(rig.w.view.pane.contains(u"Changed from [dm/a] to [dm/b] - skipping ping check\r\n"_s));
    }

    void forceKickRoads()
    {
        Live rig{player(0, "^1Gone", "192.0.2.1")};
        rig.s.ForceKick = true;
        rig.lists({{u"banned.txt"_s, "Ghost\r\n^1Gone\r\n"}});
        // No other policy needs this cycle's table: through the queue, and the cycle ends.
        QCOMPARE(rig.check(), (Wire{"kick \"Ghost\"", "kick \"^1Gone\""}));
        QVERIFY(rig.left().isEmpty());
        QVERIFY(rig.w.file(u"servlog.txt"_s).endsWith("...force kicking.\r\n\r\n"));
        // The ping check needs it: past the queue, every event held back, then the status.
        rig.s.KickPing = true;
        const QDateTime before = rig.w.clock.now();
        QCOMPARE(rig.check(), (Wire{"kick \"Ghost\"", "kick \"^1Gone\"", "status"}));
        QVERIFY(before.msecsTo(rig.w.clock.now()) >= 2000);
        QCOMPARE(rig.w.engine.stats.checks, 2);
    }

    void lists_data()
    {
        QTest::addColumn<ListRow>("k"); // badnames.txt alone runs the bad name policy
        const QString n = u"banned.txt"_s, a = u"bannedIP.txt"_s, w = u"badnames.txt"_s, ip = u"192.0.2.1"_s, ok = u"Ok"_s;
        const QString byName = u"Kicked (banned name)"_s, byIP = u"Kicked (banned IP)"_s, byWord = u"Kicked (bad word in name)"_s;
        QTest::newRow("name whole, any case, trimmed") << ListRow{n, " bob \r\n"_ba, u"BOB "_s, ip, 1, byName};
        QTest::newRow("longer name") << ListRow{n, "bob"_ba, u"bobby"_s, ip, 0, ok};
        QTest::newRow("Latin-1 name, other case") << ListRow{n, "s\xF6ren"_ba, u"S\u00D6REN"_s, ip, 1, byName};
        QTest::newRow("address with a digit more") << ListRow{a, "192.0.2.1"_ba, u"Bob"_s, u"192.0.2.10"_s, 0, ok};
        QTest::newRow("address twice: two hits") << ListRow{a, "192.0.2.1\r\n 192.0.2.1 "_ba, u"Bob"_s, ip, 2, byIP};
        QTest::newRow("both lists: address first") << ListRow{n + u' ' + a, "Bob\r\n192.0.2.1"_ba, u"bob"_s, ip, 2, byIP};
        QTest::newRow("unknown address, ---- listed") << ListRow{a, "----"_ba, u"Bob"_s, u"----"_s, 1, byIP};
        QTest::newRow("bad word inside a word") << ListRow{w, "ass"_ba, u" Bassist "_s, ip, 1, byWord};
        QTest::newRow("every occurrence, overlapping") << ListRow{w, "aa\r\na"_ba, u"aaa"_s, ip, 5, byWord};
        QTest::newRow("word longer than the name") << ListRow{w, "bobby"_ba, u"bob"_s, ip, 0, ok};
        QTest::newRow("blank inside a word stays") << ListRow{w, "a s"_ba, u"as"_s, ip, 0, ok};
        QTest::newRow("immune: spared at each hit") << ListRow{w, "o"_ba, u"Boo"_s, u"192.0.2.50"_s, 2, ok};
        QTest::newRow("immune with a blank behind") << ListRow{n + u" immuneIP.txt"_s, "Bob\r\n192.0.2.1 "_ba, u"Bob"_s, ip, 1, byName};
    }

    void lists()
    {
        QFETCH(ListRow, k);
        Table t;
        for (const QString &file : k.files.split(u' '))
            t.list(file, k.bytes);
        t.add(k.name, k.ip);
        const bool bad = k.files == u"badnames.txt";
        QCOMPARE(bad ? NamePolicies::kickBadNamePlayers(t.stack.context) : NamePolicies::kickBannedPlayers(t.stack.context), k.hits);
        QCOMPARE(t.players.currentPlayers[1].status, k.status);
        QCOMPARE(t.queued.size(), k.status == u"Ok" ? k.hits : 2); // an immune row hears a line per hit
        QCOMPARE(t.logLines().last(), u"%1: %2 players kicked."_s.arg(bad ? u"kickBadNamePlayers"_s : u"kickBannedPlayers"_s).arg(k.hits));
    }

    void impersonators_data()
    {
        QTest::addColumn<PairRow>("k"); // how: T, B took the name after joining; S, B has no slot yet
        const QString h = u"Hawk"_s, H = u"HAWK"_s, ip = u"192.0.2.2"_s, z = u"50"_s;
        QTest::newRow("joined 62.2 s ago") << PairRow{h, H, ip, z, 62.2, {}, u"warn 2"_s};
        QTest::newRow("joined 62.25 s ago") << PairRow{h, H, ip, z, 62.25, {}, u"kick 2"_s};
        QTest::newRow("took the name") << PairRow{h, H, ip, z, 10, u"T"_s, u"kick 2"_s};
        QTest::newRow("no slot: warned only") << PairRow{h, H, ip, z, 300, u"S"_s, u"warn 2"_s};
        QTest::newRow("same address") << PairRow{h, H, u"192.0.2.1"_s, z, 300, {}, {}};
        QTest::newRow("a blank more") << PairRow{h, u"Hawk "_s, ip, z, 300, {}, {}};
        QTest::newRow("lower row a zombie") << PairRow{h, H, ip, u"ZMBI"_s, 300, {}, {}};
        QTest::newRow("unnamed soldiers") << PairRow{u"Unnamed Soldier"_s, u"Unnamed Soldier"_s, ip, z, 300, {}, {}};
        QTest::newRow("unnamed, other case") << PairRow{u"unnamedsoldier"_s, u"UnnamedSoldier"_s, ip, z, 300, {}, u"kick 2"_s};
        QTest::newRow("blank names") << PairRow{u"  "_s, u"  "_s, ip, z, 300, {}, {}};
        QTest::newRow("equal times: the lower row") << PairRow{h, H, ip, z, 600, {}, u"kick 1"_s};
    }

    // Two rows of one name: who had it first, the grace for a newcomer, the exclusions; a
    // ban for the name taken, by address only.
    void impersonators()
    {
        QFETCH(PairRow, k);
        Table t;
        t.settings.Ban = true, t.settings.BanFor = 1000;
        PlayerRecord &a = t.add(k.nameA);
        PlayerRecord &b = t.add(k.nameB, k.ipB);
        a.ping = k.pingA;
        b.num = k.how.contains(u'S') ? u"----"_s : b.num;
        a.jointime = a.nametime = 0.5 - 600 / 86400.0;
        b.jointime = b.nametime = 0.5 - k.agoB / 86400.0;
        b.jointime -= k.how.contains(u'T') ? 0.01 : 0;
        ImpersonatorPolicy::kickImpersonators(t.stack.context);
        const QString name = k.act.endsWith(u'1') ? k.nameA : k.nameB;
        const QString warning = u"say WARNING: "_s + name
            + u" - there is another player already playing with that name. You have 60 sec to change your name."_s;
        QCOMPARE(t.queued.join(u'\n'), k.act.isEmpty() ? QString() : k.act.startsWith(u"warn") ? warning
                 : u"say [Quorvane]: Kicked "_s + name + u" for stealing names.|FFT0\nclientkick "_s + k.act.right(1));
        QCOMPARE(t.logLines().last(), u"kickImpersonators: %1 players kicked."_s.arg(k.act.startsWith(u"kick") ? 1 : 0));
        QCOMPARE(t.file(u"banned.txt"_s) + t.file(u"bannedIP.txt"_s), k.how.contains(u'T') ? "192.0.2.2\r\n"_ba : QByteArray());
    }

    // The kick action. Within 5.184 s a second kick of a row is dropped without a word; after
    // it the row is kicked again in full, under the new reason; times of day have no date.
    // High-ping lines in file order and round again, also when nobody is told; the kick by
    // name of a row without a slot; an immune row hears why, whatever TellPlayers says; the
    // pause behind the words; a refused kick moves its statistic and nothing else.
    void kickAction()
    {
        const QList<std::tuple<QTime, int, bool>> rows{{QTime(20, 0), 5183, false}, {QTime(20, 0), 5184, true},
                                                       {QTime(23, 59, 58), 7000, false}};
        for (const auto &[first, laterMs, again] : rows) {
            Table t;
            t.clock.setNow(QDateTime(QDate(2026, 11, 22), first));
            t.add(u"Bob"_s);
            t.stack.kick.kickPlayer(1, u"Rate"_s);
            t.clock.jump(laterMs / 1000.0);
            t.stack.kick.kickPlayer(1, u"QPort"_s);
            QVERIFY2(t.queued.size() == (again ? 4 : 2), qPrintable(QString::number(laterMs)));
            QCOMPARE(t.players.currentPlayers[1].status, again ? u"Kicked (QPort)"_s : u"Kicked (Rate)"_s);
            QCOMPARE(t.stats.bankicks, again ? 2 : 1);
            QCOMPARE(t.logLines().contains(u"Forcing re-kick on client# 1 (Bob)"_s), again);
        }
        Table t;
        t.settings.TellPause = 2, t.settings.Ban = true; // BanFor 10: for TKing
        t.list(u"highping.txt"_s, "%name% lags at %ping%\r\n\r\nSorry %name%\r\nBye\r\n"_ba);
        for (const QString &name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s}) {
            t.add(name).ping = u"999"_s;
            t.stack.kick.kickPlayer(t.players.currentCount, u"high ping"_s);
        }
        QCOMPARE(t.queued.filter(u"say"_s), (QStringList{u"say [Quorvane]: A lags at 999|FFT2"_s, u"say [Quorvane]: Sorry B|FFT2"_s,
                                                          u"say [Quorvane]: Bye|FFT2"_s, u"say [Quorvane]: D lags at 999|FFT2"_s}));
        t.settings.TellPlayers = false, t.settings.Voice.clear();
        t.add(u" E "_s).num = u" ---- "_s;
        t.stack.kick.kickPlayer(5, u"high ping"_s, true);
        t.add(u"Imm"_s, u"192.0.2.50"_s);
        t.stack.kick.kickPlayer(6, u"Rate"_s);
        t.settings.TellPlayers = true;
        t.add(u"F"_s);
        t.stack.kick.kickPlayer(7, u"for TKing"_s);
        t.stack.refuse = true;
        t.add(u"G"_s);
        t.stack.kick.kickPlayer(8, u"for TKing"_s);
        QCOMPARE(t.queued.mid(8), (QStringList{u"kick \"E\"|TTT0"_s, u"say : Immune (Imm / Rate).|FFT0"_s,
                                               u"say : Kicked F for for TKing.|FFT2"_s, u"clientkick 7"_s,
                                               u"say : Kicked G for for TKing.|FFT2"_s, u"clientkick 8"_s}));
        QCOMPARE(t.stack.lists.nextHighPingMessage, 2); // taken for E all the same
        QCOMPARE(t.stats.pingkicks * 100 + t.stats.tkkicks * 10 + t.stats.bankicks, 520);
        QCOMPARE(t.players.currentPlayers[6].status + t.players.currentPlayers[7].status + t.players.currentPlayers[8].status,
                 u"OkKicked (for TKing)Ok"_s);
        QCOMPARE(t.file(u"banned.txt"_s), "F\r\n"_ba);
        QCOMPARE(t.logLines().mid(5), (QStringList{u"Skipping kick of Imm for Rate due to immunity"_s,
                                                   u"Banned name/IP F/192.0.2.1 for TKing"_s, u"Kicked F [192.0.2.1] for for TKing."_s,
                                                   u"Error: KickPlayer could't add Tell Player"_s,
                                                   u"Error: KickPlayer could't add kick to queue"_s}));
    }

    void banWrites_data()
    {
        QTest::addColumn<BanRow>("k");
        const QString ip = u"192.0.2.1"_s, tk = u"for TKing"_s, steal = u"stealing names"_s, none = u"----"_s;
        const QStringList skipped = {u"Skipped banning IP of Bob due to unknown IP"_s};
        const QByteArray at = " on 2026-11-22 at 12:00:00 ", both = "Banned IP & name 192.0.2.1 / Bob" + at;
        const QByteArray b = "Bob\r\n", a = "192.0.2.1\r\n";
        QTest::newRow("address") << BanRow{1, ip, tk, ""_ba, a, {u"Banned IP 192.0.2.1 for TKing"_s},
                                           "Banned IP 192.0.2.1 (Bob)" + at + "for TKing\r\n", 1};
        QTest::newRow("address unknown") << BanRow{1, none, tk, ""_ba, ""_ba, skipped, ""_ba, 0};
        QTest::newRow("name") << BanRow{2, ip, tk, b, ""_ba, {u"Banned name Bob for TKing"_s}, "Banned name Bob" + at + "for TKing\r\n", 1};
        QTest::newRow("name, stolen") << BanRow{2, ip, steal, ""_ba, ""_ba, {}, ""_ba, 0};
        QTest::newRow("both") << BanRow{3, ip, tk, b, a, {u"Banned name/IP Bob/192.0.2.1 for TKing"_s}, both + "for TKing\r\n", 1};
        QTest::newRow("both, address unknown") << BanRow{3, none, tk, b, ""_ba, skipped, ""_ba, 1};
        QTest::newRow("both, stolen") << BanRow{3, ip, steal, ""_ba, a, {u"Banned name/IP Bob/192.0.2.1 stealing names"_s},
                                                both + "stealing names\r\n", 1};
        QTest::newRow("unknown type") << BanRow{0, ip, tk, ""_ba, ""_ba, {u"Error in Ban"_s}, ""_ba, 0};
    }

    // A forced ban by each BanType: the lists, their tables, the log, the record; with the
    // log off the lists still grow and the record does not.
    void banWrites()
    {
        QFETCH(BanRow, k);
        Table t;
        t.settings.BanFor = 0;
        t.settings.BanType = k.type;
        t.add(u"Bob"_s, k.ip);
        const auto files = [&t] {
            return t.file(u"banned.txt"_s) + '|' + t.file(u"bannedIP.txt"_s) + '|' + t.file(u"ReasonBanned.txt"_s);
        };
        t.stack.ban.Ban(1, k.reason, true);
        QCOMPARE(files(), k.banned + '|' + k.bannedIP + '|' + k.record);
        QCOMPARE(t.logLines(), k.log);
        QCOMPARE(t.stack.lists.bannedNameTop(), qint32(k.banned.count('\n')) - 1); // reloaded
        QCOMPARE(t.stack.lists.bannedIPTop(), qint32(k.bannedIP.count('\n')) - 1);
        t.settings.SaveLog = false;
        t.stack.ban.Ban(1, k.reason, true);
        QCOMPARE(files(), k.banned + k.banned + '|' + k.bannedIP + k.bannedIP + '|' + k.record);
        QCOMPARE(t.stats.banadds, 2 * k.banadds);
    }
};

QTEST_GUILESS_MAIN(TestEnforcement)
#include "tst_enforcement.moc"
