// SPDX-License-Identifier: MIT
// The tolerances dialog, opened from the window and driven through its controls.
#include "DialogDriver.h"
#include "WindowWorld.h"
#include "ui/EditFileDialog.h"
#include "ui/ToleranceDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

class TestTolerances : public QObject
{
    Q_OBJECT

    // Opens the dialog from its menu entry, lets `body` work on it, and presses Okay.
    static bool okay(WindowWorld &w, const std::function<void(frmTolerance &)> &body)
    {
        return whileOpen<frmTolerance>([&] { w.child<QAction>("mnuTolerance")->trigger(); },
                                       [&](frmTolerance &d) {
                                           body(d);
                                           if (d.isVisible())
                                               d.findChild<QPushButton *>(u"cmdOkay"_s)->click();
                                       });
    }
    template<typename T>
    static T *control(QWidget &d, const char *name)
    {
        return d.findChild<T *>(QLatin1String(name));
    }
    static void type(QWidget &d, const char *name, const QString &text)
    {
        if (auto *combo = control<QComboBox>(d, name))
            combo->setCurrentText(text);
        else
            control<QLineEdit>(d, name)->setText(text);
    }

private Q_SLOTS:
    void opensFromShortcutOnlyWhileStopped()
    {
        WindowWorld w;
        w.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w.window));
        QString caption;
        QVERIFY(whileOpen<frmTolerance>([&] { QTest::keyClick(&w.window, Qt::Key_T, Qt::ControlModifier); },
                                        [&](frmTolerance &d) { caption = d.windowTitle(); }));
        QCOMPARE(caption, u"QVN - Tolerances"_s);
        w.window.setEnabled(View::Control::mnuOptions, false); // as Start leaves it
        QVERIFY(!whileOpen<frmTolerance>([&] { QTest::keyClick(&w.window, Qt::Key_T, Qt::ControlModifier); }));
    }

    // A fresh store's values as shown, the three boxes nobody can tick, the repair of Passes.
    void loadAndStore()
    {
        WindowWorld w;
        Settings &s = w.settings();
        s.KickTK = s.KickTeleFrag = true;
        s.PingPasses = 7;
        s.BanDuration = 14;
        QStringList shown, items;
        QList<bool> enabled;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            for (const char *name : {"txtKickScore", "txtMaxPing", "txtScanInt", "txtBanDuration"})
                shown << control<QLineEdit>(d, name)->text();
            for (const char *name : {"cboBanType", "cboBanFor", "cboStatusInterval", "cboPasses"})
                shown << control<QComboBox>(d, name)->currentText();
            for (const char *name : {"cboBanFor", "cboStatusInterval", "cboWarning", "cboPasses"})
                for (int i = 0; i < control<QComboBox>(d, name)->count(); ++i)
                    items << control<QComboBox>(d, name)->itemText(i);
            for (const char *name : {"chkWarn", "chkEnableTK", "chkKickTelefrag", "txtBanDuration", "Label2"})
                enabled << control<QWidget>(d, name)->isEnabled();
            QVERIFY(!control<QCheckBox>(d, "chkEnableTK")->isChecked());
        }));
        QCOMPARE(shown, QStringList({u"-3"_s, u"750"_s, u"20"_s, u"14"_s, u"IP and Name"_s, u"TKing only"_s,
                                     u"second"_s, u"2"_s}));
        QCOMPARE(items, QStringList({u"TKing only"_s, u"Having bad word in name"_s, u"TKing & bad words"_s,
                                     u"Impersonating"_s, u"Banish all kicked players"_s, u"single"_s, u"second"_s,
                                     u"third"_s, u"fourth"_s, u"fifth"_s, u"tenth"_s, u"I am watching you %name%."_s,
                                     u"Cut the TKing crap, %name%."_s,
                                     u"Check your fire, %name%. You have a negative score."_s, u"1"_s, u"2"_s,
                                     u"3"_s, u"4"_s, u"5"_s, u"6"_s}));
        QCOMPARE(enabled, QList<bool>({false, false, false, false, true}));
        QVERIFY(!s.KickTK && !s.KickTeleFrag);
        QCOMPARE(s.BanDuration, 14); // shown greyed, stored back as it was
        QCOMPARE(s.PingPasses, 2);
        s.PingPasses = 9;
        s.CheckInt = 2000000000; // far out of range, still shown in whole seconds
        QString scan;
        QVERIFY(whileOpen<frmTolerance>([&] { w.child<QAction>("mnuTolerance")->trigger(); },
                                        [&](frmTolerance &d) { scan = control<QLineEdit>(d, "txtScanInt")->text(); }));
        QCOMPARE(s.PingPasses, 2); // the repair at load stands, Cancel or not
        QCOMPARE(scan, u"2000000"_s);
    }

    void stored_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("key");
        QTest::addColumn<qint32>("stored"); // the default where the entry is refused
        QTest::addColumn<QString>("box");
        QTest::addColumn<bool>("closes");
        const auto row = [](const char *name, const char *control, const QString &typed, const char *key, qint32 v,
                            const QString &box = {}, bool closes = true) {
            QTest::newRow(name) << QString::fromLatin1(control) << typed << QString::fromLatin1(key) << v << box
                                << closes;
        };
        row("ban type item", "cboBanType", u"Name"_s, "BanType", 2);
        row("ban type trimmed", "cboBanType", u"  IP  "_s, "BanType", 1);
        row("ban type case", "cboBanType", u"ip"_s, "BanType", 0);
        row("ban for item", "cboBanFor", u"Impersonating"_s, "BanFor", 1000);
        row("ban for untrimmed", "cboBanFor", u" Impersonating"_s, "BanFor", 10);
        row("interval item", "cboStatusInterval", u"tenth"_s, "StatusInterval", 10);
        row("interval case", "cboStatusInterval", u"Tenth"_s, "StatusInterval", 2);
        row("passes as typed", "cboPasses", u"9"_s, "PingPasses", 9);
        row("pause negative", "txtTellPause", u"-5"_s, "TellPause", 0);
        row("pause negative beyond", "txtTellPause", u"-40000"_s, "TellPause", 0);
        row("pause letters", "txtTellPause", u"soon"_s, "TellPause", 0);
        row("pause at 16 bits", "txtTellPause", u"32767"_s, "TellPause", 32767);
        row("pause beyond", "txtTellPause", u"32768"_s, "TellPause", 0,
            u"The wait before kicking must be a number from 0 to 32767."_s, false);
        row("ping at 16 bits", "txtMaxPing", u"-32768"_s, "MaxPing", -32768);
        row("ping beyond", "txtMaxPing", u"32768"_s, "MaxPing", 750,
            u"Max Ping must be a number from -32768 to 32767."_s, false);
        row("passes letters", "cboPasses", u"three"_s, "PingPasses", 3,
            u"Passes must be a number from -32768 to 32767."_s, false);
        row("qport at 32 bits", "txtQPortMax", u" 2147483647 "_s, "QPortMax", 2147483647);
        row("qport beyond", "txtQPortMax", u"2147483648"_s, "QPortMax", 0,
            u"The highest QPort must be a number from -2147483648 to 2147483647."_s, false);
        const QString reset = u"The timer's range is 5 to 60 seconds. Resetting to 30 seconds."_s;
        row("scan low end", "txtScanInt", u"5"_s, "CheckInt", 5000);
        row("scan high end", "txtScanInt", u"60"_s, "CheckInt", 60000);
        row("scan half to even", "txtScanInt", u"60.5"_s, "CheckInt", 60000);
        row("scan above", "txtScanInt", u"61"_s, "CheckInt", 30000, reset);
        row("scan below", "txtScanInt", u"4.5"_s, "CheckInt", 30000, reset);
        row("scan letters", "txtScanInt", u"ten"_s, "CheckInt", 30000, reset);
        // Leaving the box checks it at once: a refusal resets it to 5 seconds.
        const QString range = u"The range for scanning is 5 to 60 seconds."_s;
        row("scan left at 60", "txtScanInt", u"60\t"_s, "CheckInt", 60000);
        row("scan left at 4", "txtScanInt", u"4\t"_s, "CheckInt", 5000, range);
        row("scan left beyond 32 bits", "txtScanInt", u"99999999999\t"_s, "CheckInt", 5000, range);
    }

    // What Okay stores of typed text (a tab leaves the box); a refused entry keeps the
    // dialog open with the cursor in it and stores nothing.
    void stored()
    {
        QFETCH(QString, name);
        QFETCH(QString, typed);
        QFETCH(QString, key);
        QFETCH(qint32, stored);
        QFETCH(QString, box);
        QFETCH(bool, closes);
        WindowWorld w;
        w.settings().StatusInterval = 5;
        Boxes boxes;
        bool open = false;
        QVERIFY(whileOpen<frmTolerance>([&] { w.child<QAction>("mnuTolerance")->trigger(); }, [&](frmTolerance &d) {
            control<QCheckBox>(d, "chkQPort")->click();
            QWidget *entry = control<QWidget>(d, name.toLatin1().constData());
            entry->setFocus();
            type(d, name.toLatin1().constData(), QString(typed).remove(u'\t'));
            if (typed.endsWith(u'\t'))
                QTest::keyClick(entry, Qt::Key_Tab);
            d.findChild<QPushButton *>(u"cmdOkay"_s)->click();
            open = d.isVisible();
            QVERIFY(!open || entry->hasFocus());
        }));
        const Settings &s = w.settings();
        const QHash<QString, qint32> now{{u"BanType"_s, s.BanType},       {u"BanFor"_s, s.BanFor},
                                         {u"StatusInterval"_s, s.StatusInterval}, {u"PingPasses"_s, s.PingPasses},
                                         {u"TellPause"_s, s.TellPause},   {u"MaxPing"_s, s.MaxPing},
                                         {u"QPortMax"_s, s.QPortMax},     {u"CheckInt"_s, s.CheckInt}};
        QCOMPARE(now.value(key), stored);
        QCOMPARE(boxes.shown(), box.isEmpty() ? QStringList() : QStringList{box});
        QCOMPARE(open, !closes);
        QCOMPARE(s.QPort, closes); // nothing is stored while the dialog stays
        QCOMPARE(w.window.engine().timKickcheck.interval(), closes ? s.CheckInt : 0);
        if (key != u"StatusInterval")
            QCOMPARE(s.StatusInterval, 5);
    }

    void enablingRules_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("dependents");
        QTest::newRow("ban") << u"chkBan"_s << u"cboBanType lblBanish lblBanishFor cboBanFor"_s;
        QTest::newRow("kick") << u"chkKick"_s << u"chkForceKick chkTellPlayers txtTellPause lblTellPause1 lblTellPause2"_s;
        QTest::newRow("ping") << u"chkKickPing"_s << u"txtMaxPing lblPing cboPasses lblPasses chkSkipMap"_s;
        QTest::newRow("qport") << u"chkQPort"_s << u"lblQPortMin lblQPortMax txtQPortMin txtQPortMax"_s;
        QTest::newRow("rate") << u"chkRate"_s << u"lblRateMin lblRateMax txtRateMin txtRateMax"_s;
    }

    // Each click sets the dependents to the box's state; greyed boxes are stored as they stand.
    void enablingRules()
    {
        QFETCH(QString, box);
        QFETCH(QString, dependents);
        WindowWorld w;
        w.settings().ForceKick = true;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            auto *check = control<QCheckBox>(d, box.toLatin1().constData());
            for (int click = 0; click < 2; ++click) {
                QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
                for (const QString &name : dependents.split(u' '))
                    QVERIFY2(control<QWidget>(d, name.toLatin1().constData())->isEnabled() == check->isChecked(),
                             qPrintable(name));
                QVERIFY(!control<QWidget>(d, "txtBanDuration")->isEnabled());
                QVERIFY(control<QWidget>(d, "cmdEditBan")->isEnabled() && control<QWidget>(d, "txtScanInt")->isEnabled());
            }
            control<QCheckBox>(d, "chkKick")->setChecked(false);
        }));
        QVERIFY(w.settings().ForceKick && w.settings().TellPlayers && !w.settings().KickBanned);
    }

    void helpAndListEditors()
    {
        WindowWorld w;
        for (const char *name : {"banned.txt", "bannedIP.txt", "immuneIP.txt", "badnames.txt"})
            TestEnv::writeFile(w.env.workDir() + QLatin1String(name), QByteArray(name) + "\r\n");
        Boxes boxes;
        QStringList seen;
        QVERIFY(whileOpen<frmTolerance>([&] { w.child<QAction>("mnuTolerance")->trigger(); }, [&](frmTolerance &d) {
            d.findChild<QPushButton *>(u"cmdForceKickHelp"_s)->click();
            for (const char *button : {"cmdEditBan", "cmdEditIP", "cmdEditImmune", "cmdEditBadWords"})
                QVERIFY(whileOpen<frmEditFile>([&] { d.findChild<QPushButton *>(QLatin1String(button))->click(); },
                                               [&](frmEditFile &e) {
                                                   seen << e.windowTitle()
                                                        << frmEditFile::plainText(*e.findChild<QPlainTextEdit *>());
                                               }));
        }));
        QCOMPARE(boxes.shown(), QStringList{frmTolerance::forceKickHelp});
        QVERIFY(frmTolerance::forceKickHelp.startsWith(u"Use 'Force Kick' when the status command does not return"));
        QCOMPARE(seen, QStringList({u"QVN - Editing Banned Names"_s, u"banned.txt\n"_s, u"QVN - Editing Banned IPs"_s,
                                    u"bannedIP.txt\n"_s, u"QVN - Editing Immune IPs"_s, u"immuneIP.txt\n"_s,
                                    u"QVN - Editing Bad Names"_s, u"badnames.txt\n"_s}));
    }
};

QTEST_MAIN(TestTolerances)
#include "tst_tolerances.moc"
