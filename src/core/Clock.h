// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QDateTime>
#include <QObject>
#include <QTime>

// The one source of date and time for the engine. Tests drive a fake one so that
// no test sits out real seconds; everything else uses SystemClock.
class Clock : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual QDateTime now() const = 0;
    // Real milliseconds to wait until this clock has moved on by `seconds`.
    // Negative when only jump() moves the clock.
    virtual qint64 realMsFor(double seconds) const = 0;
    // The interval for a timer that is to fire when this clock has moved on by `seconds`:
    // real time for a clock that only moves by hand. At least 1 ms.
    int timerMsFor(double seconds) const;
    // Blocks the thread, handling no events, until the clock has moved on by `seconds`.
    virtual void sleep(double seconds) = 0;

    QDate today() const { return now().date(); }
    QTime timeNow() const { return now().time(); }
    double secondsSinceMidnight() const;
    // Time of day as a fraction of a day (0.5 is noon), with no date.
    double timeOfDay() const;

Q_SIGNALS:
    // The clock was moved by hand; waiters look at it again.
    void jumped();
};

class SystemClock final : public Clock
{
    Q_OBJECT
public:
    using Clock::Clock;
    QDateTime now() const override;
    qint64 realMsFor(double seconds) const override;
    void sleep(double seconds) override;
};
