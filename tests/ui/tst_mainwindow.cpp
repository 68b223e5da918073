// SPDX-License-Identifier: MIT
// The main window as the operator meets it: title, keys, menus, pane, fields, size, state,
// tray, boxes and close.
#include "EngineWorld.h"
#include "WindowWorld.h"
#include "core/SettingsStore.h"
#include "ui/TrayIcon.h"

#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTableWidget>

#include <tuple>

using namespace Qt::Literals::StringLiterals;

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Every caption fits its control, and a full-width row fits its grid cells under their
    // headers, in the face the window chose for this desktop. Tab walks the controls in the
    // window's order, past the pane and the grid as well, and during a check past the command
    // controls that the check switches off.
    void faceOfTheWindow()
    {
        WindowWorld w;
        for (const QWidget *c : w.window.findChildren<QWidget *>()) {
            const QStyle *style = c->style();
            int needed = 0;
            if (const auto *button = qobject_cast<const QPushButton *>(c))
                needed = c->fontMetrics().horizontalAdvance(button->text())
                    + 2 * (style->pixelMetric(QStyle::PM_ButtonMargin, nullptr, c)
                           + style->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, c));
            else if (qobject_cast<const QLabel *>(c))
                needed = c->sizeHint().width();
            else if (const auto *box = qobject_cast<const QCheckBox *>(c)) {
                QStyleOptionButton option;
                option.initFrom(c);
                needed = c->width() - style->subElementRect(QStyle::SE_CheckBoxContents, &option, c).width()
                    + c->fontMetrics().horizontalAdvance(box->text());
            }
            QVERIFY2(!c->isVisibleTo(&w.window) || needed <= c->width(), qPrintable(c->objectName()));
        }
        PlayerRecord &p = w.engine.players().currentPlayers[1];
        std::tie(p.num, p.name, p.ping, p.score, p.ip) =
            std::tuple(u"63"_s, u"Harrowgate_Quin"_s, u"999"_s, u"-12"_s, u"203.113.200.114:27965"_s);
        p.jointime = 86399.6 / 86400.0, p.status = u"Ok"_s, p.warn = 3; // cut to the second
        w.engine.players().currentCount = 1;
        w.engine.grid().RefreshGrid();
        auto *table = w.child<QTableWidget>("gridPlayers");
        const QFontMetrics fm(table->font());
        const int margin = 2 * (table->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, table) + 1);
        QStringList shown;
        for (int c = 0; c < 8; ++c) {
            const QString cell = table->item(0, c)->text(), header = table->horizontalHeaderItem(c)->text();
            shown << header + u':' + cell;
            // Name and address are as wide as the longest of their kind, by rule, not as their captions.
            const int headerMargin = 2 * table->style()->pixelMetric(QStyle::PM_HeaderMargin);
            QVERIFY2(c == 1 || c == 4 || fm.horizontalAdvance(header) + headerMargin <= table->columnWidth(c),
                     qPrintable(header));
            QVERIFY2(fm.horizontalAdvance(cell) + margin <= table->columnWidth(c), qPrintable(cell));
        }
        QCOMPARE(shown.join(u' '), u"Client:63 Name:Harrowgate_Quin Ping:999 Score:-12 IP:203.113.200.114:27965 "
                                   "Joined:23:59:59 Status:Ok Warn:3/3"_s);
        Engine &e = w.engine;
        QCOMPARE(w.window.windowTitle(), u"Harl Dunmere's Quorvane"_s);
        w.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w.window));
        const auto walk = [&] {
            w.child<QWidget>("txtHost")->setFocus();
            QStringList stops;
            do {
                QWidget *focus = QApplication::focusWidget();
                const auto *button = qobject_cast<QAbstractButton *>(focus);
                stops << focus->objectName() + (button ? u' ' + button->text() : QString());
                QTest::keyClick(focus, Qt::Key_Tab);
            } while (QApplication::focusWidget()->objectName() != u"txtHost" && stops.size() < 20);
            return stops.join(u", "_s);
        };
        const auto menus = [&] {
            QStringList entries; // menu>caption as shown, shortcut, on or off
            for (const QAction *bar : w.window.menuBar()->actions()) {
                for (const QAction *a : bar->menu()->actions())
                    entries << bar->text().remove(u'&') + u'>' + a->text().replace(u"&&"_s, u"&"_s) + u' '
                            + a->shortcut().toString() + (a->isEnabled() ? QString() : u" off"_s);
            }
            return entries.join(u", "_s);
        };
        QCOMPARE(walk(), u"txtHost, txtPort, txtPwd, cmdStatus Status, cmdServerInfo Server Info, cmdOther Other, "
                         "cmdQuit Quit, txtOutput, txtServerName, cmdStart Start, chkSettings Save Settings, gridPlayers, "
                         "cmdKick Kick, cmdKickBan Kick and Ban, chkTray Minimize to Tray, txtSay, cmdSay Say"_s);
        QCOMPARE(menus(), u"File>Exit Ctrl+E, Options>Announcement Ctrl+A, Options>Tolerances Ctrl+T, "
                          "Options>Settings Ctrl+G, Commands>Status Ctrl+S, Commands>Server Info Ctrl+I, "
                          "Commands>Other.... Ctrl+O, Commands>Kick Ctrl+K, Commands>Kick & Ban Ctrl+B, Help>About "_s);
        e.SetCommandControls(0);
        w.window.setEnabled(View::Control::mnuOptions, false);
        QCOMPARE(walk(), u"txtHost, txtPort, txtPwd, cmdQuit Quit, txtOutput, txtServerName, cmdStart Start, "
                         "chkSettings Save Settings, gridPlayers, chkTray Minimize to Tray"_s);
        QCOMPARE(menus(), u"File>Exit Ctrl+E, Options>Announcement Ctrl+A off, Options>Tolerances Ctrl+T off, "
                          "Options>Settings Ctrl+G off, Commands>Status Ctrl+S off, Commands>Server Info Ctrl+I off, "
                          "Commands>Other.... Ctrl+O off, Commands>Kick Ctrl+K, Commands>Kick & Ban Ctrl+B, Help>About "_s);
        QVERIFY(!w.child<QMenu>("mnuOptions")->menuAction()->isEnabled());
        // A row the operator clicks is the current one until the next refresh.
        auto *grid = w.child<QTableWidget>("gridPlayers");
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(grid->model()->index(1, 4)).center());
        QCOMPARE(w.window.gridCurrentRow(), 2);
        e.grid().RefreshGrid();
        QCOMPARE(w.window.gridCurrentRow(), -1);
    }

    // The menu's shortcuts win over the editing keys of the box that has the focus.
    void menuShortcutsWinInEveryBox()
    {
        for (const char *box : {"txtHost", "txtPort", "txtPwd", "txtServerName", "txtSay", "txtOutput"}) {
            for (const Qt::Key key : {Qt::Key_A, Qt::Key_E}) {
                WindowWorld w;
                w.window.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&w.window));
                w.child<QWidget>(box)->setFocus();
                QSignalSpy announce(w.child<QAction>("mnuAnnounce"), &QAction::triggered);
                QTimer closer; // whatever the entry opens is closed again
                connect(&closer, &QTimer::timeout, this, [] {
                    if (QWidget *modal = QApplication::activeModalWidget())
                        modal->close();
                });
                closer.start(10);
                QTest::keyClick(w.child<QWidget>(box), key, Qt::ControlModifier);
                if (key == Qt::Key_A) {
                    QVERIFY2(announce.count() == 1 && w.window.isVisible(), box);
                    continue;
                }
                QTRY_VERIFY2(!w.window.isVisible() && w.engine.unloaded(), box);
                // The close asked the application to quit; let that pass so later waits still wait.
                QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
                qApp->exec();
            }
        }
    }

    // The pane shows the engine's text and gives back what is typed in it. The boxes write
    // through to the settings, the port box only while it holds a 32-bit number and only
    // digits when typed; Say and Server Info go out at once with what the boxes hold.
    void paneFieldsSayAndServerInfo()
    {
        WindowWorld w;
        OutputPane &pane = w.engine.pane();
        auto *box = w.child<QPlainTextEdit>("txtOutput");
        pane.append(u"a\r\nb"_s);
        // A CR LF split over two appends, and a lone CR, which shows as nothing.
        pane.append(u"\r"_s);
        pane.append(u"\nc\rd"_s);
        QCOMPARE(box->toPlainText(), u"a\nb\ncd"_s);
        QCOMPARE(pane.text(), u"a\r\nb\r\nc\rd"_s); // appends are no typing
        // A line break typed in the pane reaches the engine's text as CR LF.
        box->moveCursor(QTextCursor::End);
        QTest::keyClicks(box, u"x"_s);
        QTest::keyClick(box, Qt::Key_Return);
        QTest::keyClicks(box, u"\u00a0y"_s);
        QCOMPARE(pane.text(), u"a\r\nb\r\ncdx\r\n\u00a0y"_s);
        for (int i = 0; i < 100; ++i)
            pane.append(u"\r\nline"_s);
        box->moveCursor(QTextCursor::Start);
        pane.cursorToEnd(); // the newest text comes into view
        QVERIFY(box->verticalScrollBar()->value() > 0 && box->viewport()->rect().contains(box->cursorRect()));
        pane.clear();
        QCOMPARE(box->toPlainText(), QString());
        const Settings &s = w.settings();
        QStringList ports; // the setting, then the box as a send reads it
        for (const QString &port : {u"27015"_s, u" 2000 "_s, u"12ab"_s, QString(), u"99999999999"_s}) {
            w.child<QLineEdit>("txtPort")->setText(port); // as pasted: one change
            ports << QString::number(s.Port) + u'/' + w.window.fieldText(View::Field::txtPort);
        }
        QCOMPARE(ports.join(u'|'), u"27015/27015|2000/ 2000 |2000/12ab|2000/|2000/99999999999"_s);
        Peer server;
        w.settings().LocalPort = 0;
        w.engine.Form_Load(QString());
        w.child<QLineEdit>("txtHost")->setText(u"127.0.0.1"_s);
        w.child<QLineEdit>("txtPwd")->setText(u"pw"_s);
        w.child<QLineEdit>("txtServerName")->setText(u"[Admin]"_s);
        QCOMPARE(QStringList({s.Host, s.Pwd, s.Voice}).join(u' '), u"127.0.0.1 pw [Admin]"_s);
        auto *port = w.child<QLineEdit>("txtPort");
        port->clear();
        QTest::keyClicks(port, u"x"_s + QString::number(server.socket.localPort()) + u"o "_s);
        QCOMPARE(port->text(), QString::number(server.socket.localPort()));
        QCOMPARE(s.Port, int(server.socket.localPort()));
        auto *say = w.child<QLineEdit>("txtSay");
        QTest::keyClicks(say, u"  hello all "_s);
        QTest::keyClick(say, Qt::Key_Return);
        QCOMPARE(say->text(), QString());
        w.child<QPushButton>("cmdServerInfo")->click();
        QCOMPARE(server.next(), "\xFF\xFF\xFF\xFF\x02rcon pw say hello all");
        QCOMPARE(server.next(), "\xFF\xFF\xFF\xFF\x02rcon pw serverinfo");
    }

    // The grid takes the extra height, pane and grid the extra width; the rows below move down.
    void resizeRule()
    {
        // twips beyond the base size of 9240 x 7860
        for (const auto &[dW, dH] : {std::pair(0, 0), {0, 1000}, {1500, 0}, {-1500, 0}, {0, -1500}, {3000, 2010}}) {
            WindowWorld w;
            Settings &s = w.settings();
            s.WinWidth = 9240 + dW;
            s.WinHeight = 7860 + dH;
            w.window.applyWindowLayout();
            const int dx = qRound(dW / 15.0);
            const int dy = qMax(0, qRound(dH / 15.0));
            QTRY_COMPARE(w.window.centralWidget()->width(), 608 + dx);
            // Both settings as applied: the width's resize does not lose the height.
            QCOMPARE(s.WinWidth, 9240 + dx * 15);
            QCOMPARE(s.WinHeight, 7860 + qRound(dH / 15.0) * 15);
            QCOMPARE(w.child<QWidget>("txtOutput")->geometry(), QRect(0, 93, 605 + dx, 132));
            QCOMPARE(w.child<QWidget>("gridPlayers")->geometry(), QRect(1, 227, 604 + dx, 189 + dy));
            for (const char *name : {"cmdKick", "cmdKickBan", "txtSay", "cmdSay"})
                QCOMPARE(w.child<QWidget>(name)->y(), 421 + dy);
            for (const char *name : {"pbarCheck", "lblResponseTime", "chkTray", "chkSettings", "cmdQuit"})
                QCOMPARE(w.child<QWidget>(name)->y(), 453 + dy);
            QCOMPARE(w.child<QWidget>("Line2")->y(), 447 + dy);
            QCOMPARE(w.child<QWidget>("cmdStart")->pos(), QPoint(532, 4)); // the right column stays
            QCOMPARE(w.child<QWidget>("cmdSay")->x(), 532);
        }
    }

    // The tray brings a window back as it was; it refuses while a dialog is open, and without a
    // tray a minimised window stays where it can be found. While a check runs, the icon alternates
    // with its picture in turned-around colours; off, it is plain at once. Where nobody can
    // answer, a box is a line on standard error and its default answer.
    void trayIconAndBoxes()
    {
        WindowWorld w;
        TrayIcon::setTrayAvailableForTesting(true);
        w.settings().SysTray = true;
        w.window.showMaximized();
        QTRY_VERIFY(w.window.isMaximized());
        Q_EMIT w.window.sysTray().activated();
        QTRY_VERIFY(!w.window.isVisible());
        QCOMPARE(w.window.windowState(), 1);
        Q_EMIT w.window.sysTray().activated();
        QTRY_VERIFY(w.window.isVisible());
        QVERIFY(w.window.isMaximized());
        QCOMPARE(w.window.windowState(), 2);
        {
            QDialog dialog(&w.window);
            dialog.show();
            StderrCapture err;
            Q_EMIT w.window.sysTray().activated();
            w.prompts.information(nullptr, u"Stops.\r\n\r\nError[10048]"_s);
            QVERIFY(!w.prompts.question(nullptr, u"Copy settings?"_s));
            w.prompts.setNextAnswer(QMessageBox::Yes);
            QVERIFY(w.prompts.question(nullptr, u"Ban him?"_s)); // answered in advance: no line
            QCOMPARE(err.text(), "Quorvane: Please return to the main window before minimizing\n"
                                 "Quorvane: Stops.  Error[10048]\nQuorvane: Copy settings?\n"_ba);
            QCOMPARE(w.window.windowState(), 2);
        }
        TrayIcon::setTrayAvailableForTesting(false);
        w.window.showMinimized();
        QTRY_COMPARE(w.window.windowState(), 1);
        QTest::qWait(20);
        QVERIFY(w.window.isVisible());

        TrayIcon &tray = w.window.sysTray();
        const auto disc = [&tray] { return tray.shownIcon().pixmap(QSize(16, 16)).toImage().pixelColor(2, 7); };
        QCOMPARE(tray.toolTip() + QString::number(tray.flashInterval()), u"Quorvane1000"_s);
        tray.setFlashInterval(10);
        w.engine.SetCommandControls(0);
        QTRY_COMPARE(disc(), QColor(255, 255, 0));
        QTRY_COMPARE(disc(), QColor(0, 0, 160));
        QTRY_COMPARE(disc(), QColor(255, 255, 0));
        w.engine.SetCommandControls(1);
        QCOMPARE(disc(), QColor(0, 0, 160));
    }

    // A stored state comes back at load. Quit pressed while a wait runs nested ends the wait,
    // the window and the application's loop, and saves the state the window has then.
    void stateAndQuitDuringAWait()
    {
        WindowWorld w(10);
        w.settings().WinState = 2;
        w.settings().LocalPort = 0;
        w.engine.Form_Load(QString());
        QTRY_VERIFY(w.window.isMaximized());
        QCOMPARE(w.window.lastState(), 2);
        QTRY_COMPARE(w.settings().WinWidth, (w.window.width() + 8) * 15); // a size noted while maximised
        w.window.showNormal();
        QTRY_VERIFY(!w.window.isMaximized());
        w.engine.cmdStart_Click();
        QSignalSpy finished(&w.engine, &Engine::finished);
        QGuiApplication::setQuitOnLastWindowClosed(false); // the window must quit by itself
        bool waitEnded = false;
        QTimer::singleShot(0, &w.window, [&] {
            QTimer::singleShot(50, w.child<QPushButton>("cmdQuit"), &QPushButton::click);
            w.engine.Pause(60); // six real seconds at this speed
            waitEnded = true;
        });
        QTimer::singleShot(8000, qApp, &QCoreApplication::quit); // a guard
        QElapsedTimer took;
        took.start();
        QCoreApplication::exec();
        QVERIFY(waitEnded);
        QVERIFY2(took.elapsed() < 3000, "the close did not end the loops");
        QVERIFY(!w.window.isVisible() && w.engine.unloaded() && !w.engine.engineRunning());
        QSettings ini(IniSettingsBackend::filePath(SettingsStore::ownApp), QSettings::IniFormat);
        QCOMPARE(ini.value(u"Settings/WinState"_s).toString(), u"0"_s);
        w.window.show();
        w.window.close(); // a second close stops nothing again
        QCOMPARE(finished.count(), 1);
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
