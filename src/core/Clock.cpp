// SPDX-License-Identifier: MIT
#include "core/Clock.h"

#include <QThread>

#include <cmath>
#include <limits>

double Clock::secondsSinceMidnight() const
{
    return now().time().msecsSinceStartOfDay() / 1000.0;
}

double Clock::timeOfDay() const
{
    return secondsSinceMidnight() / 86400.0;
}

int Clock::timerMsFor(double seconds) const
{
    const qint64 real = realMsFor(seconds);
    const qint64 ms = real >= 0 ? real : static_cast<qint64>(std::ceil(seconds * 1000.0));
    return static_cast<int>(qBound<qint64>(1, ms, qint64{std::numeric_limits<int>::max()}));
}

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTime();
}

qint64 SystemClock::realMsFor(double seconds) const
{
    return seconds <= 0 ? 0 : static_cast<qint64>(std::ceil(seconds * 1000.0));
}

void SystemClock::sleep(double seconds)
{
    if (seconds > 0)
        QThread::usleep(static_cast<unsigned long>(seconds * 1e6));
}
