// SPDX-License-Identifier: MIT
#pragma once

#include "core/Clock.h"

#include <QElapsedTimer>

#include <cmath>

// A clock the test drives. It starts at a fixed moment and moves by jump(); with a
// speed above 0 it also runs on by itself, `speed` clock seconds per real second,
// so that waits of seconds pass in milliseconds while loopback replies still arrive.
class FakeClock final : public Clock
{
    Q_OBJECT
public:
    static QDateTime firstMoment() { return QDateTime(QDate(2026, 11, 22), QTime(12, 0, 0)); }

    explicit FakeClock(QDateTime start = firstMoment(), double speed = 0)
        : m_base(std::move(start))
        , m_speed(speed)
    {
        m_real.start();
    }

    QDateTime now() const override
    {
        return m_speed <= 0 ? m_base : m_base.addMSecs(static_cast<qint64>(m_real.elapsed() * m_speed));
    }
    qint64 realMsFor(double seconds) const override
    {
        return m_speed <= 0 ? -1 : static_cast<qint64>(std::ceil(seconds * 1000.0 / m_speed));
    }
    void sleep(double seconds) override { jump(seconds); }

    void jump(double seconds) { setNow(now().addMSecs(static_cast<qint64>(std::llround(seconds * 1000.0)))); }
    void setNow(const QDateTime &moment)
    {
        m_base = moment;
        m_real.restart();
        Q_EMIT jumped();
    }

private:
    QDateTime m_base;
    double m_speed;
    QElapsedTimer m_real;
};
