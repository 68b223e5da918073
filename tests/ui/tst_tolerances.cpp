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
        QVERIFY(whileOpen<frmTolerance>([&] { w.child<QAction>("mnuTolerance")->trigger(); })); // and Cancel
        QCOMPARE(s.PingPasses, 2); // the repair at load stands
    }

    void stored_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("key");
        QTest::addColumn<qint32>("stored");
        const auto row = [](const char *name, const char *control, const QString &typed, const char *key, qint32 v) {
            QTest::newRow(name) << QString::fromLatin1(control) << typed << QString::fromLatin1(key) << v;
        };
        row("ban type item", "cboBanType", u"Name"_s, "BanType", 2);
        row("ban type trimmed", "cboBanType", u"  IP  "_s, "BanType", 1);
        row("ban type case", "cboBanType", u"ip"_s, "BanType", 0);
        row("ban type empty", "cboBanType", u""_s, "BanType", 0);
        row("ban for item", "cboBanFor", u"Impersonating"_s, "BanFor", 1000);
        row("ban for untrimmed", "cboBanFor", u" Impersonating"_s, "BanFor", 10);
        row("ban for all", "cboBanFor", u"Banish all kicked players"_s, "BanFor", 100);
        row("interval item", "cboStatusInterval", u"tenth"_s, "StatusInterval", 10);
        row("interval case", "cboStatusInterval", u"Tenth"_s, "StatusInterval", 2);
        row("passes typed", "cboPasses", u"9"_s, "PingPasses", 9);
        row("passes rounded", "cboPasses", u"4.5"_s, "PingPasses", 4);
        row("pause", "txtTellPause", u"12"_s, "TellPause", 12);
        row("pause negative", "txtTellPause", u"-5"_s, "TellPause", 0);
        row("pause letters", "txtTellPause", u"soon"_s, "TellPause", 0);
        row("pause at 16 bits", "txtTellPause", u"32767"_s, "TellPause", 32767);
        row("ping at 16 bits", "txtMaxPing", u"-32768"_s, "MaxPing", -32768);
        row("qport max", "txtQPortMax", u" 2147483647 "_s, "QPortMax", 2147483647);
        row("scan low end", "txtScanInt", u"5"_s, "CheckInt", 5000);
        row("scan high end", "txtScanInt", u"60"_s, "CheckInt", 60000);
        row("scan half to even", "txtScanInt", u"60.5"_s, "CheckInt", 60000);
        row("scan above", "txtScanInt", u"61"_s, "CheckInt", 30000);
        row("scan below", "txtScanInt", u"4.5"_s, "CheckInt", 30000);
        row("scan letters", "txtScanInt", u"ten"_s, "CheckInt", 30000);
    }

    // What Okay stores of typed text, never having left the box (so no validation ran).
    void stored()
    {
        QFETCH(QString, control);
        QFETCH(QString, typed);
        QFETCH(QString, key);
        QFETCH(qint32, stored);
        WindowWorld w;
        w.settings().StatusInterval = 5;
        QVERIFY(okay(w, [&](frmTolerance &d) { type(d, control.toLatin1().constData(), typed); }));
        const Settings &s = w.settings();
        const QHash<QString, qint32> now{{u"BanType"_s, s.BanType},       {u"BanFor"_s, s.BanFor},
                                         {u"StatusInterval"_s, s.StatusInterval}, {u"PingPasses"_s, s.PingPasses},
                                         {u"TellPause"_s, s.TellPause},   {u"MaxPing"_s, s.MaxPing},
                                         {u"QPortMax"_s, s.QPortMax},     {u"CheckInt"_s, s.CheckInt}};
        QCOMPARE(now.value(key), stored);
        QCOMPARE(w.window.engine().timKickcheck.interval(), s.CheckInt);
        if (key != u"StatusInterval")
            QCOMPARE(s.StatusInterval, 5);
    }

    void refused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("box");
        QTest::newRow("ping beyond 16 bits") << u"txtMaxPing"_s << u"32768"_s
                                             << u"Max Ping must be a number from -32768 to 32767."_s;
        QTest::newRow("passes letters") << u"cboPasses"_s << u"three"_s
                                        << u"Passes must be a number from -32768 to 32767."_s;
        QTest::newRow("rate beyond 32 bits") << u"txtRateMax"_s << u"2147483648"_s
                                             << u"The highest Rate must be a number from -2147483648 to 2147483647."_s;
        QTest::newRow("pause beyond 16 bits") << u"txtTellPause"_s << u"32768"_s
                                              << u"The wait before kicking must be a number from 0 to 32767."_s;
    }

    // An entry that is no number or too large keeps the dialog open and stores nothing.
    void refused()
    {
        QFETCH(QString, name);
        QFETCH(QString, typed);
        QFETCH(QString, box);
        WindowWorld w;
        Boxes boxes;
        bool stillOpen = false;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            control<QCheckBox>(d, "chkBan")->click();
            control<QCheckBox>(d, "chkRate")->click();
            type(d, name.toLatin1().constData(), typed);
            d.findChild<QPushButton *>(u"cmdOkay"_s)->click();
            stillOpen = d.isVisible();
            QVERIFY(control<QWidget>(d, name.toLatin1().constData())->hasFocus());
            d.reject();
        }));
        QVERIFY(stillOpen);
        QCOMPARE(boxes.shown(), QStringList{box});
        QVERIFY(!w.settings().Ban && !w.settings().Rate);
    }

    void scanIntervalValidated_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("after");
        QTest::newRow("5 passes") << u"5"_s << u"5"_s;
        QTest::newRow("60 passes") << u"60"_s << u"60"_s;
        QTest::newRow("4 refused") << u"4"_s << u"5"_s;
        QTest::newRow("61 refused") << u"61"_s << u"5"_s;
        QTest::newRow("letters refused") << u"x"_s << u"5"_s;
        QTest::newRow("overflow refused") << u"99999999999"_s << u"5"_s;
    }

    // Leaving the box checks it; a refusal resets it to 5, so Okay then stores 5 seconds.
    void scanIntervalValidated()
    {
        QFETCH(QString, typed);
        QFETCH(QString, after);
        WindowWorld w;
        Boxes boxes;
        QString shown;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            auto *box = control<QLineEdit>(d, "txtScanInt");
            box->setFocus();
            box->setText(typed);
            QTest::keyClick(box, Qt::Key_Tab);
            shown = box->text();
        }));
        QCOMPARE(shown, after);
        QCOMPARE(boxes.shown(),
                 after == typed ? QStringList() : QStringList{u"The range for scanning is 5 to 60 seconds."_s});
        QCOMPARE(w.settings().CheckInt, after.toInt() * 1000);
    }

    void outOfRangeAtOkay()
    {
        WindowWorld w;
        w.settings().CheckInt = 70000; // shown as 70, the box never focused
        Boxes boxes;
        QVERIFY(okay(w, [](frmTolerance &) {}));
        QCOMPARE(boxes.shown(), QStringList{u"The timer's range is 5 to 60 seconds. Resetting to 30 seconds."_s});
        QCOMPARE(w.settings().CheckInt, 30000);
        QCOMPARE(w.window.engine().timKickcheck.interval(), 30000);
    }

    void enablingRules_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QStringList>("dependents");
        QTest::newRow("ban") << u"chkBan"_s << QStringList{u"cboBanType"_s, u"lblBanish"_s, u"lblBanishFor"_s,
                                                           u"cboBanFor"_s};
        QTest::newRow("kick") << u"chkKick"_s << QStringList{u"chkForceKick"_s, u"chkTellPlayers"_s,
                                                             u"txtTellPause"_s, u"lblTellPause1"_s,
                                                             u"lblTellPause2"_s};
        QTest::newRow("ping") << u"chkKickPing"_s << QStringList{u"txtMaxPing"_s, u"lblPing"_s, u"cboPasses"_s,
                                                                 u"lblPasses"_s, u"chkSkipMap"_s};
        QTest::newRow("qport") << u"chkQPort"_s << QStringList{u"lblQPortMin"_s, u"lblQPortMax"_s,
                                                               u"txtQPortMin"_s, u"txtQPortMax"_s};
        QTest::newRow("rate") << u"chkRate"_s << QStringList{u"lblRateMin"_s, u"lblRateMax"_s, u"txtRateMin"_s,
                                                             u"txtRateMax"_s};
    }

    // Each click sets the dependents to the box's state; greyed boxes are stored as they stand.
    void enablingRules()
    {
        QFETCH(QString, box);
        QFETCH(QStringList, dependents);
        WindowWorld w;
        w.settings().ForceKick = true;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            auto *check = control<QCheckBox>(d, box.toLatin1().constData());
            for (int click = 0; click < 2; ++click) {
                QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
                for (const QString &name : dependents)
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
