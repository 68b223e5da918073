// SPDX-License-Identifier: MIT
#pragma once

#include "core/Clock.h"

#include <QElapsedTimer>

// A clock the test drives. It starts at a fixed moment and moves by jump(); with a
// speed above 0 it also runs on by itself, `speed` clock seconds per real second,
// so that waits of seconds pass in milliseconds while loopback replies still arrive.
class FakeClock final : public Clock
{
    Q_OBJECT
public:
    explicit FakeClock(QDateTime start = QDateTime(QDate(2026, 11, 22), QTime(12, 0, 0)), double speed = 0);

    QDateTime now() const override;
    qint64 realMsFor(double seconds) const override;
    void sleep(double seconds) override { jump(seconds); }

    void jump(double seconds);
    void setNow(const QDateTime &moment);

private:
    QDateTime m_base;
    double m_speed;
    QElapsedTimer m_real;
};
