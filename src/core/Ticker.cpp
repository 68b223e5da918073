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
    ++m_arming;
    m_timer.start(m_clock.timerMsFor(m_interval / 1000.0));
}

void Ticker::stop()
{
    ++m_arming;
    m_timer.stop();
}
