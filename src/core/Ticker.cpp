// SPDX-License-Identifier: MIT
#include "core/Ticker.h"

#include "core/Clock.h"

Ticker::Ticker(Clock &clock, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    // The handler runs from the event queue, not from inside the timer's own event, so
    // the timer is free to fire again while that handler waits. A tick still queued when
    // the timer is stopped or re-armed is dropped.
    connect(&m_timer, &QTimer::timeout, this, [this] {
        QMetaObject::invokeMethod(
            this,
            [this, arming = m_arming] {
                if (arming == m_arming && m_timer.isActive())
                    Q_EMIT tick();
            },
            Qt::QueuedConnection);
    });
}

void Ticker::setInterval(int ms)
{
    m_interval = ms;
    if (isActive())
        start();
}

void Ticker::start()
{
    const qint64 real = m_clock.realMsFor(m_interval / 1000.0);
    // A clock that only moves by hand has no pace of its own; then the interval is real time.
    const qint64 ms = real >= 0 ? real : m_interval;
    ++m_arming;
    m_timer.start(static_cast<int>(qBound<qint64>(1, ms, qint64{std::numeric_limits<int>::max()})));
}

void Ticker::stop()
{
    ++m_arming;
    m_timer.stop();
}
