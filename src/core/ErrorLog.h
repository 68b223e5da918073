// SPDX-License-Identifier: MIT
#pragma once

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
// without the orderly stop.
class ErrorLog
{
public:
    using FileLocation = std::function<QString()>;
    using Terminate = std::function<void()>;

    ErrorLog(Clock &clock, View &view, FileLocation fileLoc);

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

    // How a fatal report ends the process; tests put a throwing one here.
    void setTerminate(Terminate terminate) { m_terminate = std::move(terminate); }
    // Where the operator hears of a report that returns and found ErrLog.txt unwritable
    // (standard error has the record as well).
    void setUnrecorded(std::function<void(const QString &)> tell) { m_unrecorded = std::move(tell); }

    static QString recordText(const QString &dateTime, int number, const QString &description,
                              const QString &source, int lastSystemError, const QString &AppMsg);
    static QString boxText(const QString &AppMsg, int number, const QString &description);

private:
    Clock &m_clock;
    View &m_view;
    FileLocation m_fileLoc;
    Terminate m_terminate;
    std::function<void(const QString &)> m_unrecorded;
};

