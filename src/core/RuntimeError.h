// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <exception>

// A failure raised by the program itself. ReportError reads number, description,
// source and the last system error from the one in flight.
class RuntimeError : public std::exception
{
public:
    // Our own numbering; only SendFailed has a meaning for the logic.
    enum Number : int {
        InvalidCall = 5,        // a cut with a start below 1 or a negative length
        Overflow = 6,           // a number outside the range of its type
        OutOfRange = 9,         // an index beyond a fixed table
        TypeMismatch = 13,      // text that is no number where a number is needed
        FileError = 75,         // a file that cannot be opened, created or written
        SendFailed = 126,       // a datagram that could not be handed to the network
        SocketError = 10000,    // base for socket errors: 10000 + the socket's error code
    };

    RuntimeError(int number, QString description, QString source = QStringLiteral("Quorvane"),
                 int lastSystemError = 0);

    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    const QString &source() const { return m_source; }
    int lastSystemError() const { return m_lastSystemError; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_description;
    QString m_source;
    int m_lastSystemError;
    QByteArray m_what;
};
