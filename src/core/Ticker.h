// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

class Clock;

// A repeating timer of the window whose tick reaches its handler even while the handler
// of an earlier tick still runs, nested inside a wait. A plain QTimer holds its own next
// tick back until its handler returns, so a check that outlasts the interval would
// silently swallow the ticks that fall inside it.
//
// The interval is in milliseconds of the engine's clock: with the system clock they are
// real milliseconds; a test's fast clock makes a minute pass in a moment.
class Ticker : public QObject
{
    Q_OBJECT
public:
    explicit Ticker(Clock &clock, QObject *parent = nullptr);

    // On an armed timer a new interval counts from now, as on a plain timer.
    void setInterval(int ms);
    int interval() const { return m_interval; }
    // Arms from now: the first tick comes one interval later. Arming again restarts.
    void start();
    void stop();
    bool isActive() const { return m_timer.isActive(); }

Q_SIGNALS:
    void tick();

private:
    Clock &m_clock;
    QTimer m_timer;
    int m_interval = 0;
    quint64 m_arming = 0;
};
