// SPDX-License-Identifier: MIT
// The service and the window are one engine: with the same settings and lists against the
// same server, one check each, the server hears the same datagrams and the files end the same.
#include "ServiceRun.h"

#include <csignal>

class TestSameAsWindow : public QObject
{
    Q_OBJECT

    struct Outcome
    {
        QByteArray record, log, errors, banned, bannedIP, reasons, settings, journal;
    };

    // A banned name, an address both banned and immune, a bad word: two kicks with their
    // bans and one immune player spared, each told to the players.
    static Outcome runOnce(ServiceRun &run, const QString &binary)
    {
        for (const char *name : {"servlog.txt", "ErrLog.txt", "ReasonBanned.txt"})
            QFile::remove(run.work() + QLatin1String(name));
        QFile::remove(run.dir.path() + QStringLiteral("/record"));
        run.writeSettings("CheckInt=6000\nCommandDelay=0.2\nBan=True\nBanFor=100\nBanType=3\nNameCheck=True\n");
        TestEnv::writeFile(run.work() + QStringLiteral("banned.txt"), "Griefer\r\n");
        TestEnv::writeFile(run.work() + QStringLiteral("bannedIP.txt"), "192.0.2.18\r\n");
        TestEnv::writeFile(run.work() + QStringLiteral("immuneIP.txt"), "192.0.2.18\r\n");
        TestEnv::writeFile(run.work() + QStringLiteral("badnames.txt"), "cheat\r\n");
        if (!run.startSim("0 map obj/obj_team2\n0 join Ironside ip=203.0.113.10\n0 join Tarn ip=192.0.2.18\n"
                          "0 join Griefer ip=203.0.113.66\n0 join xXCheaterXx ip=192.0.2.77\n"))
            return {};
        run.start(binary, {QStringLiteral("-a")});
        // Start's status and the check's, the immune's say, a say and a kick for each of two.
        const auto sent = [&run] { return run.record().count('\n'); };
        if (!QTest::qWaitFor([&] { return sent() >= 7; }, 25000))
            return {};
        QTest::qWait(500); // the last command's wait, well before the next check
        run.signal(SIGHUP); // both fronts read their lists again in place
        if (!QTest::qWaitFor([&run] { return run.file(QStringLiteral("servlog.txt")).contains("Reloaded the lists ("); }, 5000))
            return {};
        run.signal(SIGTERM);
        const bool ended = run.program.waitForFinished(10000) && run.program.exitCode() == 0;
        run.sim.kill();
        run.sim.waitForFinished(3000);
        if (!ended)
            return {};
        return {run.record(), ServiceRun::masked(run.file(QStringLiteral("servlog.txt"))),
                run.file(QStringLiteral("ErrLog.txt")), run.file(QStringLiteral("banned.txt")),
                run.file(QStringLiteral("bannedIP.txt")), ServiceRun::masked(run.file(QStringLiteral("ReasonBanned.txt"))),
                TestEnv::readFile(run.ini()), run.out()};
    }

private Q_SLOTS:
    void oneCheckByteForByte()
    {
        ServiceRun run;
        const Outcome window = runOnce(run, qEnvironmentVariable("QUORVANE_BIN"));
        const Outcome service = runOnce(run, qEnvironmentVariable("QUORVANED_BIN"));
        QCOMPARE(window.record.count('\n'), 7);
        QVERIFY(window.record.contains("rcon Zq7-secret clientkick 2") && window.record.contains("clientkick 3"));
        QCOMPARE(service.record, window.record);
        QVERIFY(window.log.contains("\r\nReloaded the lists (servmsg.txt 0, highping.txt 0, banned.txt 3, bannedIP.txt 3, "
                                    "badnames.txt 1, immuneIP.txt 1 entries); no setting changed.\r\n"));
        QCOMPARE(service.log, window.log);
        QCOMPARE(service.errors, window.errors);
        QCOMPARE(window.banned, QByteArray("Griefer\r\nGriefer\r\nxXCheaterXx\r\n"));
        QCOMPARE(service.banned, window.banned);
        QCOMPARE(service.bannedIP, window.bannedIP);
        QCOMPARE(window.reasons.count("Banned IP & name "), 2);
        QCOMPARE(service.reasons, window.reasons);
        QVERIFY(window.settings.contains("CheckInt=6000"));
        QCOMPARE(service.settings, window.settings);
        QVERIFY(service.journal.contains("\n<5>Spared Tarn (slot 1, 192.0.2.18), an immune address: banned IP.\n"
                                         "<5>Kicked Griefer (slot 2, 203.0.113.66): banned name.\n"
                                         "<5>Banned Griefer (203.0.113.66) by name and address: banned name.\n"
                                         "<5>Kicked xXCheaterXx (slot 3, 192.0.2.77): bad word in name.\n"));
    }
};

QTEST_GUILESS_MAIN(TestSameAsWindow)
#include "tst_sameaswindow.moc"
