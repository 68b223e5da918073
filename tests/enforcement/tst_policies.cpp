// SPDX-License-Identifier: MIT
// The policies and the kick and ban actions on a table and lists of their own: what
// matches and what nearly does, the hit counts, the gates, the ban tables.
#include "FakeClock.h"
#include "HeadlessView.h"
#include "PolicyStack.h"
#include "TestEnv.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "enforcement/ImpersonatorPolicy.h"
#include "enforcement/NamePolicies.h"
#include "enforcement/PingPolicy.h"
#include "players/PlayerState.h"

#include <QTest>

using namespace Qt::StringLiterals;

// The policies and the actions on a table of their own (see PolicyStack); the log and the
// lists are real files in a private folder, the clock stands at noon.
struct PolicyRig
{
    TestEnv env;
    FakeClock clock;
    HeadlessView view;
    Settings settings;
    Stats stats;
    PlayerState players;
    ErrorLog errors{clock, view, [this] { return settings.FileLoc; }};
    OutputPane pane{view};
    PolicyStack stack{players, settings, stats, clock, errors, pane};
    ListFiles &lists = stack.lists;
    KickAction &kick = stack.kick;
    BanAction &ban = stack.ban;
    PolicyContext &c = stack.context;
    QStringList &queued = stack.queued;
    bool &refuse = stack.refuse;

    PolicyRig()
    {
        settings.FileLoc = env.workDir();
        settings.SaveLog = true;
        errors.setTerminate([] { throw FatalExit{}; });
        writeList(QStringLiteral("immuneIP.txt"), "192.0.2.50\r\n");
        stack.log.OpenLog();
    }
    void writeList(const QString &file, const QByteArray &bytes)
    {
        TestEnv::writeFile(env.workDir() + file, bytes);
        lists.LoadAll();
    }
    // A player on the next row, as a full status shows him; his slot is the row's number.
    PlayerRecord &add(const QString &name, const QString &ip = QStringLiteral("192.0.2.1"))
    {
        PlayerRecord &r = players.currentPlayers[++players.currentCount];
        r = PlayerRecord{};
        r.num = QString::number(players.currentCount);
        r.name = name;
        r.ip = ip;
        r.status = QStringLiteral("Ok");
        r.jointime = r.nametime = clock.timeOfDay();
        return r;
    }
    // The log's records after its head block.
    QStringList logLines() const
    {
        const QStringList records = QString::fromLatin1(file(QStringLiteral("servlog.txt"))).split(QStringLiteral("\r\n\r\n"));
        return records.mid(1, records.size() - 2);
    }
    QByteArray file(const QString &name) const { return TestEnv::readFile(env.workDir() + name); }
};


struct ListCase
{
    bool badWords;
    QString files; // each gets the bytes
    QByteArray bytes;
    QString name, ip;
    int hits;
    QString status;
};
struct PairCase
{
    QString nameA, nameB, ipB, pingA;
    int agoB; // seconds since B joined; A joined 600 s ago
    bool tookB; // B took the name after joining
    bool slotless; // B has no slot yet: "----"
    QString act; // on whom
};
struct BanCase
{
    int type;
    QString ip, reason;
    QByteArray banned, bannedIP;
    QStringList log;
    QByteArray record;
    int banadds;
};
Q_DECLARE_METATYPE(ListCase)
Q_DECLARE_METATYPE(PairCase)
Q_DECLARE_METATYPE(BanCase)

namespace {
QString kicked(const QString &name, const QString &reason)
{
    return u"say [Quorvane]: Kicked "_s + name + u" for "_s + reason + u".|FFT0"_s;
}
} // namespace

class TestPolicies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lists_data()
    {
        QTest::addColumn<ListCase>("k");
        const QString n = u"banned.txt"_s, a = u"bannedIP.txt"_s, w = u"badnames.txt"_s, ip = u"192.0.2.1"_s, ok = u"Ok"_s;
        const QString byName = u"Kicked (banned name)"_s, byIP = u"Kicked (banned IP)"_s, byWord = u"Kicked (bad word in name)"_s;
        QTest::newRow("name whole, any case, trimmed") << ListCase{false, n, " bob \r\n"_ba, u"BOB "_s, ip, 1, byName};
        QTest::newRow("name near miss") << ListCase{false, n, "bob"_ba, u"bobby"_s, ip, 0, ok};
        QTest::newRow("Latin-1 name, other case") << ListCase{false, n, "s\xF6ren"_ba, u"S\u00D6REN"_s, ip, 1, byName};
        QTest::newRow("address near miss") << ListCase{false, a, "192.0.2.1"_ba, u"Bob"_s, u"192.0.2.10"_s, 0, ok};
        QTest::newRow("address twice: two hits") << ListCase{false, a, "192.0.2.1\r\n 192.0.2.1 "_ba, u"Bob"_s, ip, 2, byIP};
        QTest::newRow("both lists: address first") << ListCase{false, n + u' ' + a, "Bob\r\n192.0.2.1"_ba, u"bob"_s, ip, 2, byIP};
        QTest::newRow("unknown address, ---- listed") << ListCase{false, a, "----"_ba, u"Bob"_s, u"----"_s, 1, byIP};
        QTest::newRow("bad word inside a word") << ListCase{true, w, "ass"_ba, u" Bassist "_s, ip, 1, byWord};
        QTest::newRow("every occurrence, overlapping") << ListCase{true, w, "aa\r\na"_ba, u"aaa"_s, ip, 5, byWord};
        QTest::newRow("word longer than the name") << ListCase{true, w, "bobby"_ba, u"bob"_s, ip, 0, ok};
        QTest::newRow("blank inside a word stays") << ListCase{true, w, "a s"_ba, u"as"_s, ip, 0, ok};
        QTest::newRow("immune: spared at each hit") << ListCase{true, w, "o"_ba, u"Boo"_s, u"192.0.2.50"_s, 2, ok};
        QTest::newRow("immune with a blank behind") << ListCase{false, n + u" immuneIP.txt"_s, "Bob\r\n192.0.2.1 "_ba, u"Bob"_s, ip, 1, byName};
    }

    void lists()
    {
        QFETCH(ListCase, k);
        PolicyRig rig;
        for (const QString &file : k.files.split(u' '))
            rig.writeList(file, k.bytes);
        rig.add(k.name, k.ip);
        QCOMPARE(k.badWords ? NamePolicies::kickBadNamePlayers(rig.c) : NamePolicies::kickBannedPlayers(rig.c), k.hits);
        QCOMPARE(rig.players.currentPlayers[1].status, k.status);
        QCOMPARE(rig.queued.size(), k.status == u"Ok" ? k.hits : 2); // an immune row hears a line per hit
        QCOMPARE(rig.logLines().last(), (k.badWords ? u"kickBadNamePlayers: "_s : u"kickBannedPlayers: "_s)
                                            + QString::number(k.hits) + u" players kicked."_s);
    }

    // A ban in the pass reloads the tables under the walk: the address walk keeps its
    // bound; the name walk, which starts after the ban, sees the new name.
    void banInsideTheWalk()
    {
        PolicyRig rig;
        rig.settings.Ban = true;
        rig.settings.BanFor = 100;
        rig.writeList(u"bannedIP.txt"_s, "192.0.2.1\r\n192.0.2.1\r\n"_ba);
        rig.add(u"Bob"_s);
        rig.add(u"bob"_s, u"192.0.2.7"_s);
        QCOMPARE(NamePolicies::kickBannedPlayers(rig.c), 4);
        QCOMPARE(rig.queued, (QStringList{kicked(u"Bob"_s, u"banned IP"_s), u"clientkick 1"_s,
                                          kicked(u"bob"_s, u"banned name"_s), u"clientkick 2"_s}));
        QCOMPARE(rig.file(u"banned.txt"_s), "Bob\r\nbob\r\n"_ba);
        QCOMPARE(rig.lists.bannedIPTop(), 3);
    }

    void pingPasses_data()
    {
        QTest::addColumn<QString>("pings");
        QTest::addColumn<QString>("maps"); // one a check
        QTest::addColumn<bool>("skipMap");
        QTest::addColumn<QString>("warns");
        QTest::addColumn<int>("hits");
        QTest::newRow("in a row only") << u"800 800 100 800"_s << u"aaaa"_s << true << u"1 2 0 1"_s << 0;
        QTest::newRow("a tag neither helps nor harms") << u"800 800 ZMBI 800"_s << u"aaaa"_s << true << u"1 2 2 3"_s << 1;
        QTest::newRow("new map skipped") << u"800 800 800 800"_s << u"aabb"_s << true << u"1 2 2 3"_s << 1;
        QTest::newRow("new map checked") << u"800 800 800 800"_s << u"aabb"_s << false << u"1 2 3 4"_s << 2;
    }

    void pingPasses()
    {
        QFETCH(QString, pings);
        QFETCH(QString, maps);
        QFETCH(bool, skipMap);
        PolicyRig rig;
        rig.settings.SkipMap = skipMap;
        PlayerRecord &r = rig.add(u"Ann"_s);
        QStringList warns;
        qint32 hits = 0;
        for (int i = 0; i < maps.size(); ++i) {
            rig.stats.prevmap = i == 0 ? QString() : rig.stats.map; // as each digested reply moves them
            rig.stats.map = maps.at(i);
            r.ping = pings.split(u' ').at(i);
            hits += PingPolicy::kickSlowPlayers(rig.c);
            warns.append(QString::number(r.warn));
        }
        QTEST(warns.join(u' '), "warns");
        QTEST(hits, "hits");
        const QString line = u"Changed from [a] to [b] - skipping ping check"_s;
        QCOMPARE(rig.view.pane, skipMap && maps.contains(u'b') ? line + u"\r\n"_s : QString());
        QCOMPARE(rig.logLines().contains(line), skipMap && maps.contains(u'b'));
    }

    void impersonators_data()
    {
        QTest::addColumn<PairCase>("k");
        const QString h = u"Hawk"_s, H = u"HAWK"_s, ip = u"192.0.2.2"_s, z = u"50"_s;
        QTest::newRow("joined 62 s ago") << PairCase{h, H, ip, z, 62, false, false, u"warn 2"_s};
        QTest::newRow("joined 63 s ago") << PairCase{h, H, ip, z, 63, false, false, u"kick 2"_s};
        QTest::newRow("took the name") << PairCase{h, H, ip, z, 10, true, false, u"kick 2"_s};
        QTest::newRow("no slot: warned only") << PairCase{h, H, ip, z, 300, false, true, u"warn 2"_s};
        QTest::newRow("same address") << PairCase{h, H, u"192.0.2.1"_s, z, 300, false, false, QString()};
        QTest::newRow("lower row a zombie") << PairCase{h, H, ip, u"ZMBI"_s, 300, false, false, QString()};
        QTest::newRow("unnamed soldiers") << PairCase{u"Unnamed Soldier"_s, u"Unnamed Soldier"_s, ip, z, 300, false, false, QString()};
        QTest::newRow("unnamed, other case") << PairCase{u"unnamedsoldier"_s, u"UnnamedSoldier"_s, ip, z, 300, false, false, u"kick 2"_s};
        QTest::newRow("blank names") << PairCase{u"  "_s, u"  "_s, ip, z, 300, false, false, QString()};
        QTest::newRow("equal times: the lower row") << PairCase{h, H, ip, z, 600, false, false, u"kick 1"_s};
    }

    void impersonators()
    {
        QFETCH(PairCase, k);
        PolicyRig rig;
        PlayerRecord &a = rig.add(k.nameA);
        PlayerRecord &b = rig.add(k.nameB, k.ipB);
        a.ping = k.pingA;
        b.num = k.slotless ? u"----"_s : b.num;
        a.jointime = a.nametime = 0.5 - 600 / 86400.0;
        b.jointime = b.nametime = 0.5 - k.agoB / 86400.0;
        b.jointime -= k.tookB ? 0.01 : 0;
        ImpersonatorPolicy::kickImpersonators(rig.c);
        const QString name = k.act.endsWith(u'1') ? k.nameA : k.nameB;
        QStringList expected;
        if (k.act.startsWith(u"warn"))
            expected << u"say WARNING: "_s + name + u" - there is another player already playing with that name. You have 60 sec to change your name."_s;
        else if (!k.act.isEmpty())
            expected << kicked(name, u"stealing names"_s) << u"clientkick "_s + k.act.right(1);
        QCOMPARE(rig.queued, expected);
        QCOMPARE(rig.logLines().last(), u"kickImpersonators: %1 players kicked."_s.arg(k.act.startsWith(u"kick") ? 1 : 0));
    }

    void repeatGate_data()
    {
        QTest::addColumn<QTime>("first");
        QTest::addColumn<int>("laterMs");
        QTest::addColumn<bool>("again");
        QTest::newRow("5.0 s later") << QTime(12, 0) << 5000 << false;
        QTest::newRow("5.2 s later") << QTime(12, 0) << 5200 << true;
        QTest::newRow("5.183 s later") << QTime(20, 0) << 5183 << false;
        QTest::newRow("5.184 s later") << QTime(20, 0) << 5184 << true;
        QTest::newRow("across midnight") << QTime(23, 59, 58) << 7000 << false;
    }

    void repeatGate()
    {
        QFETCH(QTime, first);
        QFETCH(int, laterMs);
        QFETCH(bool, again);
        PolicyRig rig;
        rig.clock.setNow(QDateTime(QDate(2026, 11, 22), first));
        rig.add(u"Bob"_s);
        rig.kick.kickPlayer(1, u"Rate"_s);
        rig.clock.jump(laterMs / 1000.0);
        rig.kick.kickPlayer(1, u"QPort"_s);
        QCOMPARE(rig.queued.size(), again ? 4 : 2);
        QCOMPARE(rig.players.currentPlayers[1].status, again ? u"Kicked (QPort)"_s : u"Kicked (Rate)"_s);
        QCOMPARE(rig.stats.bankicks, again ? 2 : 1);
        QCOMPARE(rig.logLines().contains(u"Forcing re-kick on client# 1 (Bob)"_s), again);
    }

    void tellingLines()
    {
        PolicyRig rig;
        rig.settings.TellPause = 2;
        rig.writeList(u"highping.txt"_s, "%name% lags at %ping%\r\n\r\nSorry %name%\r\nBye\r\n"_ba);
        for (const QString &name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s}) {
            rig.add(name).ping = u"999"_s;
            rig.kick.kickPlayer(rig.players.currentCount, u"high ping"_s);
        }
        QCOMPARE(rig.queued.filter(u"say"_s), (QStringList{u"say [Quorvane]: A lags at 999|FFT2"_s, u"say [Quorvane]: Sorry B|FFT2"_s,
                                                            u"say [Quorvane]: Bye|FFT2"_s, u"say [Quorvane]: D lags at 999|FFT2"_s}));
        rig.settings.TellPlayers = false; // the message is used all the same
        rig.settings.Voice.clear();
        rig.add(u" E "_s).num = u" ---- "_s;
        rig.kick.kickPlayer(5, u"high ping"_s, true);
        rig.settings.TellPlayers = true;
        rig.add(u"F"_s);
        rig.kick.kickPlayer(6, u"for TKing"_s);
        QCOMPARE(rig.queued.mid(8), (QStringList{u"kick \"E\"|TTT0"_s, u"say : Kicked F for for TKing.|FFT2"_s, u"clientkick 6"_s}));
        QCOMPARE(rig.lists.nextHighPingMessage, 2);
        QCOMPARE(rig.stats.pingkicks * 10 + rig.stats.tkkicks, 51);
    }

    void refusedAndImmune()
    {
        PolicyRig rig;
        rig.settings.Ban = true;
        rig.settings.BanFor = 100;
        rig.add(u"Bob"_s);
        rig.add(u"Imm"_s, u"192.0.2.50"_s);
        rig.refuse = true;
        rig.kick.kickPlayer(1, u"Rate"_s);
        rig.kick.kickPlayer(2, u"Rate"_s);
        QCOMPARE(rig.players.currentPlayers[1].status, u"Ok"_s);
        QCOMPARE(rig.stats.bankicks, 1);
        QCOMPARE(rig.queued.last(), u"say [Quorvane]: Immune (Imm / Rate).|FFT0"_s);
        QCOMPARE(rig.logLines(), (QStringList{u"Error: KickPlayer could't add Tell Player"_s,
                                              u"Error: KickPlayer could't add kick to queue"_s,
                                              u"Skipping kick of Imm for Rate due to immunity"_s}));
        QCOMPARE(rig.file(u"banned.txt"_s), QByteArray());
    }

    void banDue_data()
    {
        QTest::addColumn<int>("banFor");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("took"); // the name was taken after joining
        QTest::addColumn<bool>("due");
        QTest::newRow("TKing only, high ping") << 10 << u"high ping"_s << false << false;
        QTest::newRow("all, high ping") << 100 << u"high ping"_s << false << false;
        QTest::newRow("all, operator") << 100 << u"[admin initiated kick]"_s << false << true;
        QTest::newRow("all, joined under a taken name") << 100 << u"stealing names"_s << false << false;
        QTest::newRow("impersonating, joined so") << 1000 << u"stealing names"_s << false << false;
        QTest::newRow("impersonating, took it") << 1000 << u"stealing names"_s << true << true;
        QTest::newRow("bad words, TKing") << 1 << u"for TKing"_s << false << false;
        QTest::newRow("both, bad word") << 11 << u"bad word in name"_s << false << true;
        QTest::newRow("unknown BanFor") << 5 << u"for TKing"_s << false << false;
    }

    void banDue()
    {
        QFETCH(int, banFor);
        QFETCH(QString, reason);
        QFETCH(bool, took);
        QTEST(BanAction::banDue(banFor, reason, took), "due");
    }

    void banWrites_data()
    {
        QTest::addColumn<BanCase>("k");
        const QString ip = u"192.0.2.1"_s, tk = u"for TKing"_s, steal = u"stealing names"_s, none = u"----"_s;
        const QStringList skipped = {u"Skipped banning IP of Bob due to unknown IP"_s};
        const QByteArray at = " on 2026-11-22 at 12:00:00 ", both = "Banned IP & name 192.0.2.1 / Bob" + at, b = "Bob\r\n", a = "192.0.2.1\r\n";
        QTest::newRow("address") << BanCase{1, ip, tk, ""_ba, a, {u"Banned IP 192.0.2.1 for TKing"_s}, "Banned IP 192.0.2.1 (Bob)" + at + "for TKing\r\n", 1};
        QTest::newRow("address unknown") << BanCase{1, none, tk, ""_ba, ""_ba, skipped, ""_ba, 0};
        QTest::newRow("name") << BanCase{2, ip, tk, b, ""_ba, {u"Banned name Bob for TKing"_s}, "Banned name Bob" + at + "for TKing\r\n", 1};
        QTest::newRow("name, stolen") << BanCase{2, ip, steal, ""_ba, ""_ba, {}, ""_ba, 0};
        QTest::newRow("both") << BanCase{3, ip, tk, b, a, {u"Banned name/IP Bob/192.0.2.1 for TKing"_s}, both + "for TKing\r\n", 1};
        QTest::newRow("both, address unknown") << BanCase{3, none, tk, b, ""_ba, skipped, ""_ba, 1};
        QTest::newRow("both, stolen") << BanCase{3, ip, steal, ""_ba, a, {u"Banned name/IP Bob/192.0.2.1 stealing names"_s},
                                                 both + "stealing names\r\n", 1};
        QTest::newRow("unknown type") << BanCase{0, ip, tk, ""_ba, ""_ba, {u"Error in Ban"_s}, ""_ba, 0};
    }

    void banWrites()
    {
        QFETCH(BanCase, k);
        PolicyRig rig;
        rig.settings.BanFor = 0; // forced: due whatever the reason
        rig.settings.BanType = k.type;
        rig.add(u"Bob"_s, k.ip);
        rig.ban.Ban(1, k.reason, true);
        QCOMPARE(rig.file(u"banned.txt"_s), k.banned);
        QCOMPARE(rig.file(u"bannedIP.txt"_s), k.bannedIP);
        QCOMPARE(rig.logLines(), k.log);
        QCOMPARE(rig.file(u"ReasonBanned.txt"_s), k.record);
        QCOMPARE(rig.lists.bannedNameTop() + 1, rig.file(u"banned.txt"_s).count('\n'));
        rig.settings.SaveLog = false; // the lists still grow, the record does not
        rig.ban.Ban(1, k.reason, true);
        QCOMPARE(rig.file(u"ReasonBanned.txt"_s), k.record);
        QCOMPARE(rig.stats.banadds, 2 * k.banadds);
    }
};

QTEST_GUILESS_MAIN(TestPolicies)
#include "tst_policies.moc"
