// SPDX-License-Identifier: MIT
// quorvaned as systemd runs it: its own process against the simulated server, a notification
// socket of the test's own, the lists and settings edited on disk and read again on SIGHUP.
#include "EngineWorld.h"
#include "ServiceRun.h"

#include <csignal>

class TestService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A name added to banned.txt and a lowered RateMax count from the reload on, not before;
    // systemd hears of the start, each check, the reload and the stop; SIGTERM stops in order.
    void reloadOnHangUp()
    {
        ServiceRun run;
        run.writeSettings("CommandDelay=0.2\nRate=True\nRateMax=30000\n");
        QVERIFY(run.startSim("0 map obj/obj_team2\n0 join Ironside ip=203.0.113.10 rate=20000\n"
                             "0 join Griefer ip=203.0.113.66 rate=15000\n0 join Flooder ip=198.51.100.90 rate=25000\n"));
        NotifySocket systemd(run.dir.path() + QStringLiteral("/notify"));
        run.start(qEnvironmentVariable("QUORVANED_BIN"), {}, systemd.path);
        QTRY_COMPARE_WITH_TIMEOUT(systemd.count(QStringLiteral("READY=1")), 1, 10000);
        QVERIFY(run.out().startsWith("<6>Started: watching 127.0.0.1:" + QByteArray::number(run.simPort)));

        QFile banned(run.work() + QStringLiteral("banned.txt"));
        QVERIFY(banned.open(QIODevice::Append) && banned.write("Griefer\r\n") == 9);
        banned.close();
        QByteArray ini = TestEnv::readFile(run.ini());
        const QByteArray port = QByteArray::number(run.localPort), newPort = QByteArray::number(run.localPort + 1);
        ini.replace("RateMax=30000", "RateMax=20000").replace("LocalPort=" + port, "LocalPort=" + newPort);
        TestEnv::writeFile(run.ini(), ini);
        QTRY_COMPARE_WITH_TIMEOUT(systemd.count(QStringLiteral("STATUS=obj/obj_team2, 3 players, 0 kicks, 0 bans, reply ")),
                                  1, 10000);
        QVERIFY(!run.record().contains("clientkick"));

        run.signal(SIGHUP);
        QTRY_VERIFY_WITH_TIMEOUT(run.out().contains("<6>Reloaded the lists ("), 5000);
        QVERIFY(run.printed.contains(", banned.txt 1, ") && run.printed.contains("; settings changed: LocalPort, RateMax.\n"));
        QVERIFY(run.printed.contains("<4>LocalPort " + newPort
                                     + " takes effect at the next start; until then the program listens on " + port
                                     + ".\n"));
        QCOMPARE(systemd.count(QStringLiteral("RELOADING=1")), 1);
        QTRY_COMPARE_WITH_TIMEOUT(systemd.count(QStringLiteral("STATUS=obj/obj_team2, 3 players, 2 kicks, 0 bans")), 1,
                                  10000);
        QVERIFY(run.out().contains("<5>Kicked Griefer (slot 1, 203.0.113.66): banned name.\n"));
        QVERIFY(run.printed.contains("<5>Kicked Flooder (slot 2, 198.51.100.90): Rate.\n"));
        QVERIFY(run.record().contains("clientkick 1") && run.record().contains("clientkick 2"));
        QVERIFY(!run.record().contains("clientkick 0"));

        run.signal(SIGTERM);
        QVERIFY(run.program.waitForFinished(10000));
        QCOMPARE(run.program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(run.program.exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(systemd.count(QStringLiteral("STOPPING=1")), 1, 2000);
        QVERIFY(run.out().endsWith("<6>Stopping.\n<6>Stopped after 2 checks: 2 kicks, 0 bans.\n"));
        const QByteArray log = run.file(QStringLiteral("servlog.txt"));
        QVERIFY(log.contains("  - Ran 2 total checks.\r\n  - Banned 0 players.\r\n  - Kicked 2 banned players."));
        QVERIFY(log.endsWith(QByteArray(52, '-') + "\r\n"));
        // The new port is kept for the next start, the new limit with it.
        QVERIFY(TestEnv::readFile(run.ini()).contains("LocalPort=" + newPort + '\n'));
        QVERIFY(!(run.printed + run.program.readAllStandardError() + log).contains("Zq7-secret"));
    }

    // The reload that both fronts run: never under a running check; the check interval it reads
    // goes into the timer as the load would set it, and a log switched on is opened.
    void reloadWaitsForTheCheck()
    {
        bool inCheck = false;
        TestCheck check;
        check.running = [&] { return inCheck; };
        EngineWorld w(0, &check, [] {});
        w.engine.settings.LocalPort = 0, w.engine.settings.LogBrief = true;
        w.engine.Form_Load(QString());
        TestEnv::writeFile(w.env.workDir() + QStringLiteral("banned.txt"), "Griefer\r\n");
        QDir().mkpath(w.env.configHome() + QStringLiteral("/quorvane"));
        TestEnv::writeFile(w.env.configHome() + QStringLiteral("/quorvane/quorvane12.ini"),
                           "[Settings]\nCheckInt=1000\nMaxPing=400\nSaveLog=True\nLogBrief=True\nLocalPort=0\nFileLoc="
                               + QFile::encodeName(w.env.workDir()) + '\n');
        inCheck = true;
        w.engine.requestReload();
        QTest::qWait(600);
        QCOMPARE(w.engine.lists().bannedNameTop(), -1);
        QCOMPARE(w.engine.settings.MaxPing, 750);
        inCheck = false;
        QTRY_COMPARE(w.engine.lists().bannedNameTop(), 0);
        QCOMPARE(w.engine.settings.MaxPing, 400);
        QCOMPARE(w.engine.timKickcheck().interval(), 5000);
        const QByteArray log = w.file(QStringLiteral("servlog.txt"));
        QVERIFY(log.startsWith(QByteArray(52, '-') + "\r\nLogging Started on 2026-11-22 at 12:00:00\r\n"));
        QVERIFY(log.endsWith("]\r\nReloaded the lists (servmsg.txt 0, highping.txt 0, banned.txt 1, bannedIP.txt 0, "
                              "badnames.txt 0, immuneIP.txt 0 entries); settings changed: CheckInt, SaveLog, MaxPing.\r\n\r\n"));
    }

    // Without its settings the service says which file and what it needs, and systemd is not
    // to try again.
    void missingSettingsAreNoRetry()
    {
        ServiceRun run;
        run.start(qEnvironmentVariable("QUORVANED_BIN"));
        QVERIFY(run.program.waitForFinished(10000));
        QCOMPARE(run.program.exitCode(), 78);
        const QByteArray said = run.program.readAllStandardError();
        QVERIFY(said.startsWith("<3>quorvaned: no settings file at " + QFile::encodeName(run.ini()) + '\n'));
        QVERIFY(said.contains("Host, Port, Pwd and LocalPort") && said.contains("<3>  LocalPort=1247\n"));
        QVERIFY(!QFile::exists(run.ini()) && run.out().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestService)
#include "tst_service.moc"
