// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

class Clock;
class ErrorLog;
struct Settings;
struct Stats;

// servlog.txt: grows over the runs of the program, kept open from OpenLog to CloseLog.
// Writers test SaveLog and LogBrief themselves; WriteLog only tests logOpen.
class ActivityLog
{
public:
    ActivityLog(Clock &clock, ErrorLog &errors, const Settings &settings, const Stats &stats);

    void OpenLog();
    void WriteLog(const QString &strText, bool bTimeStamp = false);
    void CloseLog();
    // Opens the log when SaveLog is on and it is closed, closes it in the opposite case.
    void followSaveLog();
    bool logOpen() const { return m_logOpen; }
    void resetLogOpen() { m_logOpen = false; }

    // FileLoc, a separator, then the name: the one file not named directly behind FileLoc.
    static QString path(const QString &fileLoc);

private:
    void write(const QString &text);

    Clock &m_clock;
    ErrorLog &m_errors;
    const Settings &m_settings;
    const Stats &m_stats;
    QFile m_file;
    bool m_logOpen = false;
};
