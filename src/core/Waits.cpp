// SPDX-License-Identifier: MIT
#include "core/Waits.h"

#include "core/Clock.h"

#include <QEventLoop>
#include <QTimer>

namespace {

// The loop both waits share: measured by the seconds since midnight, begun anew at the
// first moment noticed after midnight. `waitFor` blocks for up to the remaining seconds
// and answers false when the wait is to end early.
template<typename WaitFor>
void waitOut(Clock &clock, double seconds, WaitFor &&waitFor)
{
    if (seconds <= 0)
        return;
    // The start is noted in single precision, as the wait has always been measured.
    float start = static_cast<float>(clock.secondsSinceMidnight());
    for (;;) {
        const double present = clock.secondsSinceMidnight();
        // Compared in the start's own precision, so that rounding is never taken for midnight.
        if (static_cast<float>(present) < start)
            start = static_cast<float>(present);
        if (!(present <= start + seconds))
            return;
        if (!waitFor(start + seconds - present))
            return;
    }
}

} // namespace

void WaitCancel::cancel()
{
    m_cancelled = true;
    Q_EMIT cancelled();
}

void Pause(Clock &clock, double seconds, const WaitCancel *cancel)
{
    waitOut(clock, seconds, [&](double remaining) {
        if (cancel && cancel->isCancelled())
            return false;
        QEventLoop loop;
        if (cancel)
            QObject::connect(cancel, &WaitCancel::cancelled, &loop, &QEventLoop::quit);
        QTimer wake;
        wake.setSingleShot(true);
        QObject::connect(&wake, &QTimer::timeout, &loop, &QEventLoop::quit);
        QObject::connect(&clock, &Clock::jumped, &loop, &QEventLoop::quit);
        const qint64 ms = clock.realMsFor(remaining);
        if (ms >= 0)
            wake.start(static_cast<int>(qMin<qint64>(ms + 1, 24 * 3600 * 1000)));
        // Below 0: the application is quitting and no nested loop can run any more.
        return loop.exec() >= 0;
    });
}

void PauseNoEvents(Clock &clock, double seconds)
{
    waitOut(clock, seconds, [&](double remaining) {
        clock.sleep(remaining + 0.001);
        return true;
    });
}
