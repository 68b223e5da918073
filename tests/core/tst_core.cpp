// SPDX-License-Identifier: MIT
// The application core on a headless window: the settings store, Form_Load, the run switch,
// the timers, the waits, the orderly stop and the fatal one.
#include "EngineWorld.h"
#include "StderrCapture.h"
#include "SimServer.h"
#include "core/Waits.h"

#include <QDir>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

// Reads the block from a settings file that holds `ini`.
void readFrom(EngineWorld &w, const QByteArray &ini = {})
{
    QDir().mkpath(w.env.configHome() + u"/quorvane"_s);
    TestEnv::writeFile(IniSettingsBackend::filePath(SettingsStore::ownApp), ini);
    w.engine.settings.CheckInt = 1, w.engine.settings.Host = u"x"_s; // whatever the block held is read over
    w.engine.store().readSettings(SettingsStore::ownApp);
}

QSettings iniOf(const QString &app)
{
    return QSettings(IniSettingsBackend::filePath(app), QSettings::IniFormat);
}

// The settings file's section, key=value in the file's order.
QStringList inFile()
{
    QSettings ini = iniOf(SettingsStore::ownApp);
    ini.beginGroup(u"Settings"_s);
    QStringList out;
    for (const QString &key : ini.allKeys())
        out << key + u'=' + ini.value(key).toString();
    return out;
}

} // namespace

class TestCore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // An empty store gives the defaults, and a save writes every one. Each line edited by hand
    // alone in the file is read as the next save writes it.
    void settingsStore()
    {
        EngineWorld w;
        readFrom(w);
        w.engine.store().StoreSettings(true);
        QCOMPARE(inFile().join(u' '),
                 u"Ban=False BanDuration=0 BanFor=10 BanTime=0 BanType=3 CheckInt=20000 CommandDelay=1 FileLoc="_s + w.env.workDir()
                     + u" ForceKick=False Host=000.000.000.000 KickBanned=True KickImpersonators=True KickPing=True KickTK=False "
                       "KickTeleFrag=False LocalPort=1247 LogBrief=False MaxPing=750 MsgRandom=True NameCheck=False "
                       "Persona=Clinical PingPasses=3 Port=12203 Pwd= QPort=False QPortMax=0 QPortMin=0 Rate=False RateMax=0 "
                       "RateMin=0 RunBefore=1 SaveLog=False SaveSettings=True ServerOnly=True SkipMap=True StatusInterval=2 "
                       "SysTray=True TKLimit=-3 TellPause=0 TellPlayers=True Voice=[Quorvane] Warn=False WarnTxt= WinHeight=7860 "
                       "WinState=0 WinWidth=9240 intAnnouce=0 lngAnnounce=0"_s);
        const QList<QPair<QByteArray, QString>> cases{
            {"Warn=true", u"Warn=True"_s}, {"KickPing=false", u"KickPing=False"_s}, {"SkipMap=0", u"SkipMap=False"_s},
            {"TellPlayers=maybe", u"TellPlayers=True"_s}, {"CheckInt=abc", u"CheckInt=20000"_s},
            {"CheckInt=1000", u"CheckInt=1000"_s}, // raised only at load
            {"Port=2147483647", u"Port=2147483647"_s}, {"Port=2147483648", u"Port=12203"_s},
            {"MaxPing=750.5", u"MaxPing=750"_s}, {"MaxPing=751.5", u"MaxPing=752"_s}, // halves to even
            {"CommandDelay=1.0", u"CommandDelay=1"_s}, {"CommandDelay=0.00001", u"CommandDelay=0.00001"_s},
            {"CommandDelay=fast", u"CommandDelay=1"_s}, {"Pwd=se,cret", u"Pwd=se,cret"_s},
            {"WarnTxt=stop , now", u"WarnTxt=stop , now"_s}, {"ServerOnly=false", u"ServerOnly=False"_s}};
        for (const auto &[line, read] : cases) {
            EngineWorld v; // the same key in another section is no setting
            readFrom(v, "[Other]\n" + line.left(line.indexOf('=')) + "=no\n[Settings]\n" + line + "\n");
            v.engine.store().StoreSettings(true);
            QVERIFY2(inFile().contains(read), line.constData());
        }
    }

    // The file holds the password: 0600 in a folder created 0700 under a umask of 022 (over an
    // older file with looser bits: the program test). A save the disk refuses is recorded and
    // told, the engine runs on, and the next save goes through. (A save cut short keeps the
    // file as it was: the list editor's test.)
    void settingsFileKeptPrivate()
    {
        EngineWorld w(0, nullptr, [] {});
        const mode_t umaskBefore = ::umask(022);
        const QString ini = IniSettingsBackend::filePath(SettingsStore::ownApp);
        const auto modes = [&ini] {
            struct stat folder{}, file{};
            ::stat(QFile::encodeName(QFileInfo(ini).absolutePath()).constData(), &folder);
            ::stat(QFile::encodeName(ini).constData(), &file);
            return u"%1 %2"_s.arg(folder.st_mode & 0777, 0, 8).arg(file.st_mode & 0777, 0, 8);
        };
        Engine &e = w.engine;
        e.settings.Host = u"192.0.2.1"_s;
        e.cmdStart_Click(); // Start saves; Stop does not
        e.cmdStart_Click();
        e.settings.Host = u"192.0.2.2"_s;
        QFile::rename(ini, ini + u".kept"_s);
        QFile::link(u"/dev/full"_s, ini);
        e.cmdStart_Click();
        QVERIFY(e.engineRunning());
        QFile::remove(ini);
        QFile::rename(ini + u".kept"_s, ini);
        QCOMPARE(w.view.boxes, QStringList{u"The settings could not be saved: No space left on device. The settings stored "
                                           "before stay as they were."_s});
        QCOMPARE(w.file(u"ErrLog.txt"_s).count("\tAppMsg: Error saving settings\"\r\n"), 1);
        e.cmdStart_Click();
        e.cmdStart_Click();
        QCOMPARE(w.view.boxes.size(), 1);
        QCOMPARE(iniOf(SettingsStore::ownApp).value(u"Settings/Host"_s).toString(), u"192.0.2.2"_s);
        QCOMPARE(modes(), u"700 600"_s);
        QCOMPARE(QDir(QFileInfo(ini).absolutePath()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{u"quorvane12.ini"_s}); // no scratch left behind
        ::umask(umaskBefore);
    }

    // The command line -a or /a, alone, presses Start. LocalPort binds up to 65535; beyond,
    // below 0 or taken, the start is a fatal error: a record, the box, and nothing logged or saved.
    void formLoad()
    {
        QUdpSocket holder;
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, 0, QAbstractSocket::DontShareAddress));
        // LocalPort, command line, as logged, started; or the fatal box's last words
        const QList<std::tuple<int, QString, QByteArray, bool, QString>> rows{
            {0, u"-a"_s, "-a", true, {}}, {0, u"/a"_s, "/a", true, {}}, {65535, u"  -A  "_s, "-a", true, {}},
            {0, u"-a -x"_s, "-a -x", false, {}}, {0, u"a"_s, "a", false, {}}, {65536, u"-a"_s, {}, false, u"[6]: Overflow"_s},
            {-1, u"-a"_s, {}, false, u"[6]: Overflow"_s},
            {holder.localPort(), u"-a"_s, {}, false, u"[10008]: The bound address is already in use"_s}};
        for (const auto &[port, commandLine, logged, starts, fatal] : rows) {
            int statusRuns = 0;
            EngineWorld w(0, nullptr, [&] { ++statusRuns; });
            w.engine.settings.LocalPort = port, w.engine.settings.SaveLog = true, w.engine.settings.CheckInt = 1000;
            const QString box = w.fatal([&] { w.engine.Form_Load(commandLine); });
            QCOMPARE(w.engine.engineRunning(), starts);
            QCOMPARE(statusRuns, starts ? 1 : 0);
            const QByteArray log = w.file(u"servlog.txt"_s);
            if (fatal.isEmpty()) {
                QVERIFY(box.isEmpty() && !w.engine.link().isClosed());
                QCOMPARE(w.engine.timKickcheck().interval(), 5000);
                QCOMPARE(w.engine.pane().text(), starts ? u"Automatic Startup\r\n"_s : QString());
                QCOMPARE(log.mid(log.indexOf("Application")),
                         "Application started successfully\r\n...check interval 5000\r\n...announce interval 0\r\n"
                         "...command line '" + logged + "'\r\n\r\n"
                             + (starts ? "[12:00:00]\r\nQuorvane started\r\n\r\nAutomatically starting TK check\r\n\r\n" : ""));
                continue;
            }
            QCOMPARE(w.view.boxes, QStringList{u"Quorvane has encountered an error and will shut down.\r\n\r\n"
                                               "Error initializing application"_s + fatal});
            QVERIFY(log.isEmpty() && !QFile::exists(IniSettingsBackend::filePath(SettingsStore::ownApp)));
            const QByteArray record = w.file(u"ErrLog.txt"_s);
            QVERIFY(record.endsWith("\tAppMsg: Error initializing application\"\r\n"));
            if (port == holder.localPort()) // the socket's own words and error code
                QCOMPARE(record, "\"[2026-11-22 12:00:00] - Error 10008: The bound address is already in use\r\n"
                                 "\tCalling Function: UDPClient\r\n\tLast DLL: 98\r\n\tSource: UDPClient\r\n"
                                 "\tAppMsg: Error initializing application\"\r\n"_ba);
        }
    }

    // A run as a service does it: started by -a, two checks on the real timer against the
    // simulated server, the first of which finds the server empty, then the orderly stop.
    void checksGoOnAfterAFailedStatus()
    {
        SimServer sim;
        sim.setPassword("pw");
        QVERIFY(sim.listen());
        EngineWorld w(25);
        Engine &e = w.engine;
        e.LoadSettings(SettingsStore::ownApp);
        Settings &s = e.settings;
        s.LocalPort = 0, s.SaveLog = s.LogBrief = true, s.CheckInt = 5000, s.StatusInterval = 1;
        s.Host = u"127.0.0.1"_s, s.Port = sim.port(), s.Pwd = u"pw"_s;
        QString during; // the window while a check waits for its reply
        connect(&sim, &SimServer::datagramReceived, this, [&] {
            if (e.checkCycle().checkRunning() && during.isEmpty())
                during = u"%1 %2 %3/%4"_s.arg(int(w.view.trayFlashing)).arg(int(w.view.enabled.value(View::Control::cmdKick)))
                             .arg(w.view.progressValue).arg(w.view.progressMax);
        });
        connect(&e.timKickcheck(), &Ticker::tick, this, [&] { // behind the engine's own handler
            if (e.stats.checks == 1)
                sim.addPlayer({.name = "Bob"});
            else if (e.stats.checks == 2)
                e.Form_Unload();
        });
        e.Form_Load(u"-a"_s);
        // The status of Start found nobody: the grid is drawn all the same.
        QCOMPARE(w.view.labels.value(View::Label::lblPing), u"Ping (L/H): 999 / 0"_s);
        QTRY_VERIFY_WITH_TIMEOUT(e.unloaded(), 10000);

        QCOMPARE(during, u"1 0 5/5"_s);
        QVERIFY(!w.view.trayFlashing && w.view.enabled.value(View::Control::cmdKick));
        const QByteArray rule(52, '-');
        const QByteArray expected = rule + "\r\nLogging Started on 2026-11-22 at hh:mm:ss\r\n" + rule + "\r\n\r\n"
            "Application started successfully\r\n...check interval 5000\r\n...announce interval 0\r\n"
            "...command line '-a'\r\n\r\n[hh:mm:ss]\r\nQuorvane started\r\n\r\nstatus\r\n\r\n"
            "Automatically starting TK check\r\n\r\n[hh:mm:ss]\r\nRunning a TK check.\r\n\r\nstatus\r\n\r\n"
            "...couldn't get good status for TK check.\r\n\r\n[hh:mm:ss]\r\nRunning a TK check.\r\n\r\nstatus\r\n\r\n"
            "[hh:mm:ss]\r\nQuorvane stopped\r\n\r\nShutting down and closing log.\r\n\r\n"
            + rule + "\r\nLogging Completed on 2026-11-22 at hh:mm:ss\r\nServer Stats:\r\n"
            "  - Quorvane started on 2026-11-22 at hh:mm:ss.\r\n  - Hosted 1 total players.\r\n  - Ran 0 maps total.\r\n"
            "  - Ran 2 total checks.\r\n  - Banned 0 players.\r\n  - Kicked 0 banned players.\r\n"
            "  - Kicked 0 players for high ping.\r\n  - Kicked 0 players for TKs.\r\n"
            "  - Closed while on obj/obj_team1 map.\r\n  - Closed with 1 players on the server.\r\n" + rule + "\r\n";
        QString log = QString::fromLatin1(w.file(u"servlog.txt"_s));
        QCOMPARE(log.replace(QRegularExpression(u"\\d\\d:\\d\\d:\\d\\d"_s), u"hh:mm:ss"_s).toLatin1(), expected);
    }

    // A stranger floods LocalPort with forged replies, about 20,000 a second, while the engine
    // runs on its timer: every check still goes out on time and is answered, and the log
    // stays small: a line that counts the strangers, no word of what they sent.
    void strangerFlood()
    {
        SimServer sim;
        sim.setPassword("pw");
        QVERIFY(sim.listen());
        sim.addPlayer(SimPlayer{3, "Steady", 0, 40, SimPlayer::State::Active, 0, "192.0.2.1", 27960, 1500, 9000});
        EngineWorld w(10);
        Engine &e = w.engine;
        Settings &s = e.settings;
        s.LocalPort = 0, s.SaveLog = true, s.CheckInt = 5000, s.StatusInterval = 1;
        s.Host = u"127.0.0.1"_s, s.Port = sim.port(), s.Pwd = u"pw"_s;
        QUdpSocket stranger;
        QVERIFY(stranger.bind(QHostAddress::LocalHost, 0));
        const QByteArray forged = QByteArray("\xFF\xFF\xFF\xFF\x01print\n", 11) + "map: x\n  0     0   50 evil one" + QByteArray(250, ' ') + '\n';
        QTimer flood;
        connect(&flood, &QTimer::timeout, this, [&] {
            for (int i = 0; i < 20; ++i)
                stranger.writeDatagram(forged, QHostAddress::LocalHost, e.link().localPort());
        });
        QList<double> sent; // clock seconds of each status on the wire
        connect(&sim, &SimServer::datagramReceived, this, [&](const QByteArray &d) {
            if (d.endsWith("status"))
                sent.append(FakeClock::firstMoment().msecsTo(w.clock.now()) / 1000.0);
        });
        connect(&e.timKickcheck(), &Ticker::tick, this, [&] {
            if (e.stats.checks == 5)
                e.Form_Unload();
        });
        flood.start(1);
        e.Form_Load(u"-a"_s);
        QTRY_VERIFY_WITH_TIMEOUT(e.unloaded(), 20000);
        flood.stop();
        QCOMPARE(sent.size(), 6); // Start's status and five checks
        for (qsizetype i = 1; i < sent.size(); ++i)
            QVERIFY2(std::abs(sent.at(i) - sent.at(i - 1) - 5.0) < 1.0, qPrintable(QString::number(sent.at(i) - sent.at(i - 1))));
        const QByteArray log = w.file(u"servlog.txt"_s);
        QCOMPARE(log.count("num score ping"), 6);
        QVERIFY(!log.contains("evil") && !log.contains("couldn't get good status") && !log.contains("timed out"));
        QVERIFY(log.count("\r\nIgnored ") >= 1 && log.count("\r\nIgnored ") <= 2);
        // What came after the last line is told at the stop.
        QVERIFY(QString::fromLatin1(log).contains(QRegularExpression(u"\r\n\r\nIgnored \\d+ datagrams not from the server: \\d+ from "
                                                 "127\\.0\\.0\\.1:\\d+\\.\r\n\r\nShutting down"_s)));
        QVERIFY2(log.size() < 8000, qPrintable(QString::number(log.size())));
    }

    // Start and Stop. A check that outlasts the interval: every tick that falls inside it still
    // reaches its handler, writes its pane line and runs no second check.
    void startStopAndTicksDuringALongCheck()
    {
        int cycles = 0;
        qsizetype linesAtEnd = 0;
        Engine *engine = nullptr;
        TestCheck check; // the engine's own check, counted, then Stop from inside the tick
        check.run = [&] {
            ++cycles;
            engine->checkCycle().TkCheck(); // 21 clock seconds: four more ticks fall inside
            linesAtEnd = engine->pane().text().count(u"\r\nRunning a TK check.....\r\n"_s);
            engine->cmdStart_Click(); // Stop, from inside the tick
        };
        check.running = [&] { return engine->checkCycle().checkRunning(); };
        EngineWorld w(50, &check, [] {}); // a tick every 100 ms
        engine = &w.engine;
        Peer silent;       // never answers, so each status waits out its whole delay
        Settings &s = w.engine.settings;
        s.LocalPort = 0, s.CheckInt = 5000, s.CommandDelay = 20, s.SaveSettings = false;
        w.engine.Form_Load(QString());
        w.pointAt(silent.socket.localPort());
        const auto state = [&] {
            return u"%1 %2/%3 %4 %5"_s.arg(w.view.startCaption).arg(w.view.progressValue).arg(w.view.progressMax)
                .arg(int(w.view.enabled.value(View::Control::mnuOptions))).arg(int(w.engine.timProgress().isActive()));
        };
        QVERIFY(!w.engine.timKickcheck().isActive() && !w.engine.timProgress().isActive());
        w.engine.cmdStart_Click();
        w.engine.timProgress_Timer();
        w.engine.timProgress_Timer();
        QCOMPARE(state(), u"Stop 2/5 0 1"_s);
        // Only two keys reach the store with Save Settings unticked.
        QCOMPARE(inFile(), (QStringList{u"RunBefore=1"_s, u"SaveSettings=False"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(!w.engine.engineRunning(), 5000);
        QCOMPARE(cycles, 1);
        QCOMPARE(w.engine.stats.checks, 1);
        QVERIFY2(linesAtEnd >= 4, qPrintable(QString::number(linesAtEnd)));
        QCOMPARE(state(), u"Start 0/5 1 0"_s);
        QVERIFY(!w.engine.timKickcheck().isActive());
    }

    // A previous version's settings: declined, taken over with its lists, then never asked again.
    void firstRunTakesOverPreviousSettings()
    {
        EngineWorld w;
        const QString oldPlace = w.env.root() + u"/old/"_s;
        QDir().mkpath(oldPlace);
        TestEnv::writeFile(oldPlace + u"badnames.txt"_s, "Mixed\r\n \r\n");
        TestEnv::writeFile(w.env.workDir() + u"badnames.txt"_s, "KEPT\r\n");
        QSettings old = iniOf(SettingsStore::previousApp);
        old.setValue(u"Settings/FileLoc"_s, oldPlace);
        old.setValue(u"Settings/Host"_s, u"192.0.2.9"_s);
        old.sync();
        QStringList seen;
        for (const bool answer : {false, true, true}) {
            w.view.answers = {answer};
            w.engine.FirstRunCheck();
            w.engine.LoadSettings(SettingsStore::ownApp);
            seen << QString::number(w.view.questions.size()) + u' ' + w.engine.settings.Host;
        }
        QCOMPARE(seen, (QStringList{u"1 000.000.000.000"_s, u"2 192.0.2.9"_s, u"2 192.0.2.9"_s}));
        QCOMPARE(w.engine.settings.FileLoc, w.env.workDir());
        // The old folder's lists follow, in table form, behind what the new folder holds.
        QCOMPARE(w.file(u"badnames.txt"_s), "KEPT\r\nMIXED\r\n"_ba);
    }

    void waits()
    {
        FakeClock clock;
        bool ran = false;
        QTimer pending; // goes with the test, so it never fires into a later one
        pending.setSingleShot(true);
        connect(&pending, &QTimer::timeout, this, [&] { ran = true; });
        pending.start(0);
        Pause(clock, 0);
        Pause(clock, -2);
        PauseNoEvents(clock, 2.5);
        QVERIFY(!ran);
        QVERIFY(clock.now() > QDateTime(QDate(2026, 11, 22), QTime(12, 0, 2, 500)));
        QTimer steps; // a quarter second at every turn of the event loop
        connect(&steps, &QTimer::timeout, this, [&clock] { clock.jump(0.25); });
        steps.start(1);
        Pause(clock, 1.0);
        QVERIFY(ran);
        QVERIFY(clock.now() >= QDateTime(QDate(2026, 11, 22), QTime(12, 0, 3, 500)));
        // Past midnight the seconds start from 0 again; the wait begins anew from there.
        clock.setNow(QDateTime(QDate(2026, 11, 22), QTime(23, 59, 59, 500)));
        Pause(clock, 1.0);
        QVERIFY(clock.timeNow() >= QTime(0, 0, 1));
    }

    // Every writer on a disk that takes nothing (a link to /dev/full) or stops in the middle
    // of a write (a file size limit): the failure takes its road, never silent, and no part
    // of a line stays behind. A folder that is gone, and an ErrLog.txt that cannot be written
    // under a fatal report, still end in the box.
    void writesThatFail()
    {
        struct Row { QString broken; std::function<void(EngineWorld &)> act; QString box, file; QByteArray left; QString said; };
        const auto fatal = [](const QString &words) { return u"Quorvane has encountered an error and will shut down.\r\n\r\n"_s + words; };
        const QByteArray kept = QByteArray(398, 'k') + "\r\n";
        const QByteArray head = QByteArray(52, '-') + "\r\nLogging Started on 2026-11-22 at 12:00:00\r\n" + QByteArray(52, '-') + "\r\n\r\n";
        const QList<Row> rows{
            {u"banned.txt"_s, [](EngineWorld &w) { w.engine.lists().AppendToFile(u"banned.txt"_s, u"Evil One"_s); },
             fatal(u"Error appending Evil One to banned.txt[75]: No space left on device"_s), u"ErrLog.txt"_s,
             "\"[2026-11-22 12:00:00] - Error 75: No space left on device\r\n\tCalling Function: Quorvane\r\n\tLast DLL: 28\r\n"
             "\tSource: Quorvane\r\n\tAppMsg: Error appending Evil One to banned.txt\"\r\n", {}},
            {{}, [&kept](EngineWorld &w) {
                 TestEnv::writeFile(w.env.workDir() + u"banned.txt"_s, kept);
                 FileSizeLimit limit(kept.size() + 4);
                 w.engine.lists().AppendToFile(u"banned.txt"_s, u"Evil One"_s);
             }, fatal(u"Error appending Evil One to banned.txt[75]: File too large"_s), u"banned.txt"_s, kept, {}},
            {u"ReasonBanned.txt"_s, [](EngineWorld &w) {
                 PlayerRecord &r = w.engine.players().currentPlayers[1];
                 r.name = u"Evil One"_s, r.ip = u"203.0.113.99"_s;
                 w.openLog();
                 w.engine.ban().Ban(1, u"[admin initiated kick]"_s, true);
             }, fatal(u"Error appending Banned IP & name 203.0.113.99 / Evil One on 2026-11-22 at 12:00:00 [admin initiated kick]"
                      " to ReasonBanned.txt[75]: No space left on device"_s), u"bannedIP.txt"_s, "203.0.113.99\r\n", {}},
            {u"servlog.txt"_s, [](EngineWorld &w) { w.engine.log().OpenLog(); },
             fatal(u"Error opening server log[75]: No space left on device"_s), {}, {}, {}},
            {{}, [&head](EngineWorld &w) {
                 w.engine.log().OpenLog();
                 FileSizeLimit limit(head.size() + 100);
                 w.engine.log().WriteLog(QString(200, u'x'));
             }, fatal(u"Error writing out to server log[75]: File too large"_s), u"servlog.txt"_s, head, {}},
            {u"ErrLog.txt"_s, [](EngineWorld &w) { // a datagram the network refuses: a report that returns
                 w.view.fields[View::Field::txtHost] = u"000.000.000.000"_s;
                 w.view.fields[View::Field::txtPort] = u"1"_s;
                 w.engine.link().UDPClient_SendMessage(u"status"_s, true, true);
             }, {}, {}, {}, u"\r\nError not recorded in ErrLog.txt (No space left on device): Error sending via UDP "
                            "(UDPClient_SendMessage)\r\n\r\n12:00:00>status"_s},
            {{}, [](EngineWorld &w) { w.engine.settings.FileLoc = w.env.workDir() + u"missing/"_s, w.engine.log().OpenLog(); },
             fatal(u"Error opening server log[75]: No such file or directory"_s), {}, {}, {}},
            {{}, [](EngineWorld &w) {
                 w.engine.settings.FileLoc = u"/proc/no/such/dir/"_s;
                 try {
                     throw std::runtime_error("boom");
                 } catch (...) {
                     w.engine.errors().ReportError(true, u"CopyPlayers"_s);
                 }
             }, fatal(u"CopyPlayers[51]: Internal error: boom"_s), {}, {},
             u"Quorvane: ErrLog.txt could not be written (No such file or directory). The record:\n\"[2026-11-22 12:00:00] - Error 51: "
             "Internal error: boom\r\n\tCalling Function: Quorvane\r\n"_s}};
        for (const Row &row : rows) {
            EngineWorld w;
            if (!row.broken.isEmpty()) // every write to it fails with "No space left on device"
                QFile::link(u"/dev/full"_s, w.env.workDir() + row.broken);
            StderrCapture err;
            w.fatal([&] { row.act(w); });
            const QString said = w.engine.pane().text() + QString::fromLocal8Bit(err.text());
            QCOMPARE(w.view.boxes, row.box.isEmpty() ? QStringList() : QStringList{row.box});
            if (!row.file.isEmpty())
                QCOMPARE(w.file(row.file), row.left);
            QVERIFY2(said.contains(row.said), qPrintable(said));
        }
    }
};

QTEST_GUILESS_MAIN(TestCore)
#include "tst_core.moc"
