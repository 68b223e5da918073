// SPDX-License-Identifier: MIT
// The dialogs and the operator's actions, from the real menu entries, buttons and keys of the
// window: the tolerances, announcement, settings and list editor dialogs; Kick, Kick and Ban
// and Other Command against the simulated server over loopback.
#include "EngineWorld.h"
#include "SimServer.h"
#include "WindowWorld.h"
#include "ui/AnnounceDialog.h"
#include "ui/EditFileDialog.h"
#include "ui/GameCodesDialog.h"
#include "ui/OtherCommandDialog.h"
#include "ui/SettingsDialog.h"
#include "ui/ToleranceDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>

using namespace Qt::Literals::StringLiterals;
using Wire = QList<QByteArray>;

namespace {

// Opens a dialog from its menu entry, lets `body` work on it, and presses `accept` if it
// still stands (no name: the dialog is cancelled).
template<typename D>
bool accepted(WindowWorld &w, const char *entry, const std::function<void(D &)> &body, const QString &accept = {})
{
    return whileOpen<D>([&] { w.child<QAction>(entry)->trigger(); }, [&](D &d) {
        body(d);
        if (!accept.isEmpty() && d.isVisible())
            press(d, accept);
    });
}
bool okay(WindowWorld &w, const std::function<void(frmTolerance &)> &body, const QString &accept = u"cmdOkay"_s)
{
    return accepted<frmTolerance>(w, "mnuTolerance", body, accept);
}

struct Entry { QString control, typed; qint32 Settings::*setting; qint32 stored; QString box; };

// The window against a simulated server with two players, the grid filled by Status.
struct Rig
{
    SimServer sim;
    WindowWorld w{40};
    Engine &e = w.engine;

    Rig()
    {
        sim.setPassword("pw");
        sim.listen();
        sim.addPlayer({3, "Ironside", 4, 45, SimPlayer::State::Active, 0, "203.0.113.10", 27960, 1871, 25000});
        sim.addPlayer({5, "Kestrel", 2, 38, SimPlayer::State::Active, 0, "198.51.100.7", 27960, 9120, 16000});
        w.settings().LocalPort = 0;
        e.Form_Load(QString());
        w.window.setFieldText(View::Field::txtHost, u"127.0.0.1"_s);
        w.window.setFieldText(View::Field::txtPort, QString::number(sim.port()));
        w.window.setFieldText(View::Field::txtPwd, u"pw"_s);
        trigger(u"cmdStatus"_s);
        sim.clearReceived();
    }
    // What the server got, without framing and password.
    Wire wire() const
    {
        Wire out;
        for (const SimServer::Datagram &d : sim.received())
            out.append(d.bytes.mid(5).replace("rcon pw ", ""));
        return out;
    }
    QByteArray file(const char *name) const { return TestEnv::readFile(w.env.workDir() + QLatin1String(name)); }
    void trigger(const QString &name) // a menu entry or a button
    {
        QMetaObject::invokeMethod(w.window.findChild<QObject *>(name), name.startsWith(u"mnu") ? "trigger" : "click");
    }
};

struct Typed { QString typed, how; QByteArray sent; QString box; bool banned; };

} // namespace

Q_DECLARE_METATYPE(Entry)
Q_DECLARE_METATYPE(Typed)

class TestDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tolerancesStored_data()
    {
        QTest::addColumn<Entry>("k"); // keys as keys() takes them; [Tab]: the cursor leaves the box
        const auto row = [](const char *control, const QString &typed, qint32 Settings::*setting, qint32 v, const QString &box = {}) {
            QTest::addRow("%s '%s'", control, qPrintable(typed)) << Entry{QLatin1String(control), typed, setting, v, box};
        };
        using S = Settings;
        const auto items = [&](const char *combo, qint32 Settings::*setting, const QList<qint32> &values) { // picked, by place
            for (int i = 0; i < values.size(); ++i)
                row(combo, u"[Up]"_s.repeated(5) + u"[Down]"_s.repeated(i) + u"[Tab]"_s, setting, values[i]);
        };
        items("cboBanType", &S::BanType, {1, 2, 3});
        items("cboBanFor", &S::BanFor, {10, 1, 11, 1000, 100});
        items("cboStatusInterval", &S::StatusInterval, {1, 2, 3, 4, 5, 10});
        row("cboStatusInterval", u"[Down]"_s, &S::StatusInterval, 10); // on from the item shown, "fifth"
        // Kept as typed, no item put in its place: exact, but for the trimmed ban type.
        row("cboBanType", u"  IP  [Tab]"_s, &S::BanType, 1);
        row("cboBanType", u"name[Tab]"_s, &S::BanType, 0);
        row("cboBanFor", u" Impersonating"_s, &S::BanFor, 10);
        row("cboBanFor", u"impersonating[Tab]"_s, &S::BanFor, 10);
        row("cboStatusInterval", u"t[Tab]"_s, &S::StatusInterval, 2);
        row("cboStatusInterval", u"tenth "_s, &S::StatusInterval, 2);
        row("cboPasses", u"9"_s, &S::PingPasses, 9);
        row("txtTellPause", u"-5"_s, &S::TellPause, 0);
        row("txtTellPause", u"soon"_s, &S::TellPause, 0);
        // Refused: the dialog stays with the cursor in the box, and nothing is stored.
        row("txtMaxPing", u"32768"_s, &S::MaxPing, 750, u"Max Ping must be a number from -32768 to 32767."_s);
        row("txtQPortMax", u"2147483648"_s, &S::QPortMax, 0, u"The highest QPort must be a number from -2147483648 to 2147483647."_s);
        const QString reset = u"The timer's range is 5 to 60 seconds. Resetting to 30 seconds."_s;
        row("txtScanInt", u"61"_s, &S::CheckInt, 30000, reset);
        row("txtScanInt", u"4.5"_s, &S::CheckInt, 30000, reset); // halves to even
        const QString range = u"The range for scanning is 5 to 60 seconds."_s; // and the box says 5
        row("txtScanInt", u"5[Tab]"_s, &S::CheckInt, 5000);
        row("txtScanInt", u"60[Tab]"_s, &S::CheckInt, 60000);
        row("txtScanInt", u"4[Tab]"_s, &S::CheckInt, 5000, range);
        row("txtScanInt", u"61[Tab]"_s, &S::CheckInt, 5000, range);
        row("txtScanInt", u"99999999999[Tab]"_s, &S::CheckInt, 5000, range);
    }

    void tolerancesStored()
    {
        QFETCH(Entry, k);
        WindowWorld w;
        Settings &s = w.settings();
        s.StatusInterval = 5, s.Ban = true;
        Boxes boxes;
        bool open = false;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            press(d, u"chkQPort"_s);
            QWidget *entry = control(d, k.control);
            type(entry, k.typed);
            press(d, u"cmdOkay"_s);
            open = d.isVisible() && entry->hasFocus();
            d.reject();
        }));
        QCOMPARE(s.*k.setting, k.stored);
        QCOMPARE(boxes.shown(), k.box.isEmpty() ? QStringList() : QStringList{k.box});
        QCOMPARE(open, k.box.contains(u"must be a number"_s));
        QCOMPARE(QList<qint32>({s.QPort, w.engine.timKickcheck().interval(), s.StatusInterval}),
                 QList<qint32>({!open, open ? 0 : s.CheckInt, k.setting == &Settings::StatusInterval ? k.stored : 5}));
    }

    // The store as shown: codes without an item on the fallback texts, the boxes nobody can
    // tick off. Every box typed into, then every box ticked by the mouse once: the dependents
    // follow at load and at the click, and Okay stores each control into its own setting,
    // greyed ones as they stand, and the fallback numbers. The repair of Passes, Cancel or not.
    void tolerancesEveryControl()
    {
        WindowWorld w;
        Settings &s = w.settings();
        s.QPort = s.Rate = s.Warn = s.KickTK = s.KickTeleFrag = true, s.BanDuration = 14;
        s.PingPasses = 0, s.BanType = 7, s.BanFor = 5, s.StatusInterval = 7, s.CheckInt = 2000000000; // shown in whole seconds
        const QList<std::pair<const char *, QString>> boxes{
            {"chkBan", u"cboBanType lblBanish lblBanishFor cboBanFor"_s}, {"chkForceKick", {}}, {"chkTellPlayers", {}},
            {"chkKick", u"chkForceKick chkTellPlayers txtTellPause lblTellPause1 lblTellPause2"_s}, {"chkSkipMap", {}},
            {"chkKickPing", u"txtMaxPing lblPing cboPasses lblPasses chkSkipMap"_s},
            {"chkQPort", u"lblQPortMin lblQPortMax txtQPortMin txtQPortMax"_s},
            {"chkRate", u"lblRateMin lblRateMax txtRateMin txtRateMax"_s}, {"chkNameKick", {}}, {"chkImpersonate", {}}};
        const QStringList typed{u"txtMaxPing 600"_s, u"cboPasses 4"_s,   u"txtQPortMin 11"_s,  u"txtQPortMax 12"_s,
                                u"txtRateMin 13"_s,  u"txtRateMax 14"_s, u"txtTellPause 6"_s, u"txtScanInt 15"_s,
                                u"cboWarning Check your fire"_s}; // an item's beginning, not the item
        QStringList shown;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            shown << d.windowTitle();
            for (const QString &box : {u"txtKickScore"_s, u"txtMaxPing"_s, u"txtScanInt"_s, u"txtBanDuration"_s,
                                       u"cboBanType"_s, u"cboBanFor"_s, u"cboStatusInterval"_s, u"cboPasses"_s})
                shown << text(control(d, box));
            for (const QString &entry : typed)
                type(control(d, entry.section(u' ', 0, 0)), entry.section(u' ', 1) + u"[Tab]"_s);
            for (const auto &[name, dependents] : boxes) {
                auto *check = control<QCheckBox>(d, QLatin1String(name));
                const QString before = enabled(d, dependents);
                QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
                const QChar on = check->isChecked() ? u'1' : u'0', off = check->isChecked() ? u'0' : u'1';
                QVERIFY2(before == QString(before.size(), off) && enabled(d, dependents) == QString(before.size(), on), name);
                QCOMPARE(enabled(d, u"chkWarn chkEnableTK chkKickTelefrag txtKickScore txtBanDuration lblDuration Label2 "
                                    "cmdEditBan cmdForceKickHelp"_s), u"000000111"_s);
            }
        }));
        QCOMPARE(shown, QStringList({u"QVN - Tolerances"_s, u"-3"_s, u"750"_s, u"2000000"_s, u"14"_s, u""_s, u"TKing only"_s,
                                     u"second"_s, u"2"_s}));
        QCOMPARE(QList<bool>({s.Ban, s.ForceKick, s.TellPlayers, s.KickBanned, s.SkipMap, s.KickPing, s.QPort, s.Rate,
                              s.NameCheck, s.KickImpersonators, s.Warn, s.KickTK, s.KickTeleFrag}),
                 QList<bool>({true, true, false, false, false, false, false, false, true, false, true, false, false}));
        QCOMPARE(QList<qint32>({s.TKLimit, s.BanDuration, s.MaxPing, s.PingPasses, s.QPortMin, s.QPortMax, s.RateMin, s.RateMax,
                                s.TellPause, s.CheckInt, w.engine.timKickcheck().interval(), s.BanType, s.BanFor, s.StatusInterval}),
                 QList<qint32>({-3, 14, 600, 4, 11, 12, 13, 14, 6, 15000, 15000, 0, 10, 2}));
        QCOMPARE(s.WarnTxt, u"Check your fire"_s);
        s.PingPasses = 9;
        QVERIFY(okay(w, [](frmTolerance &) {}, {}));
        QCOMPARE(s.PingPasses, 2);
    }

    // The help box, and the four lists: each editor shows its file as it stands, takes the
    // keys, and Tab and Space save it: every line with its own end, an added one with the end
    // most lines have, Latin-1 bytes as they were; the table is reloaded.
    void listEditors()
    {
        WindowWorld w;
        const QList<std::tuple<const char *, QByteArray, QString>> files{
            {"banned.txt", "A\nB\r\nC\r\nD"_ba, u"[Ctrl+Home]Z[Return]"_s}, {"bannedIP.txt", "a\r\nb\nc\rd\n"_ba, u""_s},
            {"immuneIP.txt", "Jos\xe9\xa0X\n2\r\n3\n"_ba, u"[End][Return]\u00e9"_s}, {"badnames.txt", ""_ba, u"c[Return]x"_s}};
        for (const auto &[file, bytes, typed] : files)
            TestEnv::writeFile(w.env.workDir() + QLatin1String(file), bytes);
        Boxes boxes;
        QStringList seen;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            press(d, u"cmdForceKickHelp"_s);
            qsizetype i = 0;
            for (const char *button : {"cmdEditBan", "cmdEditIP", "cmdEditImmune", "cmdEditBadWords"})
                QVERIFY(whileOpen<frmEditFile>([&] { press(d, QLatin1String(button)); }, [&](frmEditFile &e) {
                    auto *box = control<QPlainTextEdit>(e, u"txtEdit"_s);
                    seen << e.windowTitle() << box->document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
                    keys(std::get<2>(files.at(i++)) + u"[Tab][Space]"_s);
                }));
        }, {}));
        QCOMPARE(seen, QStringList({u"QVN - Editing Banned Names"_s, u"A\nB\nC\nD"_s, u"QVN - Editing Banned IPs"_s,
                                    u"a\nb\nc\nd\n"_s, u"QVN - Editing Immune IPs"_s, u"Jos\u00e9\u00a0X\n2\n3\n"_s,
                                    u"QVN - Editing Bad Names"_s, u""_s}));
        QByteArray saved;
        for (const auto &[file, bytes, typed] : files)
            saved += TestEnv::readFile(w.env.workDir() + QLatin1String(file)) + '|';
        QCOMPARE(saved, "Z\r\nA\nB\r\nC\r\nD|a\r\nb\nc\rd\n|Jos\xe9\xa0X\n\xe9\n2\r\n3\n|c\r\nx|"_ba);
        const ListFiles &l = w.engine.lists();
        QCOMPARE(QList<qint32>({l.bannedNameTop(), l.bannedIPTop(), l.immuneIPTop(), l.badNameTop()}), QList<qint32>({4, 3, 3, 1}));

        // A save that fails leaves the old list whole, says so, and keeps the editor and its
        // text; the next Save, into a folder that takes no new file, writes it over the old one.
        const QString path = w.env.workDir() + u"immuneIP.txt"_s;
        TestEnv::writeFile(path, "1.2.3.4\r\n"_ba);
        frmEditFile editor(w.settings(), w.engine.lists(), w.engine.errors(), w.prompts, &w.window);
        editor.Edit_File(u"immuneIP.txt"_s, u"Editing Immune IPs"_s);
        QVERIFY(whileOpen<frmEditFile>([&] { editor.exec(); }, [&](frmEditFile &d) {
            type(control(d, u"txtEdit"_s), QString(1500, u'9'));
            {
                FileSizeLimit small(1000); // a disk that takes 1000 bytes a file
                press(d, u"cmdSave"_s);
            }
            QVERIFY(d.isVisible());
            QCOMPARE(TestEnv::readFile(path), "1.2.3.4\r\n"_ba);
            QCOMPARE(QDir(w.env.workDir()).entryList({u"immuneIP*"_s}, QDir::Files), QStringList{u"immuneIP.txt"_s});
            FolderWithoutWrite locked(w.env.workDir());
            QVERIFY(!QFile(w.env.workDir() + u"new.txt"_s).open(QIODevice::WriteOnly));
            press(d, u"cmdSave"_s);
            QVERIFY(!d.isVisible());
        }));
        QCOMPARE(TestEnv::readFile(path), QByteArray(1500, '9'));
        QCOMPARE(l.immuneIPTop(), 0);
        QCOMPARE(boxes.shown(), (QStringList{u"Use 'Force Kick' when the status command does not return all the player's names "
                                             "on the server. Rather than check the player list for banned names, force kick sends "
                                             "a kick command to the server whether the player is in the server's list or not."_s,
                                             u"Error saving changes to immuneIP.txt: File too large. The list on disk is unchanged."_s}));
    }

    void announcement()
    {
        WindowWorld w;
        const QString file = w.env.workDir() + u"servmsg.txt"_s;
        TestEnv::writeFile(file, "old\r\n"_ba);
        Settings &s = w.settings();
        s.lngAnnounce = 0;
        Announcer &a = w.engine.announcer();
        const auto save = [&](const std::function<void(frmAnnounce &)> &body) {
            return accepted<frmAnnounce>(w, "mnuAnnounce", body, u"cmdOkay"_s);
        };
        const QString rule = u"cboAnnounce fraSequence optRandom optSequential lblAnnounce txtAnnounce"_s;
        Boxes boxes;
        QStringList seen;
        QVERIFY(whileOpen<frmAnnounce>([&] { QTest::keyClick(&w.window, Qt::Key_A, Qt::ControlModifier); }, [&](frmAnnounce &d) {
            QVERIFY(whileOpen<frmGameCodes>([&] { press(d, u"cmdGameCodes"_s); }));
            seen << d.windowTitle() << text(control(d, u"cboAnnounce"_s)) << enabled(d, rule);
            press(d, u"chkAnnounce"_s);
            press(d, u"optSequential"_s);
            type(control(d, u"cboAnnounce"_s), u" 10 minutes [Tab]"_s);
            seen << control<QPlainTextEdit>(d, u"txtAnnounce"_s)->toPlainText() << enabled(d, rule);
            type(control(d, u"txtAnnounce"_s), u"one[Return][Return]two[Tab]"_s);
            seen << QApplication::focusWidget()->objectName(); // Tab goes on to the interval
            press(d, u"cmdOkay"_s);
        }));
        QCOMPARE(seen, QStringList({u"QVN - Announcement"_s, u"2 minutes"_s, u"000001"_s, u"old\n"_s, u"111111"_s, u"cboAnnounce"_s}));
        QCOMPARE(TestEnv::readFile(file), "one\r\n\r\ntwo"_ba); // as typed, blank line kept
        // Armed, although the engine is stopped.
        QVERIFY(s.intAnnouce == 1 && !s.MsgRandom && s.lngAnnounce == 10 && a.timAnnounce.isActive());
        QCOMPARE(w.engine.lists().serverMessageTop(), 1);
        QCOMPARE(boxes.shown(), QStringList{u"Announcements will be sent as soon as you click Start on the main screen."_s});

        // Saved again while on, the interval as shown: the count goes on, the sequence starts
        // again. Each item picked stores its minutes; a typed text that is no item counts as 2.
        a.announceTicks = 1, w.engine.lists().nextMessage = 1;
        QVERIFY(save([&](frmAnnounce &d) { seen << text(control(d, u"cboAnnounce"_s)); }));
        QVERIFY(a.timAnnounce.isActive() && a.announceTicks == 1 && w.engine.lists().nextMessage == 0);
        QCOMPARE(seen.last() + u' ' + QString::number(s.lngAnnounce), u"10 minutes 10"_s);
        QList<qint32> minutes;
        QStringList picks{u"5 MINUTES[Tab]"_s, u"10 minute[Tab]"_s};
        for (int i = 0; i < 6; ++i)
            picks << u"[Up]"_s.repeated(5) + u"[Down]"_s.repeated(i) + u"[Tab]"_s;
        for (const QString &typed : picks)
            minutes << (save([&](frmAnnounce &d) { type(control(d, u"cboAnnounce"_s), typed); }) ? s.lngAnnounce : -1);
        QCOMPARE(minutes, QList<qint32>({2, 2, 1, 2, 3, 4, 5, 10}));
        { // switched off: stopped, the count cleared; a folder that takes no new file still gets the text
            FolderWithoutWrite locked(w.env.workDir());
            QVERIFY(save([](frmAnnounce &d) { press(d, u"chkAnnounce"_s), type(control(d, u"txtAnnounce"_s), u"three"_s); }));
        }
        QVERIFY(!a.timAnnounce.isActive() && a.announceTicks == 0 && s.intAnnouce == 0);
        QCOMPARE(TestEnv::readFile(file), "three"_ba);
    }

    // The log opens and closes at OK, the level follows the button clicked, also through a
    // Cancel; port and delay are taken when they are numbers, every port a socket can bind. The
    // server-only box shows the setting; OK keeps its turn and Cancel does not.
    void settingsLogAndLink()
    {
        WindowWorld w;
        Settings &s = w.settings();
        const QString logFile = w.env.workDir() + u"servlog.txt"_s;
        QString shown;
        const auto ok = [&](const QString &port, const QString &delay, const QString &clicks = {}, const QString &accept = u"cmdOK"_s) {
            return accepted<frmSettings>(w, "mnuSettings", [&](frmSettings &d) {
                shown += enabled(d, u"optBrief optVerbose drvDrive"_s) + u' ' + text(control(d, u"txtLocalPort"_s)) + u' '
                    + text(control(d, u"txtCommandDelay"_s)) + u' '
                    + QString::number(control<QCheckBox>(d, u"chkServerOnly"_s)->isChecked()) + u' ';
                for (const QString &name : clicks.split(u' ', Qt::SkipEmptyParts))
                    press(d, name);
                type(control(d, u"txtLocalPort"_s), port + u"[Tab]"_s);
                type(control(d, u"txtCommandDelay"_s), delay + u"[Tab]"_s);
            }, accept);
        };
        QVERIFY(ok(u"40000"_s, u"soon"_s, u"chkLog optBrief chkServerOnly"_s));
        QVERIFY(s.SaveLog && w.engine.log().logOpen() && s.LogBrief && s.LocalPort == 40000 && s.CommandDelay == 1.0 && !s.ServerOnly);
        QVERIFY(ok(u"port"_s, u" 0.25"_s, u"optVerbose chkLog chkServerOnly"_s));
        QVERIFY(!s.SaveLog && !w.engine.log().logOpen() && !s.LogBrief && s.LocalPort == 40000 && s.CommandDelay == 0.25 && s.ServerOnly);
        QVERIFY(TestEnv::readFile(logFile).contains("Logging Started on ") && TestEnv::readFile(logFile).contains("Logging Completed on "));
        QVERIFY(ok(u"1"_s, u"1"_s, u"chkLog optBrief chkServerOnly"_s, {})); // a click on Brief counts at once, and Cancel keeps it
        QVERIFY(s.LogBrief && !s.SaveLog && s.LocalPort == 40000 && s.ServerOnly);
        QCOMPARE(shown, u"000 1247 1 1 110 40000 1 0 000 40000 0.25 1 "_s);
        Boxes boxes;
        QList<qint32> ports;
        for (const QString &port : {u"65535"_s, u"65536"_s, u"-32768"_s, u"-32769"_s})
            ports << (ok(port, u"1"_s) ? s.LocalPort : 0);
        QCOMPARE(ports, QList<qint32>({65535, 65535, -32768, -32768}));
        QVERIFY(s.LogBrief && !s.SaveLog); // an OK without a click keeps the level
        QCOMPARE(boxes.shown(), QStringList(2, u"The local port must be a number from -32768 to 65535."_s));
    }

    void kick_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("row"); // -1: nothing chosen; 2 and 3 are the blank rows below the players
        QTest::addColumn<QString>("box"); // empty: the player is kicked
        const QString kick = u"Please specify a player to kick"_s, kickBan = u"Please specify a player to kick & ban"_s;
        for (const char *control : {"cmdKick", "mnuKick", "cmdKickBan", "mnuKickBan"})
            QTest::newRow(control) << QString::fromLatin1(control) << 1 << QString();
        QTest::newRow("kick, nothing") << u"cmdKick"_s << -1 << kick;
        QTest::newRow("kick, blank row") << u"mnuKick"_s << 2 << kick;
        QTest::newRow("kick and ban, nothing") << u"mnuKickBan"_s << -1 << kickBan;
        QTest::newRow("kick and ban, last blank row") << u"cmdKickBan"_s << 3 << kickBan;
    }

    // Sent at once, the words first; the ban of Kick and Ban ignores BanFor and the Ban switch.
    void kick()
    {
        QFETCH(QString, control);
        QFETCH(int, row);
        QFETCH(QString, box);
        Rig rig;
        auto *grid = rig.w.child<QTableWidget>("gridPlayers");
        if (row >= 0)
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(grid->model()->index(row, 2)).center());
        Boxes boxes;
        rig.trigger(control);
        const bool kicked = box.isEmpty(), bans = kicked && control.endsWith(u"Ban");
        QCOMPARE(boxes.shown(), kicked ? QStringList() : QStringList{box});
        QTest::qWait(20);
        const Wire sent{"say [Quorvane]: Kicked Kestrel for [reason unspecified - admin initiated kick].", "clientkick 5"};
        QCOMPARE(rig.wire(), kicked ? sent : Wire{});
        QCOMPARE(rig.sim.players().size(), kicked ? 1 : 2);
        QCOMPARE(grid->item(0, 6)->text() + u' ' + grid->item(1, 6)->text(),
                 kicked ? u"Ok Kicked ([reason unspecified - admin initiated kick])"_s : u"Ok Ok"_s);
        QCOMPARE(rig.file("banned.txt") + rig.file("bannedIP.txt"), bans ? "Kestrel\r\n198.51.100.7\r\n"_ba : QByteArray());
        QCOMPARE(rig.e.stats.bankicks * 10 + rig.e.stats.banadds, kicked ? (bans ? 11 : 10) : 0);
    }

    // The typed command goes out bare; a typed clientkick can lead to a ban of that slot.
    void otherCommand_data()
    {
        QTest::addColumn<Typed>("k"); // how: B, Ban on; Y, answer Yes; E, Enter, not Send; D, a drain under way; S, started
        const QString q = u"Do you want to ban Kestrel?"_s;
        QTest::newRow("ban answered yes") << Typed{u"clientkick 5"_s, u"BY"_s, "clientkick 5"_ba, q, true};
        QTest::newRow("by Enter, engine running") << Typed{u"clientkick 5 "_s, u"BYES"_s, "clientkick 5"_ba, q, true};
        QTest::newRow("ban answered no") << Typed{u"clientkick 5"_s, u"B"_s, "clientkick 5"_ba, q, false};
        QTest::newRow("ban switch off") << Typed{u"clientkick 5"_s, u"Y"_s, "clientkick 5"_ba, {}, false};
        QTest::newRow("no such slot") << Typed{u"clientkick 4"_s, u"BY"_s, "clientkick 4"_ba, {}, false};
        QTest::newRow("beyond 16 bits") << Typed{u"clientkick 65541"_s, u"BY"_s, "clientkick 65541"_ba, {}, false};
        QTest::newRow("not a number") << Typed{u"clientkick abc"_s, u"BY"_s, "clientkick abc"_ba, {}, false};
        QTest::newRow("leading blanks") << Typed{u"  clientkick 5"_s, u"BY"_s, "clientkick 5"_ba, {}, false};
        QTest::newRow("longer word") << Typed{u"clientkickX 5"_s, u"BYE"_s, "clientkickX 5"_ba, {}, false};
        QTest::newRow("blanks only") << Typed{u"   "_s, u"BY"_s, {}, {}, false};
        QTest::newRow("queue draining") << Typed{u"say hi"_s, u"D"_s, {}, u"Unable to send command: Server Queue"_s, false};
    }

    void otherCommand()
    {
        QFETCH(Typed, k);
        Rig rig;
        rig.w.settings().Ban = k.how.contains(u'B'), rig.w.settings().CheckInt = 60000;
        rig.w.settings().BanFor = 10; // no kick reason of the typed command would ban by itself
        if (k.how.contains(u'S'))
            rig.trigger(u"cmdStart"_s); // stopped while the dialog stands, started again after it
        QVERIFY(whileOpen<frmOther>([&] { rig.trigger(u"mnuOther"_s); }, [&](frmOther &d) {
            QVERIFY(!rig.e.engineRunning());
            auto *box = control<QLineEdit>(d, u"txtCommand"_s);
            box->setFocus();
            QTest::keyClicks(box, k.typed);
            rig.w.prompts.setNextAnswer(k.how.contains(u'Y') ? QMessageBox::Yes : k.how.contains(u'D') ? QMessageBox::Ok : QMessageBox::No);
            const auto send = [&] {
                if (k.how.contains(u'E')) {
                    QTest::keyPress(box, Qt::Key_Return);
                    QVERIFY(d.isVisible()); // not on the key going down
                    QTest::keyRelease(box, Qt::Key_Return);
                } else {
                    press(d, u"cmdSend"_s);
                }
            };
            if (k.how.contains(u'D'))
                whileDraining(rig.e, rig.w.clock, send); // as during an announcement's drain
            else
                send();
            QVERIFY(!d.isVisible());
        }));
        Wire wire = rig.wire();
        wire.removeAll("status"); // the start's and the restart's own
        QCOMPARE(wire, k.sent.isEmpty() ? Wire{} : Wire{k.sent});
        QCOMPARE(rig.w.prompts.lastText(), k.box);
        QCOMPARE(rig.file("banned.txt") + QByteArray::number(rig.e.stats.banadds), k.banned ? "Kestrel\r\n1"_ba : "0"_ba);
        QCOMPARE(rig.e.engineRunning(), k.how.contains(u'S'));
    }
};

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
