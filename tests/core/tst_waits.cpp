// SPDX-License-Identifier: MIT
#include "FakeClock.h"
#include "core/Waits.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

class TestWaits : public QObject
{
    Q_OBJECT

    // Moves the clock a quarter second at every event-loop turn.
    struct Ticker
    {
        QTimer timer;
        explicit Ticker(FakeClock &clock)
        {
            QObject::connect(&timer, &QTimer::timeout, &timer, [&clock] { clock.jump(0.25); });
            timer.start(1);
        }
    };

private Q_SLOTS:
    void eventsRunOnlyInPause()
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
        Ticker ticker(clock);
        Pause(clock, 1.0);
        QVERIFY(ran);
        QVERIFY(clock.now() >= QDateTime(QDate(2026, 11, 22), QTime(12, 0, 3, 500)));
    }

    // Past midnight the seconds start from 0 again; the wait begins anew from there.
    void midnightStartsTheWaitAnew()
    {
        FakeClock clock(QDateTime(QDate(2026, 11, 22), QTime(23, 59, 59, 500)));
        Ticker ticker(clock);
        Pause(clock, 1.0);
        QVERIFY(clock.timeNow() >= QTime(0, 0, 1));
    }

    void cancelledWaitEndsAtOnce()
    {
        FakeClock clock(QDateTime(QDate(2026, 11, 22), QTime(12, 0)), 1);
        QElapsedTimer took;
        took.start();
        WaitCancel cancel;
        QTimer::singleShot(10, &cancel, &WaitCancel::cancel);
        Pause(clock, 30, &cancel);
        QVERIFY(took.elapsed() < 5000);
        took.restart();
        Pause(clock, 30, &cancel); // and every wait after it
        QVERIFY(took.elapsed() < 1000);
    }
};

QTEST_GUILESS_MAIN(TestWaits)
#include "tst_waits.moc"
