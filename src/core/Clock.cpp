// SPDX-License-Identifier: MIT
#include "core/Clock.h"

#include <QThread>

#include <cmath>

double Clock::secondsSinceMidnight() const
{
    return now().time().msecsSinceStartOfDay() / 1000.0;
}

double Clock::timeOfDay() const
{
    return secondsSinceMidnight() / 86400.0;
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
