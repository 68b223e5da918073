// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class Clock;

// Ends every wait that is open or still to come, for good: the program is closing and
// nothing is left to wait for.
class WaitCancel : public QObject
{
    Q_OBJECT
public:
    bool isCancelled() const { return m_cancelled; }
    void cancel();

Q_SIGNALS:
    void cancelled();

private:
    bool m_cancelled = false;
};

// Pause: waits `seconds` of clock time while all events keep running. It blocks in the
// event loop, never spins. A wait that spans midnight begins anew at the first moment
// noticed after it.
void Pause(Clock &clock, double seconds, const WaitCancel *cancel = nullptr);

// PauseNoEvents: the same wait with every event held back until it ends.
void PauseNoEvents(Clock &clock, double seconds);
