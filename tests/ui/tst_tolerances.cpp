// SPDX-License-Identifier: MIT
// The tolerances dialog, opened from its menu entry and driven through its controls.
#include "DialogDriver.h"
#include "WindowWorld.h"
#include "ui/EditFileDialog.h"
#include "ui/ToleranceDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

// Opens the dialog from its menu entry, lets `body` work on it, and presses Okay.
bool okay(WindowWorld &w, const std::function<void(frmTolerance &)> &body, bool press = true)
{
    return whileOpen<frmTolerance>([&] { w.child<QAction>("mnuTolerance")->trigger(); }, [&](frmTolerance &d) {
        body(d);
        if (press && d.isVisible())
            ::press(d, u"cmdOkay"_s);
    });
}

// What a box or an editable combo box shows, and typing into either.
QString text(QWidget *box)
{
    const QVariant combo = box->property("currentText");
    return combo.isValid() ? combo.toString() : box->property("text").toString();
}
void type(QWidget *box, const QString &typed)
{
    box->setProperty(box->property("currentText").isValid() ? "currentText" : "text", typed);
}

// The coded and numeric settings the dialog stores, by name.
qint32 setting(const Settings &s, const QString &key)
{
    const QHash<QString, qint32> all{{u"BanType"_s, s.BanType},     {u"BanFor"_s, s.BanFor},
                                     {u"StatusInterval"_s, s.StatusInterval}, {u"PingPasses"_s, s.PingPasses},
                                     {u"TellPause"_s, s.TellPause}, {u"MaxPing"_s, s.MaxPing},
                                     {u"QPortMax"_s, s.QPortMax},   {u"CheckInt"_s, s.CheckInt}};
    return all.value(key, -99);
}

} // namespace

class TestTolerances : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A fresh store as shown; stored codes without an item open on the fallback texts and
    // store the fallback numbers; the boxes nobody can tick; the repair of Passes.
    void loadAndStore()
    {
        WindowWorld w;
        Settings &s = w.settings();
        s.KickTK = s.KickTeleFrag = true;
        s.PingPasses = 7;
        s.BanDuration = 14;
        QStringList shown;
        const QStringList boxes{u"txtKickScore"_s, u"txtMaxPing"_s, u"txtScanInt"_s, u"txtBanDuration"_s,
                                u"cboBanType"_s, u"cboBanFor"_s, u"cboStatusInterval"_s, u"cboPasses"_s};
        QVERIFY(okay(w, [&](frmTolerance &d) {
            shown << d.windowTitle();
            for (const QString &name : boxes)
                shown << text(control(d, name));
            for (const char *name : {"chkWarn", "chkEnableTK", "chkKickTelefrag", "txtBanDuration", "txtKickScore"})
                QVERIFY2(!control(d, QLatin1String(name))->isEnabled(), name);
            QVERIFY(control(d, u"Label2"_s)->isEnabled() && !control<QCheckBox>(d, u"chkEnableTK"_s)->isChecked());
        }));
        QCOMPARE(shown, QStringList({u"QVN - Tolerances"_s, u"-3"_s, u"750"_s, u"20"_s, u"14"_s, u"IP and Name"_s,
                                     u"TKing only"_s, u"second"_s, u"2"_s}));
        QVERIFY(!s.KickTK && !s.KickTeleFrag);
        QCOMPARE(s.BanDuration, 14); // shown greyed, stored back as it was
        QCOMPARE(s.PingPasses, 2);

        s.PingPasses = 0;
        s.BanType = 7, s.BanFor = 5, s.StatusInterval = 7;
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
        QVERIFY(okay(w, [](frmTolerance &) {}, false)); // cancelled: the repair at load stands
        QCOMPARE(s.PingPasses, 2);
    }

    // Each item, picked from its list, stores its number.
    void itemsInOrder()
    {
        WindowWorld w;
        QStringList stored;
        for (const char *key : {"BanType", "BanFor", "StatusInterval", "PingPasses"}) {
            QString numbers;
            for (int i = 0, count = 1; i < count; ++i) {
                QVERIFY(okay(w, [&](frmTolerance &d) {
                    auto *box = control<QComboBox>(d, QLatin1String(key) == u"PingPasses" ? u"cboPasses"_s : u"cbo"_s + QLatin1String(key));
                    count = box->count();
                    box->setCurrentIndex(i);
                }));
                numbers += QString::number(setting(w.settings(), QLatin1String(key))) + u' ';
            }
            stored << numbers.trimmed();
        }
        QCOMPARE(stored, QStringList({u"1 2 3"_s, u"10 1 11 1000 100"_s, u"1 2 3 4 5 10"_s, u"1 2 3 4 5 6"_s}));
    }

    void stored_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("typed"); // a tab: the cursor leaves the box
        QTest::addColumn<QString>("key");
        QTest::addColumn<qint32>("stored"); // the default where the entry is refused
        QTest::addColumn<QString>("box");
        QTest::addColumn<bool>("closes");
        const auto row = [](const char *control, const QString &typed, const char *key, qint32 v,
                            const QString &box = {}, bool closes = true) {
            QTest::addRow("%s '%s'", control, qPrintable(typed))
                << QString::fromLatin1(control) << typed << QString::fromLatin1(key) << v << box << closes;
        };
        row("cboBanType", u"  IP  "_s, "BanType", 1); // the one coded box compared trimmed
        row("cboBanType", u"ip"_s, "BanType", 0);
        row("cboBanFor", u" Impersonating"_s, "BanFor", 10);
        row("cboStatusInterval", u"tenth "_s, "StatusInterval", 2);
        row("cboPasses", u"9"_s, "PingPasses", 9);
        row("txtTellPause", u"-5"_s, "TellPause", 0);
        row("txtTellPause", u"soon"_s, "TellPause", 0);
        row("txtTellPause", u"32767"_s, "TellPause", 32767);
        row("txtTellPause", u"32768"_s, "TellPause", 0, u"The wait before kicking must be a number from 0 to 32767."_s, false);
        row("txtMaxPing", u"-32768"_s, "MaxPing", -32768);
        row("txtMaxPing", u"32768"_s, "MaxPing", 750, u"Max Ping must be a number from -32768 to 32767."_s, false);
        row("txtQPortMax", u" 2147483647 "_s, "QPortMax", 2147483647);
        row("txtQPortMax", u"2147483648"_s, "QPortMax", 0,
            u"The highest QPort must be a number from -2147483648 to 2147483647."_s, false);
        const QString reset = u"The timer's range is 5 to 60 seconds. Resetting to 30 seconds."_s;
        row("txtScanInt", u"61"_s, "CheckInt", 30000, reset);
        row("txtScanInt", u"4.5"_s, "CheckInt", 30000, reset); // halves to even
        const QString range = u"The range for scanning is 5 to 60 seconds."_s; // and the box says 5
        row("txtScanInt", u"5\t"_s, "CheckInt", 5000);
        row("txtScanInt", u"60\t"_s, "CheckInt", 60000);
        row("txtScanInt", u"4\t"_s, "CheckInt", 5000, range);
        row("txtScanInt", u"61\t"_s, "CheckInt", 5000, range);
        row("txtScanInt", u"99999999999\t"_s, "CheckInt", 5000, range);
    }

    // What Okay stores of typed text; a refused entry keeps the dialog open with the cursor
    // in it and stores nothing.
    void stored()
    {
        QFETCH(QString, name);
        QFETCH(QString, typed);
        QFETCH(QString, key);
        QFETCH(QString, box);
        QFETCH(bool, closes);
        WindowWorld w;
        w.settings().StatusInterval = 5;
        Boxes boxes;
        bool open = false;
        QVERIFY(okay(w, [&](frmTolerance &d) {
            control<QCheckBox>(d, u"chkQPort"_s)->click();
            QWidget *entry = control(d, name);
            entry->setFocus();
            type(entry, QString(typed).remove(u'\t'));
            if (typed.endsWith(u'\t'))
                QTest::keyClick(entry, Qt::Key_Tab);
            press(d, u"cmdOkay"_s);
            open = d.isVisible();
            QVERIFY(!open || entry->hasFocus());
            d.reject();
        }));
        const Settings &s = w.settings();
        QTEST(setting(s, key), "stored");
        QCOMPARE(boxes.shown(), box.isEmpty() ? QStringList() : QStringList{box});
        QCOMPARE(open, !closes);
        QCOMPARE(s.QPort, closes); // nothing is stored while the dialog stays
        QCOMPARE(w.window.engine().timKickcheck.interval(), closes ? s.CheckInt : 0);
        if (key != u"StatusInterval")
            QCOMPARE(s.StatusInterval, 5);
    }

    // Every box ticked by the mouse once: the dependents follow at load and at the click,
    // and Okay stores each control into its own setting, greyed ones as they stand.
    void everyControlToItsSetting()
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
        const QStringList typed{u"txtKickScore -7"_s, u"txtBanDuration 3"_s, u"txtMaxPing 600"_s, u"cboPasses 4"_s,
                                u"txtQPortMin 11"_s,  u"txtQPortMax 12"_s,   u"txtRateMin 13"_s,  u"txtRateMax 14"_s,
                                u"txtTellPause 6"_s,  u"txtScanInt 15"_s};
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
            control<QComboBox>(d, u"cboWarning"_s)->setCurrentText(u"Mind your fire, %name%."_s);
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
    void helpAndListEditors()
    {
        WindowWorld w;
        const QStringList files{u"banned.txt"_s, u"bannedIP.txt"_s, u"immuneIP.txt"_s, u"badnames.txt"_s};
        for (const QString &file : files)
            TestEnv::writeFile(w.env.workDir() + file, file.toLatin1() + "\r\n");
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
        }, false));
        QCOMPARE(boxes.shown(), QStringList{u"Use 'Force Kick' when the status command does not return all the "
                                            "player's names on the server. Rather than check the player list for "
                                            "banned names, force kick sends a kick command to the server whether the "
                                            "player is in the server's list or not."_s});
        QCOMPARE(seen, QStringList({u"QVN - Editing Banned Names"_s, u"banned.txt\n"_s, u"QVN - Editing Banned IPs"_s,
                                    u"bannedIP.txt\n"_s, u"QVN - Editing Immune IPs"_s, u"immuneIP.txt\n"_s,
                                    u"QVN - Editing Bad Names"_s, u"badnames.txt\n"_s}));
        const ListFiles &l = w.window.engine().lists();
        QCOMPARE(QList<qint32>({l.bannedNameTop(), l.bannedIPTop(), l.immuneIPTop(), l.badNameTop()}),
                 QList<qint32>({1, 1, 1, 1}));
        QCOMPARE(l.badNames().at(1), u"X"_s);
    }
};

QTEST_MAIN(TestTolerances)
#include "tst_tolerances.moc"
