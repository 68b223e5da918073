// SPDX-License-Identifier: MIT
#include "FakeClock.h"

#include <cmath>

FakeClock::FakeClock(QDateTime start, double speed)
    : m_base(std::move(start))
    , m_speed(speed)
{
    m_real.start();
}

QDateTime FakeClock::now() const
{
    if (m_speed <= 0)
        return m_base;
    return m_base.addMSecs(static_cast<qint64>(m_real.elapsed() * m_speed));
}

qint64 FakeClock::realMsFor(double seconds) const
{
    if (m_speed <= 0)
        return -1;
    return static_cast<qint64>(std::ceil(seconds * 1000.0 / m_speed));
}

void FakeClock::jump(double seconds)
{
    m_base = now().addMSecs(static_cast<qint64>(std::llround(seconds * 1000.0)));
    m_real.restart();
    Q_EMIT jumped();
}

void FakeClock::setNow(const QDateTime &moment)
{
    m_base = moment;
    m_real.restart();
    Q_EMIT jumped();
}
