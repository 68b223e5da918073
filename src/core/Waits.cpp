// SPDX-License-Identifier: MIT
#include "core/Waits.h"

#include "core/Clock.h"

#include <QEventLoop>
#include <QTimer>

void Pause(Clock &clock, double seconds, const std::function<bool()> &abandon)
{
    if (seconds <= 0)
        return;
    // The start is noted in single precision, as the wait has always been measured.
    float start = static_cast<float>(clock.secondsSinceMidnight());
    for (;;) {
        double present = clock.secondsSinceMidnight();
        if (present < start)
            start = static_cast<float>(present);
        if (!(present <= start + seconds))
            return;
        if (abandon && abandon())
            return;

        QEventLoop loop;
        QTimer wake;
        wake.setSingleShot(true);
        QObject::connect(&wake, &QTimer::timeout, &loop, &QEventLoop::quit);
        QObject::connect(&clock, &Clock::jumped, &loop, &QEventLoop::quit);
        const qint64 ms = clock.realMsFor(start + seconds - present);
        if (ms >= 0)
            wake.start(static_cast<int>(qMin<qint64>(ms + 1, 24 * 3600 * 1000)));
        if (loop.exec() < 0)
            return; // the application is quitting: no nested loop can run any more
    }
}

void PauseNoEvents(Clock &clock, double seconds)
{
    if (seconds <= 0)
        return;
    float start = static_cast<float>(clock.secondsSinceMidnight());
    for (;;) {
        double present = clock.secondsSinceMidnight();
        if (present < start)
            start = static_cast<float>(present);
        if (!(present <= start + seconds))
            return;
        clock.sleep(start + seconds - present + 0.001);
    }
}
