// SPDX-License-Identifier: MIT
// The main window's size, state, tray and close.
#include "StderrCapture.h"
#include "WindowWorld.h"
#include "ui/TrayIcon.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class TestWindowLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resizeRule_data()
    {
        QTest::addColumn<int>("dW"); // twips beyond the base size of 9240 x 7860
        QTest::addColumn<int>("dH");
        QTest::newRow("base size") << 0 << 0;
        QTest::newRow("1000 taller") << 0 << 1000;
        QTest::newRow("wider") << 1500 << 0;
        QTest::newRow("narrower") << -1500 << 0;
        QTest::newRow("below base height") << 0 << -1500;
        QTest::newRow("wider and taller") << 3000 << 2010;
    }

    void resizeRule()
    {
        QFETCH(int, dW);
        QFETCH(int, dH);
        WindowWorld w;
        Settings &s = w.settings();
        s.WinWidth = 9240 + dW;
        s.WinHeight = 7860 + dH;
        s.WinState = 0;
        w.window.applyWindowLayout();
        const int dWpx = qRound(dW / 15.0);
        const int dHpx = qRound(dH / 15.0);
        QTRY_COMPARE(w.window.centralWidget()->width(), 608 + dWpx);
        QCOMPARE(w.window.centralWidget()->height(), 472 + dHpx);
        // Both settings as applied: the width's resize does not lose the height.
        QCOMPARE(s.WinWidth, (616 + dWpx) * 15);
        QCOMPARE(s.WinHeight, (524 + dHpx) * 15);

        const int grow = qMax(0, dHpx);
        QCOMPARE(w.child<QWidget>("txtOutput")->geometry(), QRect(0, 93, 605 + dWpx, 132));
        QCOMPARE(w.child<QWidget>("gridPlayers")->geometry(), QRect(1, 227, 604 + dWpx, 189 + grow));
        for (const char *name : {"cmdKick", "cmdKickBan", "txtSay", "cmdSay"})
            QCOMPARE(w.child<QWidget>(name)->y(), 421 + grow);
        for (const char *name : {"pbarCheck", "lblResponseTime", "chkTray", "chkSettings", "cmdQuit"})
            QCOMPARE(w.child<QWidget>(name)->y(), 453 + grow);
        QCOMPARE(w.child<QWidget>("Line2")->y(), 447 + grow);
        // The buttons at the right stay where they were drawn.
        QCOMPARE(w.child<QWidget>("cmdStart")->pos(), QPoint(532, 4));
        QCOMPARE(w.child<QWidget>("cmdSay")->x(), 532);
    }

    void savedStateApplies()
    {
        WindowWorld w;
        w.settings().WinState = 2;
        w.window.applyWindowLayout();
        QTRY_VERIFY(w.window.isMaximized());
        QCOMPARE(w.window.windowState(), 2);
        QCOMPARE(w.window.lastState(), 2);
        // A size noted while maximised is what gets stored.
        QTRY_COMPARE(w.settings().WinWidth, (w.window.width() + 8) * 15);
    }

    void trayKeepsMaximised()
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
        TrayIcon::setTrayAvailableForTesting(false);
    }

    void noTrayKeepsTheWindow()
    {
        WindowWorld w;
        w.settings().SysTray = true;
        w.window.show();
        w.window.showMinimized();
        QTRY_COMPARE(w.window.windowState(), 1);
        QTest::qWait(20);
        QVERIFY(w.window.isVisible());
    }

    void trayRefusesWithDialogOpen()
    {
        WindowWorld w;
        w.settings().SysTray = true;
        QDialog dialog(&w.window);
        dialog.show();
        StderrCapture err;
        w.window.sysTray_Click();
        QCOMPARE(err.text(), "Quorvane: Please return to the main window before minimizing\n"_ba);
        QCOMPARE(w.window.windowState(), 0);
        QVERIFY(w.window.isVisible());
    }

    void quitUnloadsOnce()
    {
        WindowWorld w;
        QSignalSpy finished(&w.window.engine(), &Engine::finished);
        w.child<QPushButton>("cmdQuit")->click();
        QVERIFY(!w.window.isVisible());
        QVERIFY(w.window.engine().unloaded());
        w.window.show();
        w.window.close();
        QCOMPARE(finished.count(), 1);
    }

    // Closing while a wait runs nested: the wait gives up, the window goes and the
    // application's loop ends.
    void closeInsideWaitEndsTheRun()
    {
        WindowWorld w(10);
        w.settings().LocalPort = 0;
        w.window.engine().Form_Load(QString());
        w.window.engine().cmdStart_Click();
        QVERIFY(w.window.engine().engineRunning);
        QGuiApplication::setQuitOnLastWindowClosed(false); // the window must quit by itself
        bool waitEnded = false;
        QTimer::singleShot(0, &w.window, [&] {
            QTimer::singleShot(50, &w.window, &QWidget::close);
            w.window.engine().Pause(60); // six real seconds at this speed
            waitEnded = true;
        });
        QTimer guard;
        guard.setSingleShot(true);
        connect(&guard, &QTimer::timeout, qApp, &QCoreApplication::quit);
        guard.start(8000);
        QElapsedTimer took;
        took.start();
        QCoreApplication::exec();
        QVERIFY(waitEnded);
        QVERIFY2(took.elapsed() < 3000, "the close did not end the loops");
        QVERIFY(!w.window.isVisible());
        QVERIFY(w.window.engine().unloaded());
        QVERIFY(!w.window.engine().engineRunning);
    }
};

QTEST_MAIN(TestWindowLayout)
#include "tst_windowlayout.moc"
