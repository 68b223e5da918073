// SPDX-License-Identifier: MIT
// The tolerances, announcement, settings, about and list editor dialogs, opened from the
// window and driven through their controls.
#include "DialogDriver.h"
#include "WindowWorld.h"
#include "ui/AboutDialog.h"
#include "ui/AnnounceDialog.h"
#include "ui/EditFileDialog.h"
#include "ui/GameCodesDialog.h"
#include "ui/Prompts.h"
#include "ui/SettingsDialog.h"
#include "ui/ToleranceDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileSystemModel>
#include <QPlainTextEdit>
#include <QTreeView>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// Opens a dialog from its menu entry, lets `body` work on it, and presses `accept` if it
// still stands (an empty name: the dialog is cancelled).
template<typename D>
bool accepted(WindowWorld &w, const char *entry, const std::function<void(D &)> &body, const QString &accept)
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

// What a text box or an editable combo box shows, and typing into either.
QString text(QWidget *box)
{
    const QVariant combo = box->property("currentText");
    return combo.isValid() ? combo.toString() : box->property("text").toString();
}
void type(QWidget *box, const QString &typed)
{
    box->setProperty(box->property("currentText").isValid() ? "currentText" : "text", typed);
}

struct Entry { QString control, typed; qint32 Settings::*setting; qint32 stored; QString box; };

} // namespace

Q_DECLARE_METATYPE(Entry)

class TestDialogs : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openUrl(const QUrl &url) { m_opened = url; }

private Q_SLOTS:
    // A fresh store as shown; codes without an item open on the fallback texts and store
    // the fallback numbers; the boxes nobody can tick; the repair of Passes, Cancel or not.
    void tolerancesShown()
    {
        WindowWorld w;
        Settings &s = w.settings();
        s.KickTK = s.KickTeleFrag = true;
        s.PingPasses = 7;
        s.BanDuration = 14;
        QStringList shown;
        const QStringList boxes{u"txtKickScore"_s, u"txtMaxPing"_s, u"txtScanInt"_s,       u"txtBanDuration"_s,
                                u"cboBanType"_s,   u"cboBanFor"_s,  u"cboStatusInterval"_s, u"cboPasses"_s};
        QVERIFY(okay(w, [&](frmTolerance &d) {
            shown << d.windowTitle();
            for (const QString &name : boxes)
                shown << text(control(d, name));
            for (const char *name : {"chkWarn", "chkEnableTK", "chkKickTelefrag", "txtKickScore", "lblScoreTolerance"})
                QVERIFY2(!control(d, QLatin1String(name))->isEnabled(), name);
            QVERIFY(control(d, u"Label2"_s)->isEnabled() && !control<QCheckBox>(d, u"chkEnableTK"_s)->isChecked());
        }));
        QCOMPARE(shown, QStringList({u"QVN - Tolerances"_s, u"-3"_s, u"750"_s, u"20"_s, u"14"_s, u"IP and Name"_s,
                                     u"TKing only"_s, u"second"_s, u"2"_s}));
        QVERIFY(!s.KickTK && !s.KickTeleFrag && s.BanDuration == 14 && s.PingPasses == 2);

        s.PingPasses = 0, s.BanType = 7, s.BanFor = 5, s.StatusInterval = 7;
        s.CheckInt = 2000000000; // far out of range, still shown in whole seconds
        shown.clear();
        QVERIFY(okay(w, [&](frmTolerance &d) {
            for (const QString &name : boxes.mid(2))
                shown << text(control(d, name));
            type(control(d, u"txtScanInt"_s), u"20"_s);
        }));
        QCOMPARE(shown, QStringList({u"2000000"_s, u"14"_s, u""_s, u"TKing only"_s, u"second"_s, u"2"_s}));
        QCOMPARE(QList<qint32>({s.BanType, s.BanFor, s.StatusInterval, s.PingPasses}), QList<qint32>({0, 10, 2, 2}));
        s.PingPasses = 9;
        QVERIFY(okay(w, [](frmTolerance &) {}, {}));
        QCOMPARE(s.PingPasses, 2);
    }

    // Each item, picked from its list, stores its number.
    void tolerancesItems()
    {
        WindowWorld w;
        const QList<std::pair<const char *, qint32 Settings::*>> combos{
            {"cboBanType", &Settings::BanType}, {"cboBanFor", &Settings::BanFor},
            {"cboStatusInterval", &Settings::StatusInterval}, {"cboPasses", &Settings::PingPasses}};
        QStringList stored;
        for (const auto &[combo, setting] : combos) {
            QString numbers;
            for (int i = 0, count = 1; i < count; ++i) {
                QVERIFY(okay(w, [&](frmTolerance &d) {
                    auto *box = control<QComboBox>(d, QLatin1String(combo));
                    count = box->count();
                    box->setCurrentIndex(i);
                }));
                numbers += QString::number(w.settings().*setting) + u' ';
            }
            stored << numbers.trimmed();
        }
        QCOMPARE(stored, QStringList({u"1 2 3"_s, u"10 1 11 1000 100"_s, u"1 2 3 4 5 10"_s, u"1 2 3 4 5 6"_s}));
    }

    void tolerancesStored_data()
    {
        QTest::addColumn<Entry>("k"); // a tab behind the text: the cursor leaves the box
        const auto row = [](const char *control, const QString &typed, qint32 Settings::*setting, qint32 v, const QString &box = {}) {
            QTest::addRow("%s '%s'", control, qPrintable(typed)) << Entry{QLatin1String(control), typed, setting, v, box};
        };
        using S = Settings;
        row("cboBanType", u"  IP  "_s, &S::BanType, 1); // the one coded box compared trimmed
        row("cboBanType", u"ip"_s, &S::BanType, 0);
        row("cboBanFor", u" Impersonating"_s, &S::BanFor, 10);
        row("cboStatusInterval", u"tenth "_s, &S::StatusInterval, 2);
        row("cboPasses", u"9"_s, &S::PingPasses, 9);
        row("txtTellPause", u"-5"_s, &S::TellPause, 0);
        row("txtTellPause", u"soon"_s, &S::TellPause, 0);
        row("txtTellPause", u"32767"_s, &S::TellPause, 32767);
        // Refused: the dialog stays with the cursor in the box, and nothing is stored.
        row("txtTellPause", u"32768"_s, &S::TellPause, 0, u"The wait before kicking must be a number from 0 to 32767."_s);
        row("txtMaxPing", u"-32768"_s, &S::MaxPing, -32768);
        row("txtMaxPing", u"32768"_s, &S::MaxPing, 750, u"Max Ping must be a number from -32768 to 32767."_s);
        row("txtQPortMax", u" 2147483647 "_s, &S::QPortMax, 2147483647);
        row("txtQPortMax", u"2147483648"_s, &S::QPortMax, 0, u"The highest QPort must be a number from -2147483648 to 2147483647."_s);
        const QString reset = u"The timer's range is 5 to 60 seconds. Resetting to 30 seconds."_s;
        row("txtScanInt", u"61"_s, &S::CheckInt, 30000, reset);
        row("txtScanInt", u"4.5"_s, &S::CheckInt, 30000, reset); // halves to even
        const QString range = u"The range for scanning is 5 to 60 seconds."_s; // and the box says 5
        row("txtScanInt", u"5\t"_s, &S::CheckInt, 5000);
        row("txtScanInt", u"60\t"_s, &S::CheckInt, 60000);
        row("txtScanInt", u"4\t"_s, &S::CheckInt, 5000, range);
        row("txtScanInt", u"61\t"_s, &S::CheckInt, 5000, range);
        row("txtScanInt", u"99999999999\t"_s, &S::CheckInt, 5000, range);
    }

    void tolerancesStored()
    {
        QFETCH(Entry, k);
        WindowWorld w;
        w.settings().StatusInterval = 5;
        Boxes boxes;
        bool open = false;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            press(d, u"chkQPort"_s);
            QWidget *entry = control(d, k.control);
            entry->setFocus();
            type(entry, QString(k.typed).remove(u'\t'));
            if (k.typed.endsWith(u'\t'))
                QTest::keyClick(entry, Qt::Key_Tab);
            press(d, u"cmdOkay"_s);
            open = d.isVisible();
            QVERIFY(!open || entry->hasFocus());
            d.reject();
        }));
        const Settings &s = w.settings();
        QCOMPARE(s.*k.setting, k.stored);
        QCOMPARE(boxes.shown(), k.box.isEmpty() ? QStringList() : QStringList{k.box});
        QCOMPARE(open, k.box.contains(u"must be a number"_s));
        QCOMPARE(s.QPort, !open);
        QCOMPARE(w.window.engine().timKickcheck.interval(), open ? 0 : s.CheckInt);
        QCOMPARE(s.StatusInterval, k.setting == &Settings::StatusInterval ? 2 : 5);
    }

    // Every box ticked by the mouse once: the dependents follow at load and at the click,
    // and Okay stores each control into its own setting, greyed ones as they stand.
    void tolerancesEveryControl()
    {
        WindowWorld w;
        const QList<std::pair<const char *, const char *>> boxes{
            {"chkBan", "cboBanType lblBanish lblBanishFor cboBanFor"},
            {"chkForceKick", ""},
            {"chkTellPlayers", ""},
            {"chkKick", "chkForceKick chkTellPlayers txtTellPause lblTellPause1 lblTellPause2"},
            {"chkSkipMap", ""},
            {"chkKickPing", "txtMaxPing lblPing cboPasses lblPasses chkSkipMap"},
            {"chkQPort", "lblQPortMin lblQPortMax txtQPortMin txtQPortMax"},
            {"chkRate", "lblRateMin lblRateMax txtRateMin txtRateMax"},
            {"chkNameKick", ""},
            {"chkImpersonate", ""}};
        const QStringList typed{u"txtKickScore -7"_s, u"txtBanDuration 3"_s, u"txtMaxPing 600"_s, u"cboPasses 4"_s, u"txtQPortMin 11"_s,
                                u"txtQPortMax 12"_s,  u"txtRateMin 13"_s,    u"txtRateMax 14"_s,  u"txtTellPause 6"_s, u"txtScanInt 15"_s,
                                u"cboWarning Mind your fire, %name%."_s};
        QVERIFY(okay(w, [&](frmTolerance &d) {
            for (const auto &[name, dependents] : boxes) {
                auto *check = control<QCheckBox>(d, QLatin1String(name));
                for (int click = 0; click < 2; ++click) {
                    for (const QString &dep : QString::fromLatin1(dependents).split(u' ', Qt::SkipEmptyParts))
                        QVERIFY2(control(d, dep)->isEnabled() == check->isChecked(), qPrintable(dep));
                    if (click == 0)
                        QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
                }
                QVERIFY(!control(d, u"txtBanDuration"_s)->isEnabled() && control(d, u"cmdEditBan"_s)->isEnabled());
            }
            for (const QString &entry : typed)
                type(control(d, entry.section(u' ', 0, 0)), entry.section(u' ', 1));
        }));
        const Settings &s = w.settings();
        QCOMPARE(QList<bool>({s.Ban, s.ForceKick, s.TellPlayers, s.KickBanned, s.SkipMap, s.KickPing, s.QPort, s.Rate,
                              s.NameCheck, s.KickImpersonators, s.Warn, s.KickTK, s.KickTeleFrag}),
                 QList<bool>({true, true, false, false, false, false, true, true, true, false, false, false, false}));
        QCOMPARE(QList<qint32>({s.TKLimit, s.BanDuration, s.MaxPing, s.PingPasses, s.QPortMin, s.QPortMax, s.RateMin,
                                s.RateMax, s.TellPause, s.CheckInt, w.window.engine().timKickcheck.interval()}),
                 QList<qint32>({-7, 3, 600, 4, 11, 12, 13, 14, 6, 15000, 15000}));
        QCOMPARE(s.WarnTxt, u"Mind your fire, %name%."_s);
    }

    // The help box, and the four lists: each editor shows its file, and Save reloads its table.
    void tolerancesHelpAndLists()
    {
        WindowWorld w;
        for (const char *file : {"banned.txt", "bannedIP.txt", "immuneIP.txt", "badnames.txt"})
            TestEnv::writeFile(w.env.workDir() + QLatin1String(file), QByteArray(file) + "\r\n");
        Boxes boxes;
        QStringList seen;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            press(d, u"cmdForceKickHelp"_s);
            for (const char *button : {"cmdEditBan", "cmdEditIP", "cmdEditImmune", "cmdEditBadWords"})
                QVERIFY(whileOpen<frmEditFile>([&] { press(d, QLatin1String(button)); }, [&](frmEditFile &e) {
                    auto *box = control<QPlainTextEdit>(e, u"txtEdit"_s);
                    seen << e.windowTitle() << box->toPlainText();
                    box->moveCursor(QTextCursor::End);
                    box->insertPlainText(u"x"_s);
                    press(e, u"cmdSave"_s);
                }));
        }, {}));
        QCOMPARE(boxes.shown(), QStringList{u"Use 'Force Kick' when the status command does not return all the player's names on the "
                                            "server. Rather than check the player list for banned names, force kick sends a kick "
                                            "command to the server whether the player is in the server's list or not."_s});
        QCOMPARE(seen, QStringList({u"QVN - Editing Banned Names"_s, u"banned.txt\n"_s, u"QVN - Editing Banned IPs"_s, u"bannedIP.txt\n"_s,
                                    u"QVN - Editing Immune IPs"_s, u"immuneIP.txt\n"_s, u"QVN - Editing Bad Names"_s, u"badnames.txt\n"_s}));
        const ListFiles &l = w.window.engine().lists();
        QCOMPARE(QList<qint32>({l.bannedNameTop(), l.bannedIPTop(), l.immuneIPTop(), l.badNameTop()}), QList<qint32>({1, 1, 1, 1}));
        QCOMPARE(l.badNames().at(1), u"X"_s);
    }

    void announcement()
    {
        WindowWorld w;
        const QString file = w.env.workDir() + u"servmsg.txt"_s;
        TestEnv::writeFile(file, "old\r\n"_ba);
        Settings &s = w.settings();
        s.lngAnnounce = 0;
        Announcer &a = w.window.engine().announcer();
        const auto save = [&](const std::function<void(frmAnnounce &)> &body) {
            return accepted<frmAnnounce>(w, "mnuAnnounce", body, u"cmdOkay"_s);
        };
        const QStringList rule{u"cboAnnounce"_s, u"fraSequence"_s, u"optRandom"_s, u"optSequential"_s, u"lblAnnounce"_s};
        Boxes boxes;
        QStringList seen;
        QVERIFY(save([&](frmAnnounce &d) {
            seen << d.windowTitle() << text(control(d, u"cboAnnounce"_s)) << control<QPlainTextEdit>(d, u"txtAnnounce"_s)->toPlainText();
            QVERIFY(whileOpen<frmGameCodes>([&] { press(d, u"cmdGameCodes"_s); }));
            for (int click = 0; click < 2; ++click) {
                for (const QString &name : rule)
                    QVERIFY2(control(d, name)->isEnabled() == (click == 1), qPrintable(name));
                QVERIFY(control(d, u"txtAnnounce"_s)->isEnabled());
                if (click == 0)
                    press(d, u"chkAnnounce"_s);
            }
            press(d, u"optSequential"_s);
            type(control(d, u"cboAnnounce"_s), u" 10 minutes "_s);
            control<QPlainTextEdit>(d, u"txtAnnounce"_s)->setPlainText(u"one\n\ntwo"_s);
        }));
        QCOMPARE(seen, QStringList({u"QVN - Announcement"_s, u"2 minutes"_s, u"old\n"_s}));
        QCOMPARE(TestEnv::readFile(file), "one\r\n\r\ntwo"_ba); // as typed, blank line kept
        QCOMPARE(w.window.engine().lists().serverMessageTop(), 1);
        QVERIFY(s.intAnnouce == 1 && !s.MsgRandom && s.lngAnnounce == 10);
        QVERIFY(a.timAnnounce.isActive()); // armed, although the engine is stopped
        QCOMPARE(boxes.shown(), QStringList{u"Announcements will be sent as soon as you click Start on the main screen."_s});

        // Saved again while on: the count goes on, the sequence starts again; a typed text
        // that is no item counts as 2, and each item picked stores its minutes.
        a.announceTicks = 1;
        w.window.engine().lists().nextMessage = 1;
        QVERIFY(save([](frmAnnounce &d) { type(control(d, u"cboAnnounce"_s), u"10 minute"_s); }));
        QVERIFY(a.timAnnounce.isActive() && a.announceTicks == 1 && s.lngAnnounce == 2);
        QCOMPARE(w.window.engine().lists().nextMessage, 0);
        QList<qint32> minutes;
        for (int i = 0; i < 6; ++i) {
            QVERIFY(save([i](frmAnnounce &d) { control<QComboBox>(d, u"cboAnnounce"_s)->setCurrentIndex(i); }));
            minutes << s.lngAnnounce;
        }
        QCOMPARE(minutes, QList<qint32>({1, 2, 3, 4, 5, 10}));
        // Switched off: stopped and the count cleared.
        QVERIFY(save([](frmAnnounce &d) { press(d, u"chkAnnounce"_s); }));
        QVERIFY(!a.timAnnounce.isActive() && a.announceTicks == 0 && s.intAnnouce == 0);
    }

    void settingsLogAndLink()
    {
        WindowWorld w;
        Settings &s = w.settings();
        ActivityLog &log = w.window.engine().log();
        const QString logFile = w.env.workDir() + u"servlog.txt"_s;
        Boxes boxes;
        const auto ok = [&](const QString &port, const QString &delay, const QString &click = {}, const QString &accept = u"cmdOK"_s) {
            return accepted<frmSettings>(w, "mnuSettings", [&](frmSettings &d) {
                press(d, u"chkLog"_s);
                type(control(d, u"txtLocalPort"_s), port);
                type(control(d, u"txtCommandDelay"_s), delay);
                if (!click.isEmpty())
                    press(d, click);
            }, accept);
        };
        QVERIFY(whileOpen<frmSettings>([&] { QTest::keyClick(&w.window, Qt::Key_G, Qt::ControlModifier); }, [](frmSettings &d) {
            QVERIFY(!control(d, u"optBrief"_s)->isEnabled() && !control(d, u"drvDrive"_s)->isEnabled());
            QCOMPARE(text(control(d, u"txtCommandDelay"_s)), u"1"_s);
        }));
        QVERIFY(ok(u"2000"_s, u"soon"_s));
        QVERIFY(s.SaveLog && log.logOpen() && s.LocalPort == 2000 && s.CommandDelay == 1.0);
        QVERIFY(TestEnv::readFile(logFile).contains("Logging Started on "));
        QVERIFY(ok(u"port"_s, u" 0.25"_s));
        QVERIFY(!s.SaveLog && !log.logOpen() && s.LocalPort == 2000 && s.CommandDelay == 0.25);
        QVERIFY(TestEnv::readFile(logFile).contains("Logging Completed on "));
        QVERIFY(ok(u"1"_s, u"1"_s, u"optBrief"_s, {})); // a click on Brief counts at once, and Cancel keeps it
        QVERIFY(s.LogBrief && !s.SaveLog && s.LocalPort == 2000);
        QVERIFY(ok(u"32768"_s, u"2"_s, u"cmdOK"_s, {})); // a port beyond 16 bits: nothing is applied
        QVERIFY(!s.SaveLog && s.LocalPort == 2000 && s.CommandDelay == 0.25);
        QCOMPARE(boxes.shown(), QStringList{u"The local port must be a number from -32768 to 32767."_s}); // nothing asked
    }

    void settingsFolder()
    {
        WindowWorld w;
        Settings &s = w.settings();
        const QString work = s.FileLoc;
        QDir(work).mkpath(u"lists"_s);
        QStringList shown;
        const auto choose = [&](QMessageBox::StandardButton answer) {
            Prompts::setNextAnswer(answer);
            return accepted<frmSettings>(w, "mnuSettings", [&](frmSettings &d) {
                auto *tree = control<QTreeView>(d, u"dirDir"_s);
                auto *model = qobject_cast<QFileSystemModel *>(tree->model());
                shown << model->filePath(tree->currentIndex()) + u'/';
                tree->setCurrentIndex(model->index(work + u"lists"_s));
            }, answer == QMessageBox::NoButton ? QString() : u"cmdOK"_s);
        };
        Boxes boxes;
        QVERIFY(choose(QMessageBox::No) && s.FileLoc == work);
        QCOMPARE(boxes.shown(), QStringList{u"The directory ("_s + work + u") was not changed."_s});
        QVERIFY(choose(QMessageBox::Yes) && s.FileLoc == work + u"lists/"_s);
        s.FileLoc = work + u"gone/"_s; // a folder that has gone away opens on the one above it
        QVERIFY(choose(QMessageBox::NoButton));
        QCOMPARE(shown, QStringList({work, work, work}));
    }

    void about()
    {
        WindowWorld w;
        QDesktopServices::setUrlHandler(u"https"_s, this, "openUrl");
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", "/nonexistent");
        Boxes boxes;
        QStringList seen;
        bool stayed = false;
        QVERIFY(accepted<frmAbout>(w, "mnuAbout", [&](frmAbout &d) {
            seen << d.windowTitle() << text(control(d, u"lblTitle"_s)) << text(control(d, u"lblVersion"_s));
            press(d, u"cmdSysInfo"_s);
            stayed = d.isVisible();
            QTest::mouseClick(&d, Qt::LeftButton, {}, control(d, u"lblDescription"_s)->geometry().center());
        }, {}));
        qputenv("PATH", path);
        QDesktopServices::unsetUrlHandler(u"https"_s);
        QCOMPARE(seen, QStringList({u"About Quorvane"_s, u"Quorvane"_s, u"Version 1.2.1"_s}));
        QVERIFY(stayed);
        QCOMPARE(boxes.shown(), QStringList{u"System Information Is Unavailable At This Time"_s});
        QCOMPARE(m_opened, QUrl(u"https://www.ea.com/games/medal-of-honor"_s));
        bool closed = false;
        QVERIFY(accepted<frmAbout>(w, "mnuAbout", [&](frmAbout &d) {
            QTest::keyClick(&d, Qt::Key_Escape);
            closed = !d.isVisible();
        }, {}));
        QVERIFY(closed);
    }

    void listEditor_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("typed"); // put behind the text as it loaded
        QTest::addColumn<QByteArray>("saved");
        QTest::addColumn<qint32>("top");
        const QString b = u"banned.txt"_s;
        QTest::newRow("unchanged") << b << "A\r\nB\r\n"_ba << u""_s << "A\r\nB\r\n"_ba << 1;
        QTest::newRow("no last line end") << b << "A\r\nB"_ba << u"\nC"_s << "A\r\nB\r\nC"_ba << 2;
        QTest::newRow("line feeds kept") << b << "A\nB\n"_ba << u"C"_s << "A\nB\nC"_ba << 2;
        QTest::newRow("latin-1 both ways") << b << "Jos\xe9\xa0X\r\n"_ba << u"\xe9"_s << "Jos\xe9\xa0X\r\n\xe9"_ba << 1;
        QTest::newRow("empty") << b << ""_ba << u"Z"_s << "Z"_ba << 0;
        QTest::newRow("announcements") << u"servmsg.txt"_s << "A\r\n"_ba << u"B"_s << "A\r\nB"_ba << 1;
        QTest::newRow("not reloaded") << u"highping.txt"_s << "A\r\n"_ba << u"B"_s << "A\r\nB"_ba << -1;
    }

    // Save writes what stands in the box and reloads that list's table at once; a list
    // without a table of its own waits for the next start, and says so.
    void listEditor()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, file);
        QFETCH(QString, typed);
        WindowWorld w;
        TestEnv::writeFile(w.env.workDir() + name, file);
        Boxes boxes;
        frmEditFile editor(w.window.engine(), &w.window);
        editor.Edit_File(name, u"Editing"_s);
        QVERIFY(whileOpen<frmEditFile>([&] { editor.exec(); }, [&](frmEditFile &d) {
            auto *box = control<QPlainTextEdit>(d, u"txtEdit"_s);
            box->moveCursor(QTextCursor::End);
            box->insertPlainText(typed);
            press(d, u"cmdSave"_s);
        }));
        QTEST(TestEnv::readFile(w.env.workDir() + name), "saved");
        const ListFiles &l = w.window.engine().lists();
        const bool other = name == u"highping.txt";
        QTEST(name == u"banned.txt" ? l.bannedNameTop() : other ? l.highPingMessageTop() : l.serverMessageTop(), "top");
        QCOMPARE(boxes.shown(), other ? QStringList{u"File has been saved, but Quorvane will not show changes until restarted."_s}
                                      : QStringList());
    }

    // A save that fails leaves the old list whole, says so, and keeps the editor and its text.
    void listEditorSaveFails()
    {
        WindowWorld w;
        const QString path = w.env.workDir() + u"immuneIP.txt"_s;
        TestEnv::writeFile(path, "1.2.3.4\r\n"_ba);
        Boxes boxes;
        bool open = false;
        frmEditFile editor(w.window.engine(), &w.window);
        editor.Edit_File(u"immuneIP.txt"_s, u"Editing Immune IPs"_s);
        QVERIFY(whileOpen<frmEditFile>([&] { editor.exec(); }, [&](frmEditFile &d) {
            auto *box = control<QPlainTextEdit>(d, u"txtEdit"_s);
            box->setPlainText(QString(4000, u'9'));
            const rlimit small{1000, RLIM_INFINITY}; // a disk that takes no more than 1000 bytes a file
            rlimit old{};
            getrlimit(RLIMIT_FSIZE, &old);
            const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &small);
            press(d, u"cmdSave"_s);
            setrlimit(RLIMIT_FSIZE, &old);
            std::signal(SIGXFSZ, oldHandler);
            open = d.isVisible() && box->toPlainText() == QString(4000, u'9');
        }));
        QVERIFY(open);
        QCOMPARE(TestEnv::readFile(path), "1.2.3.4\r\n"_ba);
        QCOMPARE(QDir(w.env.workDir()).entryList({u"immuneIP*"_s}, QDir::Files), QStringList{u"immuneIP.txt"_s});
        QVERIFY(TestEnv::readFile(w.env.workDir() + u"ErrLog.txt"_s).contains("Error saving changes to immuneIP.txt"));
        QCOMPARE(boxes.shown().size(), 1);
        QVERIFY(boxes.shown().at(0).startsWith(u"Error saving changes to immuneIP.txt: "_s));
    }

private:
    QUrl m_opened;
};

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
