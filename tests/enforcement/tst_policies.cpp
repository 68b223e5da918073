// SPDX-License-Identifier: MIT
// The policies on a table and lists of their own: what matches, the bounds, the hits.
#include "PolicyRig.h"
#include "enforcement/ImpersonatorPolicy.h"
#include "enforcement/NamePolicies.h"
#include "enforcement/PingPolicy.h"
#include "enforcement/RangePolicies.h"
#include "enforcement/ScorePolicies.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
QString kicked(const QString &name, const QString &reason)
{
    return u"say [Quorvane]: Kicked "_s + name + u" for "_s + reason + u'.';
}
} // namespace

class TestPolicies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lists_data()
    {
        QTest::addColumn<bool>("badWords");
        QTest::addColumn<QByteArray>("banned");
        QTest::addColumn<QByteArray>("bannedIP");
        QTest::addColumn<QByteArray>("badnames");
        QTest::addColumn<QByteArray>("immune");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("ip");
        QTest::addColumn<int>("hits");
        QTest::addColumn<QStringList>("queued");
        const QString ip = u"192.0.2.1"_s;
        const QStringList none;
        QTest::newRow("name whole, any case, trimmed") << false << " bob \r\n"_ba << ""_ba << ""_ba << ""_ba << u"BOB"_s << ip
                                                      << 1 << QStringList{kicked(u"BOB"_s, u"banned name"_s), u"clientkick 1"_s};
        QTest::newRow("name near miss") << false << "bob"_ba << ""_ba << ""_ba << ""_ba << u"bobby"_s << ip << 0 << none;
        QTest::newRow("Latin-1 name in another case") << false << "s\xF6ren"_ba << ""_ba << ""_ba << ""_ba << u"S\u00D6REN"_s
                                                      << ip << 1 << QStringList{kicked(u"S\u00D6REN"_s, u"banned name"_s), u"clientkick 1"_s};
        QTest::newRow("address near miss") << false << ""_ba << "192.0.2.1"_ba << ""_ba << ""_ba << u"Bob"_s << u"192.0.2.10"_s
                                           << 0 << none;
        QTest::newRow("address twice: two hits, one kick")
            << false << ""_ba << "192.0.2.1\r\n 192.0.2.1 \r\n"_ba << ""_ba << ""_ba << u"Bob"_s << ip << 2
            << QStringList{kicked(u"Bob"_s, u"banned IP"_s), u"clientkick 1"_s};
        QTest::newRow("both lists: the address reason stands") << false << "Bob"_ba << "192.0.2.1"_ba << ""_ba << ""_ba << u"Bob"_s
                                                               << ip << 2 << QStringList{kicked(u"Bob"_s, u"banned IP"_s), u"clientkick 1"_s};
        QTest::newRow("unknown address, ---- listed") << false << ""_ba << "----"_ba << ""_ba << ""_ba << u"Bob"_s << u"----"_s
                                                      << 1 << QStringList{kicked(u"Bob"_s, u"banned IP"_s), u"clientkick 1"_s};
        QTest::newRow("bad word inside a word") << true << ""_ba << ""_ba << "ass"_ba << ""_ba << u" Bassist "_s << ip << 1
                                                << QStringList{kicked(u" Bassist "_s, u"bad word in name"_s), u"clientkick 1"_s};
        QTest::newRow("overlapping occurrences") << true << ""_ba << ""_ba << "aa\r\nzz"_ba << ""_ba << u"aaa"_s << ip << 2
                                                 << QStringList{kicked(u"aaa"_s, u"bad word in name"_s), u"clientkick 1"_s};
        QTest::newRow("word longer than the name") << true << ""_ba << ""_ba << "bobby"_ba << ""_ba << u"bob"_s << ip << 0 << none;
        QTest::newRow("blank inside a word stays") << true << ""_ba << ""_ba << "a s"_ba << ""_ba << u"as"_s << ip << 0 << none;
        QTest::newRow("immune: a line per hit") << true << ""_ba << ""_ba << "o"_ba << "192.0.2.1"_ba << u"Boo"_s << ip << 2
                                                << QStringList{u"say [Quorvane]: Immune (Boo / bad word in name)."_s,
                                                               u"say [Quorvane]: Immune (Boo / bad word in name)."_s};
        QTest::newRow("immune line with a blank behind") << false << "Bob"_ba << ""_ba << ""_ba << "192.0.2.1 "_ba << u"Bob"_s
                                                         << ip << 1 << QStringList{kicked(u"Bob"_s, u"banned name"_s), u"clientkick 1"_s};
    }

    void lists()
    {
        QFETCH(bool, badWords);
        QFETCH(QByteArray, banned);
        QFETCH(QByteArray, bannedIP);
        QFETCH(QByteArray, badnames);
        QFETCH(QByteArray, immune);
        QFETCH(QString, name);
        QFETCH(QString, ip);
        QFETCH(int, hits);
        QFETCH(QStringList, queued);
        PolicyRig rig;
        TestEnv::writeFile(rig.env.workDir() + u"banned.txt"_s, banned);
        TestEnv::writeFile(rig.env.workDir() + u"bannedIP.txt"_s, bannedIP);
        TestEnv::writeFile(rig.env.workDir() + u"badnames.txt"_s, badnames);
        rig.writeList(u"immuneIP.txt"_s, immune);
        rig.add(name, ip);
        const qint32 got = badWords ? NamePolicies::kickBadNamePlayers(rig.c) : NamePolicies::kickBannedPlayers(rig.c);
        QCOMPARE(got, hits);
        QCOMPARE(rig.queued, queued);
        QCOMPARE(rig.logLines().last(), (badWords ? u"kickBadNamePlayers: "_s : u"kickBannedPlayers: "_s)
                                            + QString::number(hits) + u" players kicked."_s);
    }

    // A ban made in the pass reloads the tables under the walk: the row's own name walk,
    // which starts after the ban, sees the new name; the address walk keeps its bound.
    void banInsideTheWalk()
    {
        PolicyRig rig;
        rig.settings.Ban = true;
        rig.settings.BanFor = 100;
        rig.writeList(u"bannedIP.txt"_s, "192.0.2.1\r\n192.0.2.1\r\n"_ba);
        rig.add(u"Bob"_s, u"192.0.2.1"_s);
        rig.add(u"bob"_s, u"192.0.2.7"_s);
        QCOMPARE(NamePolicies::kickBannedPlayers(rig.c), 4); // two addresses and the new name, then the new name
        QCOMPARE(rig.queued, (QStringList{kicked(u"Bob"_s, u"banned IP"_s), u"clientkick 1"_s,
                                          kicked(u"bob"_s, u"banned name"_s), u"clientkick 2"_s}));
        QCOMPARE(rig.lists.bannedIPTop(), 3);
        QCOMPARE(rig.file(u"banned.txt"_s), "Bob\r\nbob\r\n"_ba);
    }

    void bounds_data()
    {
        QTest::addColumn<QString>("policy");
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("low");
        QTest::addColumn<int>("high");
        QTest::addColumn<int>("hits");
        QTest::newRow("score at the limit") << u"tk"_s << u"-3"_s << -3 << 0 << 0;
        QTest::newRow("score one below") << u"tk"_s << u"-4"_s << -3 << 0 << 1;
        QTest::newRow("positive limit") << u"tk"_s << u"0"_s << 1 << 0 << 1;
        QTest::newRow("score unknown") << u"tk"_s << u"----"_s << 100 << 0 << 0;
        QTest::newRow("qport at the lowest") << u"qport"_s << u"1000"_s << 1000 << 2000 << 0;
        QTest::newRow("qport one below") << u"qport"_s << u"999"_s << 1000 << 2000 << 1;
        QTest::newRow("qport at the highest") << u"qport"_s << u"2000"_s << 1000 << 2000 << 0;
        QTest::newRow("qport one above") << u"qport"_s << u"2001"_s << 1000 << 2000 << 1;
        QTest::newRow("qport range 0 to 0") << u"qport"_s << u"0"_s << 0 << 0 << 0;
        QTest::newRow("lowest above highest") << u"qport"_s << u"5"_s << 10 << 1 << 1;
        QTest::newRow("qport unknown") << u"qport"_s << u"----"_s << 10 << 1 << 0;
        QTest::newRow("rate at both bounds") << u"rate"_s << u"25000"_s << 25000 << 25000 << 0;
        QTest::newRow("rate one above") << u"rate"_s << u"25001"_s << 25000 << 25000 << 1;
        QTest::newRow("rate one below") << u"rate"_s << u"24999"_s << 25000 << 25000 << 1;
        QTest::newRow("ping at the limit") << u"ping"_s << u"750"_s << 750 << 1 << 0;
        QTest::newRow("ping one above") << u"ping"_s << u"751"_s << 750 << 1 << 1;
        QTest::newRow("ping a tag") << u"ping"_s << u"ZMBI"_s << 0 << 1 << 0;
    }

    void bounds()
    {
        QFETCH(QString, policy);
        QFETCH(QString, value);
        QFETCH(int, low);
        QFETCH(int, high);
        QFETCH(int, hits);
        PolicyRig rig;
        PlayerRecord &r = rig.add(u"Ann"_s, u"192.0.2.1"_s);
        Settings &s = rig.settings;
        qint32 got = -1;
        if (policy == u"tk") {
            r.score = value;
            s.TKLimit = low;
            got = ScorePolicies::kickTkPlayers(rig.c);
        } else if (policy == u"qport") {
            r.qport = value;
            s.QPortMin = low, s.QPortMax = high;
            got = RangePolicies::kickQPortPlayers(rig.c);
        } else if (policy == u"rate") {
            r.rate = value;
            s.RateMin = low, s.RateMax = high;
            got = RangePolicies::kickRatePlayers(rig.c);
        } else {
            r.ping = value;
            s.MaxPing = low, s.PingPasses = high;
            got = PingPolicy::kickSlowPlayers(rig.c);
        }
        QCOMPARE(got, hits);
        QCOMPARE(rig.queued.size(), 2 * hits);
    }

    void pingPasses_data()
    {
        QTest::addColumn<QStringList>("pings");
        QTest::addColumn<QString>("maps");
        QTest::addColumn<bool>("skipMap");
        QTest::addColumn<QString>("warns");
        QTest::addColumn<int>("hits");
        const QStringList high4 = {u"800"_s, u"800"_s, u"800"_s, u"800"_s};
        QTest::newRow("in a row only") << QStringList{u"800"_s, u"800"_s, u"100"_s, u"800"_s, u"800"_s} << u"aaaaa"_s << true
                                       << u"1 2 0 1 2"_s << 0;
        QTest::newRow("a tag neither helps nor harms") << QStringList{u"800"_s, u"800"_s, u"ZMBI"_s, u"800"_s} << u"aaaa"_s
                                                       << true << u"1 2 2 3"_s << 1;
        QTest::newRow("new map skipped") << high4 << u"aabb"_s << true << u"1 2 2 3"_s << 1;
        QTest::newRow("new map checked") << high4 << u"aabb"_s << false << u"1 2 3 4"_s << 2;
    }

    void pingPasses()
    {
        QFETCH(QStringList, pings);
        QFETCH(QString, maps);
        QFETCH(bool, skipMap);
        QFETCH(QString, warns);
        QFETCH(int, hits);
        PolicyRig rig;
        rig.settings.SkipMap = skipMap;
        PlayerRecord &r = rig.add(u"Ann"_s, u"192.0.2.1"_s);
        QStringList seen;
        qint32 total = 0;
        for (int i = 0; i < pings.size(); ++i) {
            rig.stats.prevmap = rig.stats.map; // as each digested reply moves them
            rig.stats.map = maps.at(i);
            if (i == 0)
                rig.stats.prevmap.clear();
            r.ping = pings.at(i);
            total += PingPolicy::kickSlowPlayers(rig.c);
            seen.append(QString::number(r.warn));
        }
        QCOMPARE(seen.join(u' '), warns);
        QCOMPARE(total, hits);
        const bool skipped = skipMap && maps != u"aaaa" && maps != u"aaaaa";
        QCOMPARE(rig.view.pane, skipped ? u"Changed from [a] to [b] - skipping ping check\r\n"_s : QString());
        QCOMPARE(rig.logLines().contains(u"Changed from [a] to [b] - skipping ping check"_s), skipped);
    }

    void impersonators_data()
    {
        QTest::addColumn<QString>("nameA");
        QTest::addColumn<QString>("nameB");
        QTest::addColumn<QString>("ipB");
        QTest::addColumn<QString>("pingA");
        QTest::addColumn<QString>("numB");
        QTest::addColumn<int>("agoA");
        QTest::addColumn<int>("agoB");
        QTest::addColumn<bool>("tookB");
        QTest::addColumn<QStringList>("queued");
        const QString hawk = u"Hawk"_s, ip = u"192.0.2.2"_s, num = u"2"_s;
        const QStringList warnB = {u"say WARNING: HAWK - there is another player already playing with that name. You have 60 sec to change your name."_s};
        const QStringList kickB = {kicked(u"HAWK"_s, u"stealing names"_s), u"clientkick 2"_s};
        QTest::newRow("in the grace") << hawk << u"HAWK"_s << ip << u"50"_s << num << 600 << 62 << false << warnB;
        QTest::newRow("grace over") << hawk << u"HAWK"_s << ip << u"50"_s << num << 600 << 63 << false << kickB;
        QTest::newRow("took the name") << hawk << u"HAWK"_s << ip << u"50"_s << num << 600 << 10 << true << kickB;
        QTest::newRow("no slot: warned only") << hawk << u"HAWK"_s << ip << u"50"_s << u"----"_s << 600 << 300 << false << warnB;
        QTest::newRow("same address") << hawk << u"HAWK"_s << u"192.0.2.1"_s << u"50"_s << num << 600 << 300 << false << QStringList();
        QTest::newRow("lower row a zombie") << hawk << u"HAWK"_s << ip << u"ZMBI"_s << num << 600 << 300 << false << QStringList();
        QTest::newRow("unnamed soldiers") << u"Unnamed Soldier"_s << u"Unnamed Soldier"_s << ip << u"50"_s << num << 600 << 300
                                          << false << QStringList();
        QTest::newRow("unnamed in another case") << u"unnamedsoldier"_s << u"UnnamedSoldier"_s << ip << u"50"_s << num << 600
                                                 << 300 << false << QStringList{kicked(u"UnnamedSoldier"_s, u"stealing names"_s), u"clientkick 2"_s};
        QTest::newRow("blank names") << u"  "_s << u"  "_s << ip << u"50"_s << num << 600 << 300 << false << QStringList();
        QTest::newRow("equal times: the lower row") << hawk << u"HAWK"_s << ip << u"50"_s << num << 30 << 30 << false
                                                    << QStringList{QString(warnB.first()).replace(u"HAWK"_s, hawk)};
    }

    void impersonators()
    {
        QFETCH(QString, nameA);
        QFETCH(QString, nameB);
        QFETCH(QString, ipB);
        QFETCH(QString, pingA);
        QFETCH(QString, numB);
        QFETCH(int, agoA);
        QFETCH(int, agoB);
        QFETCH(bool, tookB);
        QFETCH(QStringList, queued);
        PolicyRig rig;
        PlayerRecord &a = rig.add(nameA, u"192.0.2.1"_s);
        PlayerRecord &b = rig.add(nameB, ipB, numB);
        a.ping = pingA;
        a.jointime = a.nametime = 0.5 - agoA / 86400.0;
        b.jointime = b.nametime = 0.5 - agoB / 86400.0;
        if (tookB)
            b.jointime -= 0.01;
        ImpersonatorPolicy::kickImpersonators(rig.c);
        QCOMPARE(rig.queued, queued);
        QCOMPARE(rig.logLines().last(), u"kickImpersonators: "_s + QString::number(queued.size() / 2) + u" players kicked."_s);
    }
};

QTEST_GUILESS_MAIN(TestPolicies)
#include "tst_policies.moc"
