// SPDX-License-Identifier: MIT
// The announcement, settings, about and list editor dialogs, opened from the window.
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
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

class TestDialogs : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openUrl(const QUrl &url) { m_opened = url; }

private Q_SLOTS:
    // Every caption fits its control in the form font, so nothing is cut off.
    void captionsFit()
    {
        WindowWorld w;
        Engine &e = w.window.engine();
        frmTolerance tolerance(e, nullptr);
        frmAnnounce announce(e, nullptr);
        frmSettings settings(e, nullptr);
        frmAbout about(e, nullptr);
        frmGameCodes codes(e, nullptr);
        for (QDialog *d : QList<QDialog *>{&tolerance, &announce, &settings, &about, &codes}) {
            for (QAbstractButton *b : d->findChildren<QAbstractButton *>()) {
                const bool push = qobject_cast<QPushButton *>(b);
                const int need = push ? b->fontMetrics().horizontalAdvance(b->text().remove(u'&')) + 8 : b->sizeHint().width();
                QVERIFY2(need <= b->width(), qPrintable(b->objectName()));
            }
            for (QLabel *l : d->findChildren<QLabel *>())
                QVERIFY2(l->text().isEmpty() || (l->wordWrap() ? l->heightForWidth(l->width()) <= l->height()
                                                               : l->sizeHint().width() <= l->width()),
                         qPrintable(l->objectName()));
            for (QGroupBox *g : d->findChildren<QGroupBox *>())
                QVERIFY(g->sizeHint().width() <= g->width());
        }
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
            return whileOpen<frmAnnounce>([&] { w.child<QAction>("mnuAnnounce")->trigger(); }, [&](frmAnnounce &d) {
                body(d);
                press(d, u"cmdOkay"_s);
            });
        };
        const QStringList rule{u"cboAnnounce"_s, u"fraSequence"_s, u"optRandom"_s, u"optSequential"_s, u"lblAnnounce"_s};
        Boxes boxes;
        QStringList seen;
        QVERIFY(whileOpen<frmAnnounce>([&] { QTest::keyClick(&w.window, Qt::Key_A, Qt::ControlModifier); }, [&](frmAnnounce &d) {
            seen << d.windowTitle() << control<QComboBox>(d, u"cboAnnounce"_s)->currentText()
                 << control<QPlainTextEdit>(d, u"txtAnnounce"_s)->toPlainText();
            QVERIFY(whileOpen<frmGameCodes>([&] { press(d, u"cmdGameCodes"_s); }));
            for (int click = 0; click < 2; ++click) {
                for (const QString &name : rule)
                    QVERIFY2(control(d, name)->isEnabled() == (click == 1), qPrintable(name));
                QVERIFY(control(d, u"txtAnnounce"_s)->isEnabled());
                if (click == 0)
                    press(d, u"chkAnnounce"_s);
            }
            press(d, u"optSequential"_s);
            control<QComboBox>(d, u"cboAnnounce"_s)->setCurrentText(u" 10 minutes "_s);
            control<QPlainTextEdit>(d, u"txtAnnounce"_s)->setPlainText(u"one\n\ntwo"_s);
            press(d, u"cmdOkay"_s);
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
        QVERIFY(save([](frmAnnounce &d) { control<QComboBox>(d, u"cboAnnounce"_s)->setCurrentText(u"10 minute"_s); }));
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
        const auto ok = [&](const std::function<void(frmSettings &)> &body) {
            return whileOpen<frmSettings>([&] { QTest::keyClick(&w.window, Qt::Key_G, Qt::ControlModifier); },
                                          [&](frmSettings &d) {
                                              body(d);
                                              if (d.isVisible())
                                                  press(d, u"cmdOK"_s);
                                          });
        };
        const auto type = [](frmSettings &d, const QString &port, const QString &delay) {
            control<QLineEdit>(d, u"txtLocalPort"_s)->setText(port);
            control<QLineEdit>(d, u"txtCommandDelay"_s)->setText(delay);
        };
        QVERIFY(ok([&](frmSettings &d) {
            QVERIFY(!control(d, u"optBrief"_s)->isEnabled() && !control(d, u"drvDrive"_s)->isEnabled());
            QCOMPARE(control<QLineEdit>(d, u"txtCommandDelay"_s)->text(), u"1"_s);
            press(d, u"chkLog"_s);
            type(d, u"2000"_s, u"soon"_s);
        }));
        QVERIFY(s.SaveLog && log.logOpen() && s.LocalPort == 2000 && s.CommandDelay == 1.0);
        QVERIFY(TestEnv::readFile(logFile).contains("Logging Started on "));
        QVERIFY(ok([&](frmSettings &d) {
            press(d, u"chkLog"_s);
            type(d, u"port"_s, u" 0.25"_s);
        }));
        QVERIFY(!s.SaveLog && !log.logOpen() && s.LocalPort == 2000 && s.CommandDelay == 0.25);
        QVERIFY(TestEnv::readFile(logFile).contains("Logging Completed on "));
        // A click on Brief counts at once, and Cancel keeps it.
        QVERIFY(ok([&](frmSettings &d) {
            press(d, u"chkLog"_s);
            press(d, u"optBrief"_s);
            press(d, u"cmdCancel"_s);
        }));
        QVERIFY(s.LogBrief && !s.SaveLog);
        // A port beyond 16 bits is refused and nothing is applied.
        bool open = false;
        QVERIFY(ok([&](frmSettings &d) {
            press(d, u"chkLog"_s);
            type(d, u"32768"_s, u"2"_s);
            press(d, u"cmdOK"_s);
            open = d.isVisible();
            d.reject();
        }));
        QVERIFY(open && !s.SaveLog && s.LocalPort == 2000 && s.CommandDelay == 0.25);
        QCOMPARE(boxes.shown(), QStringList{u"The local port must be a number from -32768 to 32767."_s}); // nothing asked
    }

    void settingsFolder()
    {
        WindowWorld w;
        Settings &s = w.settings();
        const QString work = s.FileLoc;
        QDir(work).mkpath(u"lists"_s);
        const auto current = [](frmSettings &d) {
            auto *tree = control<QTreeView>(d, u"dirDir"_s);
            return qobject_cast<QFileSystemModel *>(tree->model())->filePath(tree->currentIndex()) + u'/';
        };
        const auto choose = [&](QMessageBox::StandardButton answer) {
            Prompts::setNextAnswer(answer);
            return whileOpen<frmSettings>([&] { w.child<QAction>("mnuSettings")->trigger(); }, [&](frmSettings &d) {
                QCOMPARE(current(d), work);
                auto *tree = control<QTreeView>(d, u"dirDir"_s);
                tree->setCurrentIndex(qobject_cast<QFileSystemModel *>(tree->model())->index(work + u"lists"_s));
                press(d, u"cmdOK"_s);
            });
        };
        Boxes boxes;
        QVERIFY(choose(QMessageBox::No));
        QCOMPARE(s.FileLoc, work);
        QCOMPARE(boxes.shown(), QStringList{u"The directory ("_s + work + u") was not changed."_s});
        QVERIFY(choose(QMessageBox::Yes));
        QCOMPARE(s.FileLoc, work + u"lists/"_s);
        // A folder that has gone away opens on the one above it.
        s.FileLoc = work + u"gone/"_s;
        QVERIFY(whileOpen<frmSettings>([&] { w.child<QAction>("mnuSettings")->trigger(); },
                                       [&](frmSettings &d) { QCOMPARE(current(d), work); }));
    }

    void about()
    {
        WindowWorld w;
        QDesktopServices::setUrlHandler(u"https"_s, this, "openUrl");
        const QString bin = w.env.root() + u"/bin"_s;
        QDir().mkpath(bin);
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", bin.toLocal8Bit());
        Boxes boxes;
        QStringList seen;
        bool stayed = false;
        QVERIFY(whileOpen<frmAbout>([&] { w.child<QAction>("mnuAbout")->trigger(); }, [&](frmAbout &d) {
            seen << d.windowTitle() << control<QLabel>(d, u"lblTitle"_s)->text() << control<QLabel>(d, u"lblVersion"_s)->text();
            press(d, u"cmdSysInfo"_s);
            stayed = d.isVisible();
            // A system information program on the path is started instead of the box.
            TestEnv::writeFile(bin + u"/hardinfo"_s, "#!/bin/sh\n/usr/bin/touch \"$0.ran\"\n"_ba);
            QFile::setPermissions(bin + u"/hardinfo"_s, QFile::ExeOwner | QFile::ReadOwner);
            press(d, u"cmdSysInfo"_s);
            QTest::mouseClick(&d, Qt::LeftButton, {}, control(d, u"lblDescription"_s)->geometry().center());
        }));
        qputenv("PATH", path);
        QDesktopServices::unsetUrlHandler(u"https"_s);
        QCOMPARE(seen, QStringList({u"About Quorvane"_s, u"Quorvane"_s, u"Version 1.2.1"_s}));
        QVERIFY(stayed);
        QCOMPARE(boxes.shown(), QStringList{u"System Information Is Unavailable At This Time"_s});
        QTRY_VERIFY(QFile::exists(bin + u"/hardinfo.ran"_s));
        QCOMPARE(m_opened, QUrl(u"https://www.ea.com/games/medal-of-honor"_s));
        bool closed = false; // Escape closes the box
        QVERIFY(whileOpen<frmAbout>([&] { w.child<QAction>("mnuAbout")->trigger(); }, [&](frmAbout &d) {
            QTest::keyClick(&d, Qt::Key_Escape);
            closed = !d.isVisible();
        }));
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
        const QString path = w.env.workDir() + name;
        TestEnv::writeFile(path, file);
        Boxes boxes;
        frmEditFile editor(w.window.engine(), &w.window);
        editor.Edit_File(name, u"Editing"_s);
        QVERIFY(whileOpen<frmEditFile>([&] { editor.exec(); }, [&](frmEditFile &d) {
            auto *box = control<QPlainTextEdit>(d, u"txtEdit"_s);
            box->moveCursor(QTextCursor::End);
            box->insertPlainText(typed);
            press(d, u"cmdSave"_s);
        }));
        QTEST(TestEnv::readFile(path), "saved");
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
            open = d.isVisible();
            QCOMPARE(box->toPlainText(), QString(4000, u'9'));
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
