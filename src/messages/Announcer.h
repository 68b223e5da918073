// SPDX-License-Identifier: MIT
#pragma once

#include "core/Ticker.h"

#include <QObject>

class Engine;

// The timed announcements: a one-minute timer that counts towards lngAnnounce and, at each
// due tick while the engine runs, says one line of the server messages through the queue.
// It runs whether or not the engine does; only Form_Load and the announcement dialog
// switch it.
class Announcer : public QObject
{
    Q_OBJECT
public:
    explicit Announcer(Engine &engine);

    // "ON" arms the timer at 60000 ms; any other text stops it. Either way the count starts again.
    void Announce_Timer_Control(const QString &strMode);
    void timAnnounce_Timer();

    Ticker timAnnounce;
    qint32 announceTicks = 0;

private:
    qint32 chooseMessage();

    Engine &m_engine;
};
