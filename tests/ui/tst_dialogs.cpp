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

    template<typename T>
    static T *control(QWidget &d, const char *name)
    {
        return d.findChild<T *>(QLatin1String(name));
    }
    static void press(QWidget &d, const char *name) { control<QPushButton>(d, name)->click(); }

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
                const int need = qobject_cast<QPushButton *>(b)
                                     ? b->fontMetrics().horizontalAdvance(b->text().remove(u'&')) + 8
                                     : b->sizeHint().width();
                QVERIFY2(need <= b->width(), qPrintable(b->objectName()));
            }
            for (QLabel *l : d->findChildren<QLabel *>()) {
                if (l->text().isEmpty())
                    continue;
                QVERIFY2(l->wordWrap() ? l->heightForWidth(l->width()) <= l->height()
                                       : l->sizeHint().width() <= l->width(),
                         qPrintable(l->objectName()));
            }
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
        Boxes boxes;
        QStringList seen;
        QVERIFY(whileOpen<frmAnnounce>([&] { QTest::keyClick(&w.window, Qt::Key_A, Qt::ControlModifier); },
                                       [&](frmAnnounce &d) {
                                           seen << d.windowTitle() << control<QComboBox>(d, "cboAnnounce")->currentText()
                                                << frmEditFile::plainText(*control<QPlainTextEdit>(d, "txtAnnounce"));
                                           QVERIFY(!control<QWidget>(d, "fraSequence")->isEnabled());
                                           QVERIFY(whileOpen<frmGameCodes>([&] { press(d, "cmdGameCodes"); }));
                                           control<QCheckBox>(d, "chkAnnounce")->click();
                                           QVERIFY(control<QWidget>(d, "optSequential")->isEnabled());
                                           control<QRadioButton>(d, "optSequential")->click();
                                           control<QComboBox>(d, "cboAnnounce")->setCurrentText(u" 10 minutes "_s);
                                           control<QPlainTextEdit>(d, "txtAnnounce")->setPlainText(u"one\n\ntwo"_s);
                                           press(d, "cmdOkay");
                                       }));
        QCOMPARE(seen, QStringList({u"QVN - Announcement"_s, u"2 minutes"_s, u"old\n"_s}));
        QCOMPARE(TestEnv::readFile(file), "one\r\n\r\ntwo"_ba); // as typed, blank line kept
        QCOMPARE(w.window.engine().lists().serverMessageTop(), 1);
        QVERIFY(s.intAnnouce == 1 && !s.MsgRandom && s.lngAnnounce == 10);
        QVERIFY(a.timAnnounce.isActive()); // armed, although the engine is stopped
        QCOMPARE(boxes.shown(), QStringList{u"Announcements will be sent as soon as you click Start on the main screen."_s});

        // Saved again while on: the count goes on; a typed text that is no item counts as 2.
        a.announceTicks = 1;
        w.window.engine().lists().nextMessage = 1;
        QVERIFY(whileOpen<frmAnnounce>([&] { w.child<QAction>("mnuAnnounce")->trigger(); }, [&](frmAnnounce &d) {
            control<QComboBox>(d, "cboAnnounce")->setCurrentText(u"10 minute"_s);
            press(d, "cmdOkay");
        }));
        QVERIFY(a.timAnnounce.isActive());
        QCOMPARE(a.announceTicks, 1);
        QCOMPARE(s.lngAnnounce, 2);
        QCOMPARE(w.window.engine().lists().nextMessage, 0);

        // Switched off: stopped and the count cleared.
        QVERIFY(whileOpen<frmAnnounce>([&] { w.child<QAction>("mnuAnnounce")->trigger(); }, [&](frmAnnounce &d) {
            control<QCheckBox>(d, "chkAnnounce")->click();
            press(d, "cmdOkay");
        }));
        QVERIFY(!a.timAnnounce.isActive() && a.announceTicks == 0 && s.intAnnouce == 0);
    }

    void settingsLogAndLink()
    {
        WindowWorld w;
        Settings &s = w.settings();
        ActivityLog &log = w.window.engine().log();
        Boxes boxes;
        const auto ok = [&](const std::function<void(frmSettings &)> &body) {
            return whileOpen<frmSettings>([&] { QTest::keyClick(&w.window, Qt::Key_G, Qt::ControlModifier); },
                                          [&](frmSettings &d) {
                                              body(d);
                                              if (d.isVisible())
                                                  press(d, "cmdOK");
                                          });
        };
        QVERIFY(ok([&](frmSettings &d) {
            QVERIFY(!control<QWidget>(d, "optBrief")->isEnabled() && !control<QWidget>(d, "drvDrive")->isEnabled());
            QCOMPARE(control<QLineEdit>(d, "txtCommandDelay")->text(), u"1"_s);
            control<QCheckBox>(d, "chkLog")->click();
            control<QLineEdit>(d, "txtLocalPort")->setText(u"2000"_s);
            control<QLineEdit>(d, "txtCommandDelay")->setText(u"soon"_s);
        }));
        QVERIFY(s.SaveLog && log.logOpen() && s.LocalPort == 2000 && s.CommandDelay == 1.0);
        QVERIFY(w.env.readFile(w.env.workDir() + u"servlog.txt"_s).contains("Logging Started on "));
        QVERIFY(ok([&](frmSettings &d) {
            control<QCheckBox>(d, "chkLog")->click();
            control<QLineEdit>(d, "txtCommandDelay")->setText(u" 0.25"_s);
            control<QLineEdit>(d, "txtLocalPort")->setText(u"port"_s);
        }));
        QVERIFY(!s.SaveLog && !log.logOpen() && s.LocalPort == 2000 && s.CommandDelay == 0.25);
        QVERIFY(w.env.readFile(w.env.workDir() + u"servlog.txt"_s).contains("Logging Completed on "));
        // A click on Brief counts at once, and Cancel keeps it.
        QVERIFY(whileOpen<frmSettings>([&] { w.child<QAction>("mnuSettings")->trigger(); }, [&](frmSettings &d) {
            control<QCheckBox>(d, "chkLog")->click();
            control<QRadioButton>(d, "optBrief")->click();
            press(d, "cmdCancel");
        }));
        QVERIFY(s.LogBrief && !s.SaveLog);
        // A port beyond 16 bits is refused and nothing is applied.
        bool open = false;
        QVERIFY(ok([&](frmSettings &d) {
            control<QCheckBox>(d, "chkLog")->click();
            control<QLineEdit>(d, "txtLocalPort")->setText(u"40000"_s);
            press(d, "cmdOK");
            open = d.isVisible();
            d.reject();
        }));
        QVERIFY(open && !s.SaveLog && s.LocalPort == 2000);
        QCOMPARE(boxes.shown(), QStringList{u"The local port must be a number from -32768 to 32767."_s}); // nothing asked
    }

    void settingsFolder()
    {
        WindowWorld w;
        Settings &s = w.settings();
        const QString work = s.FileLoc;
        QDir(work).mkpath(u"lists"_s);
        const auto choose = [&](const QString &folder, QMessageBox::StandardButton answer) {
            Prompts::setNextAnswer(answer);
            return whileOpen<frmSettings>([&] { w.child<QAction>("mnuSettings")->trigger(); }, [&](frmSettings &d) {
                auto *tree = control<QTreeView>(d, "dirDir");
                auto *model = qobject_cast<QFileSystemModel *>(tree->model());
                QCOMPARE(model->filePath(tree->currentIndex()) + u'/', work);
                tree->setCurrentIndex(model->index(folder));
                press(d, "cmdOK");
            });
        };
        Boxes boxes;
        QVERIFY(choose(work + u"lists"_s, QMessageBox::No));
        QCOMPARE(s.FileLoc, work);
        QCOMPARE(boxes.shown(), QStringList{u"The directory ("_s + work + u") was not changed."_s});
        QVERIFY(choose(work + u"lists"_s, QMessageBox::Yes));
        QCOMPARE(s.FileLoc, work + u"lists/"_s);
        // A folder that has gone away opens on the one above it.
        s.FileLoc = work + u"gone/"_s;
        QVERIFY(whileOpen<frmSettings>([&] { w.child<QAction>("mnuSettings")->trigger(); }, [&](frmSettings &d) {
            auto *tree = control<QTreeView>(d, "dirDir");
            QCOMPARE(qobject_cast<QFileSystemModel *>(tree->model())->filePath(tree->currentIndex()) + u'/', work);
        }));
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
            seen << d.windowTitle() << control<QLabel>(d, "lblTitle")->text() << control<QLabel>(d, "lblVersion")->text();
            press(d, "cmdSysInfo");
            stayed = d.isVisible();
            // A system information program on the path is started instead of the box.
            TestEnv::writeFile(bin + u"/hardinfo"_s, "#!/bin/sh\n/usr/bin/touch \"$0.ran\"\n"_ba);
            QFile::setPermissions(bin + u"/hardinfo"_s, QFile::ExeOwner | QFile::ReadOwner);
            press(d, "cmdSysInfo");
            auto *link = control<QLabel>(d, "lblDescription");
            QTest::mouseClick(&d, Qt::LeftButton, {}, link->geometry().center());
        }));
        qputenv("PATH", path);
        QDesktopServices::unsetUrlHandler(u"https"_s);
        QCOMPARE(seen, QStringList({u"About Quorvane"_s, u"Quorvane"_s, u"Version 1.2.1"_s}));
        QVERIFY(stayed);
        QCOMPARE(boxes.shown(), QStringList{u"System Information Is Unavailable At This Time"_s});
        QTRY_VERIFY(QFile::exists(bin + u"/hardinfo.ran"_s));
        QCOMPARE(m_opened, QUrl(frmAbout::siteAddress));
        bool closed = false; // Escape closes the box, as does Enter
        QVERIFY(whileOpen<frmAbout>([&] { w.child<QAction>("mnuAbout")->trigger(); }, [&](frmAbout &d) {
            QTest::keyClick(&d, Qt::Key_Escape);
            closed = !d.isVisible();
        }));
        QVERIFY(closed);
    }

    void listEditor_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("typed"); // put behind the text as it loaded
        QTest::addColumn<QByteArray>("saved");
        QTest::addColumn<qint32>("top");
        QTest::newRow("unchanged") << "A\r\nB\r\n"_ba << u""_s << "A\r\nB\r\n"_ba << 1;
        QTest::newRow("no last line end") << "A\r\nB"_ba << u"\nC"_s << "A\r\nB\r\nC"_ba << 2;
        QTest::newRow("line feeds kept") << "A\nB\n"_ba << u"C"_s << "A\nB\nC"_ba << 2;
        QTest::newRow("latin-1 both ways") << "Jos\xe9\xa0X\r\n"_ba << u"\xe9"_s << "Jos\xe9\xa0X\r\n\xe9"_ba << 1;
        QTest::newRow("empty") << ""_ba << u"Z"_s << "Z"_ba << 0;
    }

    // Save writes what stands in the box and reloads the banned names at once.
    void listEditor()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, typed);
        QFETCH(QByteArray, saved);
        QFETCH(qint32, top);
        WindowWorld w;
        const QString path = w.env.workDir() + u"banned.txt"_s;
        TestEnv::writeFile(path, file);
        frmEditFile editor(w.window.engine(), &w.window);
        editor.Edit_File(u"banned.txt"_s, u"Editing Banned Names"_s);
        QVERIFY(whileOpen<frmEditFile>([&] { editor.exec(); }, [&](frmEditFile &d) {
            auto *box = control<QPlainTextEdit>(d, "txtEdit");
            box->moveCursor(QTextCursor::End);
            box->insertPlainText(typed);
            press(d, "cmdSave");
        }));
        QCOMPARE(TestEnv::readFile(path), saved);
        QCOMPARE(w.window.engine().lists().bannedNameTop(), top);
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
            control<QPlainTextEdit>(d, "txtEdit")->setPlainText(QString(4000, u'9'));
            // A disk that takes no more than 1000 bytes a file.
            const rlimit small{1000, RLIM_INFINITY};
            rlimit old{};
            getrlimit(RLIMIT_FSIZE, &old);
            const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &small);
            press(d, "cmdSave");
            setrlimit(RLIMIT_FSIZE, &old);
            std::signal(SIGXFSZ, oldHandler);
            open = d.isVisible();
            QCOMPARE(frmEditFile::plainText(*control<QPlainTextEdit>(d, "txtEdit")), QString(4000, u'9'));
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
