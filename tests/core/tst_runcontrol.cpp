// SPDX-License-Identifier: MIT
// Form_Load, the run switch, the timers and the orderly stop on a headless window.
#include "EngineWorld.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"

#include <QDir>
#include <QSettings>
#include <QTest>

namespace {
QSettings iniOf(const QString &app)
{
    return QSettings(IniSettingsBackend::filePath(app), QSettings::IniFormat);
}
} // namespace

class TestRunControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void automaticStart_data()
    {
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<bool>("starts");
        QTest::newRow("-a") << "-a" << true;
        QTest::newRow("/a") << "/a" << true;
        QTest::newRow("-A between blanks") << "  -A  " << true;
        QTest::newRow("-a and another word") << "-a -x" << false;
        QTest::newRow("bare a") << "a" << false;
        QTest::newRow("nothing") << "" << false;
    }

    void automaticStart()
    {
        QFETCH(QString, commandLine);
        QFETCH(bool, starts);
        EngineWorld w;
        int statusRuns = 0;
        w.engine.setStatusCommand([&] { ++statusRuns; });
        w.engine.settings.LocalPort = 0;
        w.engine.settings.SaveLog = true;
        w.engine.settings.CheckInt = 1000;
        w.engine.Form_Load(commandLine);
        QCOMPARE(w.engine.engineRunning, starts);
        QCOMPARE(statusRuns, starts ? 1 : 0);
        QCOMPARE(w.engine.settings.CheckInt, 5000);
        QCOMPARE(w.engine.timKickcheck.interval(), 5000);
        QCOMPARE(w.engine.pane().text(), starts ? QStringLiteral("Automatic Startup\r\n") : QString());
        w.clock.setSpeed(1000); // the stop waits a second for a late reply
        w.engine.Form_Unload();
        const QByteArray log = w.file(QStringLiteral("servlog.txt"));
        const QByteArray cmd = Text::toWire(Text::trimBlanks(commandLine).toLower());
        QVERIFY(log.contains("\r\n\r\nApplication started successfully\r\n...check interval 5000\r\n"
                             "...announce interval 0\r\n...command line '" + cmd + "'\r\n\r\n"));
        QCOMPARE(log.contains("Automatically starting TK check\r\n\r\n"), starts);
        QCOMPARE(log.contains("[12:00:00]\r\nQuorvane started\r\n\r\n"), starts);
        QCOMPARE(log.contains("[12:00:00]\r\nQuorvane stopped\r\n\r\n"), starts);
        QVERIFY(log.contains("Shutting down and closing log.\r\n\r\n-----"));
        // The raised interval is what the next save stores.
        QCOMPARE(iniOf(SettingsStore::ownApp).value(QStringLiteral("Settings/CheckInt")).toString(),
                 QStringLiteral("5000"));
    }

    void startAndStop()
    {
        EngineWorld w;
        w.engine.settings.LocalPort = 0;
        w.engine.settings.CheckInt = 12000;
        w.engine.settings.SaveSettings = false;
        w.engine.setStatusCommand([] {});
        w.engine.Form_Load(QString());
        QVERIFY(!w.engine.timKickcheck.isActive());
        w.engine.cmdStart_Click();
        QVERIFY(w.engine.timKickcheck.isActive());
        QVERIFY(w.engine.timProgress.isActive());
        QCOMPARE(w.view.startCaption, QStringLiteral("Stop"));
        QCOMPARE(w.view.progressMax, 12);
        QCOMPARE(w.view.enabled.value(View::Control::mnuOptions), false);
        // Only two keys reach the store with Save Settings unticked.
        QCOMPARE(iniOf(SettingsStore::ownApp).allKeys(),
                 (QStringList{QStringLiteral("Settings/RunBefore"), QStringLiteral("Settings/SaveSettings")}));
        w.engine.timProgress_Timer();
        w.engine.timProgress_Timer();
        QCOMPARE(w.view.progressValue, 2);
        w.engine.cmdStart_Click();
        QVERIFY(!w.engine.timKickcheck.isActive());
        QVERIFY(!w.engine.timProgress.isActive());
        QCOMPARE(w.engine.intProgressCheck, 0);
        QCOMPARE(w.view.progressValue, 0);
        QCOMPARE(w.view.startCaption, QStringLiteral("Start"));
        QCOMPARE(w.view.enabled.value(View::Control::mnuOptions), true);
    }

    void tickRunsOneCheckAndResetsTheBar()
    {
        EngineWorld w;
        w.engine.settings.LocalPort = 0;
        w.engine.Form_Load(QString());
        w.engine.setStatusCommand([] {});
        int checks = 0;
        int nestedTicks = 0;
        w.engine.setCheckCycle([&] {
            ++checks;
            QVERIFY(w.view.trayFlashing);
            QCOMPARE(w.view.enabled.value(View::Control::cmdKick), false);
            QCOMPARE(w.view.progressValue, w.view.progressMax);
            QVERIFY(!w.engine.timProgress.isActive());
            // A tick that comes during a check runs no second check.
            w.engine.checkRunning = true;
            if (nestedTicks++ == 0)
                w.engine.timKickcheck_Timer();
            w.engine.checkRunning = false;
        });
        w.engine.cmdStart_Click();
        w.engine.timProgress_Timer();
        w.engine.timKickcheck_Timer();
        QCOMPARE(checks, 1);
        QCOMPARE(w.view.progressValue, 0);
        QCOMPARE(w.engine.intProgressCheck, 0);
        QVERIFY(w.engine.timProgress.isActive());
        QVERIFY(!w.view.trayFlashing);
        QCOMPARE(w.view.enabled.value(View::Control::mnuOther), true);
        QCOMPARE(w.engine.pane().text().count(QStringLiteral("\r\nRunning a TK check.....\r\n")), 2);
        // Stop pressed during a check leaves the bar's timer off.
        w.engine.setCheckCycle([&] { w.engine.cmdStart_Click(); });
        w.engine.timKickcheck_Timer();
        QVERIFY(!w.engine.timProgress.isActive());
    }

    // A check that outlasts the interval: every tick that falls inside it still reaches
    // its handler, writes its pane line and runs no second check.
    void ticksDuringALongCheckAreHandled()
    {
        EngineWorld w(50); // 50 clock seconds to the real second: a tick every 100 ms
        Peer silent;       // never answers, so each status waits out its whole delay
        w.engine.settings.LocalPort = 0;
        w.engine.settings.CheckInt = 5000;
        w.engine.settings.CommandDelay = 20;
        w.engine.Form_Load(QString());
        w.pointAt(silent.socket.localPort());
        w.engine.setStatusCommand([] {});
        int cycles = 0;
        qsizetype linesAtEnd = 0;
        w.engine.setCheckCycle([&] {
            ++cycles;
            w.engine.checkCycle().TkCheck(); // 21 clock seconds: four more ticks fall inside
            linesAtEnd = w.engine.pane().text().count(QStringLiteral("\r\nRunning a TK check.....\r\n"));
            w.engine.cmdStart_Click(); // Stop, from inside the tick
        });
        w.engine.cmdStart_Click();
        QTRY_VERIFY_WITH_TIMEOUT(!w.engine.engineRunning, 5000);
        QCOMPARE(cycles, 1);
        QCOMPARE(w.engine.stats.checks, 1);
        QVERIFY2(linesAtEnd >= 4, qPrintable(QString::number(linesAtEnd)));
        QVERIFY(!w.engine.timProgress.isActive());
    }

    void portTakenIsFatalAtLoad()
    {
        EngineWorld first;
        first.engine.settings.LocalPort = 0;
        first.engine.Form_Load(QString());
        QUdpSocket probe;
        QVERIFY(probe.bind(QHostAddress::AnyIPv4, 0, QAbstractSocket::DontShareAddress));
        EngineWorld w;
        w.engine.settings.LocalPort = probe.localPort();
        w.engine.settings.SaveLog = true;
        QVERIFY_THROWS_EXCEPTION(FatalExit, w.engine.Form_Load(QStringLiteral("-a")));
        QVERIFY(w.file(QStringLiteral("ErrLog.txt")).contains("\tAppMsg: Error initializing application\"\r\n"));
        QVERIFY(w.file(QStringLiteral("servlog.txt")).isEmpty());
        QCOMPARE(w.view.boxes.size(), 1);
        QVERIFY(!QFile::exists(IniSettingsBackend::filePath(SettingsStore::ownApp)));
    }

    void unloadInsideAPauseStopsTheCycle()
    {
        EngineWorld w(40);
        Peer peer;
        w.engine.settings.LocalPort = 0;
        w.engine.settings.SaveLog = true;
        w.engine.settings.Host = QStringLiteral("127.0.0.1");
        w.engine.Form_Load(QString());
        w.pointAt(peer.socket.localPort());
        w.engine.setStatusCommand([] {});
        w.engine.cmdStart_Click();
        CommandQueue &q = w.engine.queue();
        q.AddSrvCmd(QStringLiteral("one"), true);
        q.AddSrvCmd(QStringLiteral("two"), true);
        q.AddSrvCmd(QStringLiteral("three"), true);
        int finished = 0;
        connect(&w.engine, &Engine::finished, this, [&] { ++finished; });
        // The window closes while the drain waits for the first reply, which never comes.
        peer.answerWith([&](const QByteArray &) {
            w.engine.Form_Unload();
            return QList<QByteArray>{};
        });
        q.SendCommands();
        QCOMPARE(finished, 1);
        QVERIFY(w.engine.unloaded());
        QVERIFY(w.engine.link().isClosed());
        QVERIFY(!w.engine.engineRunning);
        QCOMPARE(q.srvqueueTop, -1);
        // One datagram before the close, nothing after it; the log ends with its tail.
        QTest::qWait(50);
        QCOMPARE(peer.received.size(), 1);
        QVERIFY(peer.received.first().endsWith("one"));
        const QByteArray log = w.file(QStringLiteral("servlog.txt"));
        QVERIFY(log.endsWith(QByteArray(52, '-') + "\r\n"));
        QVERIFY(!log.contains("two"));
        QCOMPARE(w.engine.pane().text().count(QStringLiteral("Warning")), 0);
        // A second close does nothing.
        w.engine.Form_Unload();
        QCOMPARE(finished, 1);
    }

    void firstRunTakesOverPreviousSettings_data()
    {
        QTest::addColumn<bool>("runBefore");
        QTest::addColumn<bool>("previous");
        QTest::addColumn<bool>("answer");
        QTest::addColumn<int>("questions");
        QTest::addColumn<QString>("host");
        QTest::newRow("taken over") << false << true << true << 1 << "192.0.2.9";
        QTest::newRow("declined") << false << true << false << 1 << "000.000.000.000";
        QTest::newRow("no previous version") << false << false << true << 0 << "000.000.000.000";
        QTest::newRow("not the first run") << true << true << true << 0 << "000.000.000.000";
    }

    void firstRunTakesOverPreviousSettings()
    {
        QFETCH(bool, runBefore);
        QFETCH(bool, previous);
        QFETCH(bool, answer);
        QFETCH(int, questions);
        QFETCH(QString, host);
        EngineWorld w;
        // The old folder's lists follow, in table form, behind what the new folder holds.
        const QString oldPlace = w.env.root() + QStringLiteral("/old/");
        QDir().mkpath(oldPlace);
        TestEnv::writeFile(oldPlace + QStringLiteral("badnames.txt"), "Mixed\r\n \r\n");
        TestEnv::writeFile(w.env.workDir() + QStringLiteral("badnames.txt"), "KEPT\r\n");
        if (previous) {
            QSettings old = iniOf(SettingsStore::previousApp);
            old.setValue(QStringLiteral("Settings/FileLoc"), oldPlace);
            old.setValue(QStringLiteral("Settings/Host"), QStringLiteral("192.0.2.9"));
        }
        if (runBefore)
            iniOf(SettingsStore::ownApp).setValue(QStringLiteral("Settings/RunBefore"), QStringLiteral("1"));
        w.view.answers = {answer};
        int copies = 0;
        connect(&w.engine, &Engine::listsToCopy, this, [&] { ++copies; });
        w.engine.FirstRunCheck();
        w.engine.LoadSettings(SettingsStore::ownApp);
        QCOMPARE(w.view.questions.size(), questions);
        QCOMPARE(w.engine.settings.Host, host);
        const bool tookOver = host != u"000.000.000.000";
        QCOMPARE(copies, tookOver ? 1 : 0);
        if (tookOver) {
            QCOMPARE(w.engine.settings.FileLoc, w.env.workDir());
            QCOMPARE(w.file(QStringLiteral("badnames.txt")), QByteArray("KEPT\r\nMIXED\r\n"));
            QCOMPARE(w.engine.lists().badNameTop(), 1);
            QCOMPARE(iniOf(SettingsStore::ownApp).value(QStringLiteral("Settings/RunBefore")).toString(),
                     QStringLiteral("1"));
        }
    }
};

QTEST_GUILESS_MAIN(TestRunControl)
#include "tst_runcontrol.moc"
