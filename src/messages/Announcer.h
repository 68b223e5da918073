// SPDX-License-Identifier: MIT
#pragma once

#include "core/Ticker.h"

#include <QObject>

class ActivityLog;
class Clock;
class CommandQueue;
class ErrorLog;
class ListFiles;
class OutputPane;
class RunControl;
class Variables;
struct Settings;

// The timed announcements: a one-minute timer that counts towards lngAnnounce and, at each
// due tick while the engine runs, says one line of the server messages through the queue.
// It runs whether or not the engine does; only Form_Load and the announcement dialog
// switch it.
class Announcer : public QObject
{
    Q_OBJECT
public:
    Announcer(Clock &clock, const Settings &settings, ListFiles &lists, const Variables &variables,
              CommandQueue &queue, OutputPane &pane, ActivityLog &log, ErrorLog &errors, const RunControl &run);

    // "ON" arms the timer at 60000 ms; any other text stops it. Either way the count starts again.
    void Announce_Timer_Control(const QString &strMode);
    void timAnnounce_Timer();

    Ticker timAnnounce;
    qint32 announceTicks = 0;

Q_SIGNALS:
    // An announcement has gone through the queue: the words after "say ".
    void announced(const QString &words);

private:
    qint32 chooseMessage();

    Clock &m_clock;
    const Settings &m_settings;
    ListFiles &m_lists;
    const Variables &m_variables;
    CommandQueue &m_queue;
    OutputPane &m_pane;
    ActivityLog &m_log;
    const RunControl &m_run;
};
