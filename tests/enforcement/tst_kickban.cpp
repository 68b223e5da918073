// SPDX-License-Identifier: MIT
// The kick action and the ban action on a table of their own.
#include "PolicyRig.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestKickBan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kick_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::addColumn<QString>("num");
        QTest::addColumn<QString>("voice");
        QTest::addColumn<bool>("tell");
        QTest::addColumn<bool>("now");
        QTest::addColumn<QStringList>("queued");
        QTest::addColumn<QStringList>("flags");
        QTest::addColumn<QString>("stats"); // pingkicks tkkicks bankicks
        QTest::newRow("default line") << u"banned IP"_s << u"3"_s << u"[Q]"_s << true << false
                                      << QStringList{u"say [Q]: Kicked  Bob  for banned IP."_s, u"clientkick 3"_s}
                                      << QStringList{u"FFT2"_s, u"TFT0"_s} << u"0 0 1"_s;
        QTest::newRow("for for TKing") << u"for TKing"_s << u" 3 "_s << u"[Q]"_s << true << false
                                       << QStringList{u"say [Q]: Kicked  Bob  for for TKing."_s, u"clientkick 3"_s}
                                       << QStringList{u"FFT2"_s, u"TFT0"_s} << u"0 1 0"_s;
        QTest::newRow("no slot: by trimmed name") << u"high ping"_s << u" ---- "_s << QString() << true << false
                                                  << QStringList{u"say : Kicked  Bob  for high ping."_s, u"kick \"Bob\""_s}
                                                  << QStringList{u"FFT2"_s, u"TFT0"_s} << u"1 0 0"_s;
        QTest::newRow("untold, at once") << u"[reason unspecified - admin initiated kick]"_s << u"3"_s << u"[Q]"_s << false
                                         << true << QStringList{u"clientkick 3"_s} << QStringList{u"TTT0"_s} << u"0 0 1"_s;
    }

    void kick()
    {
        QFETCH(QString, reason);
        QFETCH(QString, num);
        QFETCH(QString, voice);
        QFETCH(bool, tell);
        QFETCH(bool, now);
        PolicyRig rig;
        rig.settings.Voice = voice;
        rig.settings.TellPlayers = tell;
        rig.settings.TellPause = 2;
        rig.add(u" Bob "_s, u"192.0.2.1"_s, num);
        rig.kick.kickPlayer(1, reason, now);
        QTEST(rig.queued, "queued");
        QTEST(rig.flags, "flags");
        QTEST(u"%1 %2 %3"_s.arg(rig.stats.pingkicks).arg(rig.stats.tkkicks).arg(rig.stats.bankicks), "stats");
        QCOMPARE(rig.players.currentPlayers[1].status, u"Kicked ("_s + reason + u')');
        QCOMPARE(rig.players.currentPlayers[1].kicktime, 0.5);
        QCOMPARE(rig.logLines(), QStringList{u"Kicked  Bob  [192.0.2.1] for "_s + reason + u'.'});
    }

    void repeatGate_data()
    {
        QTest::addColumn<QTime>("first");
        QTest::addColumn<int>("laterMs");
        QTest::addColumn<bool>("again");
        QTest::newRow("5.0 s later") << QTime(12, 0) << 5000 << false;
        QTest::newRow("5.2 s later") << QTime(12, 0) << 5200 << true;
        QTest::newRow("across midnight") << QTime(23, 59, 58) << 7000 << false;
    }

    void repeatGate()
    {
        QFETCH(QTime, first);
        QFETCH(int, laterMs);
        QFETCH(bool, again);
        PolicyRig rig;
        rig.clock.setNow(QDateTime(QDate(2026, 11, 22), first));
        rig.add(u"Bob"_s, u"192.0.2.1"_s);
        rig.kick.kickPlayer(1, u"Rate"_s);
        rig.clock.jump(laterMs / 1000.0);
        rig.kick.kickPlayer(1, u"QPort"_s);
        QCOMPARE(rig.queued.size(), again ? 4 : 2);
        QCOMPARE(rig.players.currentPlayers[1].status, again ? u"Kicked (QPort)"_s : u"Kicked (Rate)"_s);
        QCOMPARE(rig.stats.bankicks, again ? 2 : 1);
        QCOMPARE(rig.logLines().contains(u"Forcing re-kick on client# 1 (Bob)"_s), again);
    }

    void highPingMessagesInTurn()
    {
        PolicyRig rig;
        rig.writeList(u"highping.txt"_s, "%name% lags at %ping%\r\n\r\nSorry %name%\r\nBye\r\n"_ba);
        for (const QString &name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s}) {
            rig.add(name, u"192.0.2.1"_s).ping = u"999"_s;
            rig.kick.kickPlayer(rig.players.currentCount, u"high ping"_s);
        }
        QCOMPARE(rig.queued.filter(u"say"_s), (QStringList{u"say [Quorvane]: A lags at 999"_s, u"say [Quorvane]: Sorry B"_s,
                                                            u"say [Quorvane]: Bye"_s, u"say [Quorvane]: D lags at 999"_s}));
        rig.settings.TellPlayers = false;
        rig.add(u"E"_s, u"192.0.2.1"_s);
        rig.kick.kickPlayer(5, u"high ping"_s);
        QCOMPARE(rig.lists.nextHighPingMessage, 2);
        QCOMPARE(rig.stats.pingkicks, 5);
    }

    void refusedAndImmune()
    {
        PolicyRig rig;
        rig.settings.Ban = true;
        rig.settings.BanFor = 100;
        rig.writeList(u"immuneIP.txt"_s, "192.0.2.9\r\n"_ba);
        rig.add(u"Bob"_s, u"192.0.2.1"_s);
        rig.add(u"Imm"_s, u"192.0.2.9"_s);
        rig.refuse = true;
        rig.kick.kickPlayer(1, u"Rate"_s);
        rig.kick.kickPlayer(2, u"Rate"_s);
        QCOMPARE(rig.players.currentPlayers[1].status, u"Ok"_s);
        QCOMPARE(rig.stats.bankicks, 1);
        QCOMPARE(rig.file(u"bannedIP.txt"_s), QByteArray());
        QCOMPARE(rig.queued.last(), u"say [Quorvane]: Immune (Imm / Rate)."_s);
        QCOMPARE(rig.logLines(), (QStringList{u"Error: KickPlayer could't add Tell Player"_s,
                                              u"Error: KickPlayer could't add kick to queue"_s,
                                              u"Skipping kick of Imm for Rate due to immunity"_s}));
        rig.refuse = false;
        rig.kick.kickPlayer(1, u"Rate"_s);
        QCOMPARE(rig.logLines().mid(3), (QStringList{u"Banned name/IP Bob/192.0.2.1 Rate"_s, u"Kicked Bob [192.0.2.1] for Rate."_s}));
    }

    void banDue_data()
    {
        QTest::addColumn<int>("banFor");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("took");
        QTest::addColumn<bool>("force");
        QTest::addColumn<bool>("due");
        QTest::newRow("TKing only, high ping") << 10 << u"high ping"_s << false << false << false;
        QTest::newRow("TKing only, TKing") << 10 << u"for TKing"_s << false << false << true;
        QTest::newRow("all, high ping") << 100 << u"high ping"_s << false << false << false;
        QTest::newRow("forced high ping") << 10 << u"high ping"_s << false << true << true;
        QTest::newRow("all, QPort") << 100 << u"QPort"_s << false << false << true;
        QTest::newRow("all, operator") << 100 << u"[admin initiated kick]"_s << false << false << true;
        QTest::newRow("all, joined under a taken name") << 100 << u"stealing names"_s << false << false << false;
        QTest::newRow("impersonating, joined so") << 1000 << u"stealing names"_s << false << false << false;
        QTest::newRow("impersonating, took it") << 1000 << u"stealing names"_s << true << false << true;
        QTest::newRow("bad words, bad word") << 1 << u"bad word in name"_s << false << false << true;
        QTest::newRow("bad words, TKing") << 1 << u"for TKing"_s << false << false << false;
        QTest::newRow("both, TKing") << 11 << u"for TKing"_s << false << false << true;
        QTest::newRow("both, bad word") << 11 << u"bad word in name"_s << false << false << true;
        QTest::newRow("unknown BanFor") << 5 << u"for TKing"_s << false << false << false;
    }

    void banDue()
    {
        QFETCH(int, banFor);
        QFETCH(QString, reason);
        QFETCH(bool, took);
        QFETCH(bool, force);
        QFETCH(bool, due);
        PolicyRig rig;
        rig.settings.BanFor = banFor;
        rig.settings.BanType = 1;
        PlayerRecord &r = rig.add(u"Bob"_s, u"192.0.2.1"_s);
        if (took)
            r.nametime += 0.001;
        rig.ban.Ban(1, reason, force);
        QCOMPARE(rig.lists.bannedIPTop(), due ? 0 : -1);
    }

    void banWrites_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("ip");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("saveLog");
        QTest::addColumn<QByteArray>("banned");
        QTest::addColumn<QByteArray>("bannedIP");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QByteArray>("record");
        QTest::addColumn<int>("banadds");
        const QString ip = u"192.0.2.1"_s, tk = u"for TKing"_s, steal = u"stealing names"_s, unknown = u"----"_s;
        const QString skipped = u"Skipped banning IP of Bob due to unknown IP"_s;
        const QByteArray at = " on 2026-11-22 at 12:00:00 ";
        QTest::newRow("address") << 1 << ip << tk << true << ""_ba << "192.0.2.1\r\n"_ba << QStringList{u"Banned IP 192.0.2.1 for TKing"_s}
                                 << "Banned IP 192.0.2.1 (Bob)" + at + "for TKing\r\n" << 1;
        QTest::newRow("address unknown") << 1 << unknown << tk << true << ""_ba << ""_ba << QStringList{skipped} << ""_ba << 0;
        QTest::newRow("name") << 2 << ip << tk << true << "Bob\r\n"_ba << ""_ba << QStringList{u"Banned name Bob for TKing"_s}
                              << "Banned name Bob" + at + "for TKing\r\n" << 1;
        QTest::newRow("name, stolen") << 2 << ip << steal << true << ""_ba << ""_ba << QStringList() << ""_ba << 0;
        QTest::newRow("both") << 3 << ip << tk << true << "Bob\r\n"_ba << "192.0.2.1\r\n"_ba
                              << QStringList{u"Banned name/IP Bob/192.0.2.1 for TKing"_s}
                              << "Banned IP & name 192.0.2.1 / Bob" + at + "for TKing\r\n" << 1;
        QTest::newRow("both, address unknown") << 3 << unknown << tk << true << "Bob\r\n"_ba << ""_ba << QStringList{skipped} << ""_ba << 1;
        QTest::newRow("both, stolen") << 3 << ip << steal << true << ""_ba << "192.0.2.1\r\n"_ba
                                      << QStringList{u"Banned name/IP Bob/192.0.2.1 stealing names"_s}
                                      << "Banned IP & name 192.0.2.1 / Bob" + at + "stealing names\r\n" << 1;
        QTest::newRow("unknown type") << 0 << ip << tk << true << ""_ba << ""_ba << QStringList{u"Error in Ban"_s} << ""_ba << 0;
        QTest::newRow("log off") << 3 << ip << tk << false << "Bob\r\n"_ba << "192.0.2.1\r\n"_ba << QStringList() << ""_ba << 1;
    }

    void banWrites()
    {
        QFETCH(int, type);
        QFETCH(QString, ip);
        QFETCH(QString, reason);
        QFETCH(bool, saveLog);
        PolicyRig rig;
        rig.settings.BanType = type;
        rig.settings.SaveLog = saveLog;
        rig.add(u"Bob"_s, ip);
        rig.ban.Ban(1, reason, true);
        QTEST(rig.file(u"banned.txt"_s), "banned");
        QTEST(rig.file(u"bannedIP.txt"_s), "bannedIP");
        QTEST(rig.logLines(), "log");
        QTEST(rig.file(u"ReasonBanned.txt"_s), "record");
        QTEST(rig.stats.banadds, "banadds");
        QCOMPARE(rig.lists.bannedNameTop() + rig.lists.bannedIPTop() + 2,
                 rig.file(u"banned.txt"_s).count('\n') + rig.file(u"bannedIP.txt"_s).count('\n'));
    }
};

QTEST_GUILESS_MAIN(TestKickBan)
#include "tst_kickban.moc"
