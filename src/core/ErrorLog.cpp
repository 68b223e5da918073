// SPDX-License-Identifier: MIT
#include "core/ErrorLog.h"

#include "core/Clock.h"
#include "core/FileWrite.h"
#include "core/RuntimeError.h"
#include "core/Text.h"
#include "core/View.h"


#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace {

struct PresentError
{
    int number = 0;
    QString description;
    QString source = QStringLiteral("Quorvane");
    int lastSystemError = 0;
};

PresentError presentError()
{
    PresentError e;
    e.lastSystemError = errno;
    const std::exception_ptr current = std::current_exception();
    if (!current)
        return e;
    try {
        std::rethrow_exception(current);
    } catch (const RuntimeError &error) {
        e.number = error.number();
        e.description = error.description();
        e.source = error.source();
        if (error.lastSystemError() != 0)
            e.lastSystemError = error.lastSystemError();
    } catch (const std::bad_alloc &) {
        e.number = 7;
        e.description = QStringLiteral("Out of memory");
    } catch (const std::exception &error) {
        e.number = 51;
        e.description = QStringLiteral("Internal error: ") + QString::fromLocal8Bit(error.what());
    } catch (...) {
        e.number = 51;
        e.description = QStringLiteral("Internal error");
    }
    return e;
}

} // namespace

ErrorLog::ErrorLog(Clock &clock, View &view, FileLocation fileLoc, Terminate terminate, Unrecorded unrecorded)
    : m_clock(clock)
    , m_view(view)
    , m_fileLoc(std::move(fileLoc))
    , m_terminate(terminate ? std::move(terminate) : [] { std::_Exit(1); })
    , m_unrecorded(std::move(unrecorded))
{
}

QString ErrorLog::recordText(const QString &dateTime, int number, const QString &description,
                             const QString &source, int lastSystemError, const QString &AppMsg)
{
    const QString crlf = QStringLiteral("\r\n");
    return u'"' + QStringLiteral("[") + dateTime + QStringLiteral("] - Error ") + QString::number(number)
        + QStringLiteral(": ") + description + crlf
        + QStringLiteral("\tCalling Function: ") + source + crlf
        + QStringLiteral("\tLast DLL: ") + QString::number(lastSystemError) + crlf
        + QStringLiteral("\tSource: ") + source + crlf
        + QStringLiteral("\tAppMsg: ") + AppMsg + u'"' + crlf;
}

QString ErrorLog::boxText(const QString &AppMsg, int number, const QString &description)
{
    return QStringLiteral("Quorvane has encountered an error and will shut down.\r\n\r\n") + AppMsg
        + u'[' + QString::number(number) + QStringLiteral("]: ") + description;
}

void ErrorLog::ReportError(bool bFatal, const QString &AppMsg)
{
    const PresentError error = presentError();
    const QString when = Text::dateTimeText(m_clock.now());
    const QString record = recordText(when, error.number, error.description, error.source, error.lastSystemError, AppMsg);
    try {
        FileWrite::append(m_fileLoc() + QStringLiteral("ErrLog.txt"), Text::toWire(record));
    } catch (const RuntimeError &unwritten) {
        // The record goes where it still can; the box and the end of a fatal error follow as ever.
        const QByteArray text = QByteArrayLiteral("Quorvane: ErrLog.txt could not be written (")
            + unwritten.description().toLocal8Bit() + QByteArrayLiteral("). The record:\n") + record.toLocal8Bit();
        std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stderr);
        std::fflush(stderr);
        if (!bFatal && m_unrecorded)
            m_unrecorded(QStringLiteral("Error not recorded in ErrLog.txt (") + unwritten.description()
                         + QStringLiteral("): ") + AppMsg);
    }
    Q_EMIT reported(bFatal, AppMsg, error.number, error.description);
    if (!bFatal)
        return;
    m_view.messageBox(boxText(AppMsg, error.number, error.description));
    m_terminate();
    std::_Exit(1); // a terminator that returns must not let the caller carry on
}
