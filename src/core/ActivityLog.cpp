// SPDX-License-Identifier: MIT
#include "core/ActivityLog.h"

#include "core/Clock.h"
#include "core/ErrorLog.h"
#include "core/FileWrite.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"

#include <QDir>

#include <cerrno>

namespace {
const QString crlf = QStringLiteral("\r\n");
const QString rule = QString(52, u'-');
} // namespace

ActivityLog::ActivityLog(Clock &clock, ErrorLog &errors, const Settings &settings, const Stats &stats)
    : m_clock(clock)
    , m_errors(errors)
    , m_settings(settings)
    , m_stats(stats)
{
}

QString ActivityLog::path(const QString &fileLoc)
{
    return fileLoc + QDir::separator() + QStringLiteral("servlog.txt");
}

void ActivityLog::write(const QString &text)
{
    // Written through at once, so that a fatal end loses no record and a failed one leaves no part.
    FileWrite::appendTo(m_file, Text::toWire(text));
}

void ActivityLog::OpenLog()
{
    m_errors.catching(QStringLiteral("Error opening server log"), [&] {
        m_file.setFileName(path(m_settings.FileLoc));
        if (!FileWrite::openToAppend(m_file))
            throw RuntimeError(RuntimeError::FileError, m_file.errorString(), QStringLiteral("Quorvane"), errno);
        const QDateTime now = m_clock.now();
        write(rule + crlf + QStringLiteral("Logging Started on ") + Text::dateText(now.date()) + QStringLiteral(" at ")
              + Text::timeText(now.time()) + crlf + rule + crlf + crlf);
        m_logOpen = true;
    });
}

void ActivityLog::WriteLog(const QString &strText, bool bTimeStamp)
{
    if (!m_logOpen)
        return;
    m_errors.catching(QStringLiteral("Error writing out to server log"), [&] {
        QString record;
        if (bTimeStamp)
            record = u'[' + Text::timeText(m_clock.timeNow()) + u']' + crlf;
        write(record + strText + crlf + crlf);
    });
}

void ActivityLog::followSaveLog()
{
    if (m_settings.SaveLog && !m_logOpen)
        OpenLog();
    else if (!m_settings.SaveLog && m_logOpen)
        CloseLog();
}

void ActivityLog::CloseLog()
{
    m_errors.catching(QStringLiteral("Error closing server log"), [&] {
        const QDateTime now = m_clock.now();
        const Stats &s = m_stats;
        const auto line = [](const QString &text) { return text + crlf; };
        QString tail = line(rule)
            + line(QStringLiteral("Logging Completed on ") + Text::dateText(now.date()) + QStringLiteral(" at ")
                   + Text::timeText(now.time()))
            + line(QStringLiteral("Server Stats:"))
            + line(QStringLiteral("  - Quorvane started on ") + Text::dateText(s.startdate) + QStringLiteral(" at ")
                   + Text::timeOfDayText(s.starttime) + u'.')
            + line(QStringLiteral("  - Hosted %1 total players.").arg(s.totalplayers))
            + line(QStringLiteral("  - Ran %1 maps total.").arg(s.totalmaps))
            + line(QStringLiteral("  - Ran %1 total checks.").arg(s.checks))
            + line(QStringLiteral("  - Banned %1 players.").arg(s.banadds))
            + line(QStringLiteral("  - Kicked %1 banned players.").arg(s.bankicks))
            + line(QStringLiteral("  - Kicked %1 players for high ping.").arg(s.pingkicks))
            + line(QStringLiteral("  - Kicked %1 players for TKs.").arg(s.tkkicks))
            + line(QStringLiteral("  - Closed while on ") + s.map + QStringLiteral(" map."))
            + line(QStringLiteral("  - Closed with %1 players on the server.").arg(s.players))
            + line(rule);
        write(tail);
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            throw RuntimeError(RuntimeError::FileError, m_file.errorString(), QStringLiteral("Quorvane"), errno);
        m_logOpen = false;
    });
}
