// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class Clock;
class View;

// Thrown by the test terminator so that a fatal report can be seen without ending the
// test process. Production code never catches it.
struct FatalExit
{
    QString AppMsg;
};

// ReportError: the one way to report a failure. Call it from inside a catch block; it
// reads the error in flight (number, description, source, last system error), appends
// a record to FileLoc + "ErrLog.txt" and, when fatal, shows the box and ends the process
// without the orderly stop. Each report is told as well, for a journal.
class ErrorLog : public QObject
{
    Q_OBJECT
public:
    using FileLocation = std::function<QString()>;
    using Terminate = std::function<void()>;
    using Unrecorded = std::function<void(const QString &)>;

    // `terminate`: how a fatal report ends the process (empty: at once, with nothing saved;
    // tests throw FatalExit). `unrecorded`: where the operator hears of a report that returns
    // and found ErrLog.txt unwritable (standard error has the record as well).
    ErrorLog(Clock &clock, View &view, FileLocation fileLoc, Terminate terminate = {}, Unrecorded unrecorded = {});

    void ReportError(bool bFatal, const QString &AppMsg);

    // Runs the body of a routine that catches its own failures and reports them with
    // AppMsg. Answers false when the body failed (only reached for a report that returns).
    template<typename Body>
    bool catching(const QString &AppMsg, Body &&body, bool bFatal = true)
    {
        try {
            body();
            return true;
        } catch (const FatalExit &) {
            throw; // already reported; only a test's terminator gets here
        } catch (...) {
            ReportError(bFatal, AppMsg);
            return false;
        }
    }

    // Runs an event handler that no other routine catches for: a failure is recorded and
    // ends the program instead of passing by unrecorded.
    void guarded(const QString &routine, const std::function<void()> &handler)
    {
        catching(QStringLiteral("Unexpected error in ") + routine, handler);
    }

    static QString recordText(const QString &dateTime, int number, const QString &description,
                              const QString &source, int lastSystemError, const QString &AppMsg);
    static QString boxText(const QString &AppMsg, int number, const QString &description);

Q_SIGNALS:
    // The record is written (or went to standard error); a fatal report's box and end follow.
    void reported(bool bFatal, const QString &AppMsg, int number, const QString &description);

private:
    Clock &m_clock;
    View &m_view;
    FileLocation m_fileLoc;
    Terminate m_terminate;
    Unrecorded m_unrecorded;
};

