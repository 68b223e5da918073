// SPDX-License-Identifier: MIT
#include "FakeClock.h"
#include "core/Waits.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

class TestWaits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingToWaitRunsNoEvents()
    {
        FakeClock clock;
        bool ran = false;
        QTimer pending; // goes with the test, so it never fires into a later one
        pending.setSingleShot(true);
        connect(&pending, &QTimer::timeout, this, [&] { ran = true; });
        pending.start(0);
        Pause(clock, 0);
        Pause(clock, -2);
        PauseNoEvents(clock, 0);
        QVERIFY(!ran);
    }

    void pauseRunsEventsUntilTheClockHasMoved()
    {
        FakeClock clock;
        int ticks = 0;
        QTimer tick;
        connect(&tick, &QTimer::timeout, this, [&] {
            ++ticks;
            clock.jump(0.25);
        });
        tick.start(1);
        Pause(clock, 1.0);
        QVERIFY(ticks >= 4 && ticks <= 5);
        QVERIFY(clock.now() >= QDateTime(QDate(2026, 11, 22), QTime(12, 0, 1)));
    }

    // Past midnight the seconds start from 0 again; the wait begins anew from there.
    void midnightStartsTheWaitAnew()
    {
        FakeClock clock(QDateTime(QDate(2026, 11, 22), QTime(23, 59, 59, 500)));
        QList<QTime> seen;
        QTimer tick;
        connect(&tick, &QTimer::timeout, this, [&] {
            clock.jump(0.25);
            seen.append(clock.timeNow());
        });
        tick.start(1);
        Pause(clock, 1.0);
        // Without the new start the wait would end at once after midnight.
        QVERIFY(clock.timeNow() >= QTime(0, 0, 1));
    }

    void pauseNoEventsHoldsEventsBack()
    {
        FakeClock clock;
        bool ran = false;
        QTimer pending; // goes with the test, so it never fires into a later one
        pending.setSingleShot(true);
        connect(&pending, &QTimer::timeout, this, [&] { ran = true; });
        pending.start(0);
        PauseNoEvents(clock, 2.5);
        QVERIFY(!ran);
        QVERIFY(clock.now() > QDateTime(QDate(2026, 11, 22), QTime(12, 0, 2, 500)));
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
        // and every wait after it
        took.restart();
        Pause(clock, 30, &cancel);
        QVERIFY(took.elapsed() < 1000);
    }
};

QTEST_GUILESS_MAIN(TestWaits)
#include "tst_waits.moc"
