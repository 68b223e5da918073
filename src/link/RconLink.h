// SPDX-License-Identifier: MIT
#pragma once

#include "link/SenderGate.h"

#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QString>

#include <functional>

class ActivityLog;
class Clock;
class ErrorLog;
class OutputPane;
class QUdpSocket;
class RunControl;
class View;
struct Settings;

// UDPClient: the one datagram socket, bound once to LocalPort for the whole run. A send
// frames one command into one datagram; an arrival from the server (every arrival, with
// ServerOnly off) is cleaned and appended to the pane, which is the only receive buffer.
// Nothing ties a reply to its command.
class RconLink : public QObject
{
    Q_OBJECT
public:
    // The destination and the password are read from `view` at every send. `busy`: an
    // exchange is under way, so the line about strangers waits.
    RconLink(Clock &clock, View &view, const Settings &settings, OutputPane &pane, ActivityLog &log, ErrorLog &errors,
             const RunControl &run, std::function<bool()> busy);
    ~RconLink() override;

    // Raises RuntimeError with the socket's own number and words when the port is taken.
    void bind(quint16 localPort);
    bool isClosed() const;
    quint16 localPort() const;
    void close();

    void UDPClient_SendMessage(const QString &Cmd, bool bShowText = false, bool bRconCmd = false);
    void UDPClient_DataArrival(qint64 intBytes);

    // The last datagram taken from the server carried text.
    bool serverAnswered() const { return m_serverAnswered; }
    // serverAnswered false, as the load of the window leaves it.
    void forgetAnswer() { m_serverAnswered = false; }
    SenderGate &gate() { return m_gate; }

Q_SIGNALS:
    // A datagram from the server has been taken in, text or not: the last step of its arrival.
    void replyArrived();

private:
    struct Outgoing
    {
        QString Cmd;
        bool bShowText = false;
        bool bRconCmd = false;
        QString host;
        quint16 port = 0;
        QString password;
        QString datagram;
        QString echo;
    };
    static constexpr int lastSendStep = 7;

    void sendStep(int step, Outgoing &out);
    void readPending();
    QHostAddress resolve(const QString &host);

    Clock &m_clock;
    View &m_view;
    const Settings &m_settings;
    OutputPane &m_pane;
    ActivityLog &m_log;
    ErrorLog &m_errors;
    const RunControl &m_run;
    QUdpSocket *m_socket;
    SenderGate m_gate;
    QByteArray m_datagram; // reused, so that a datagram dropped costs no allocation
    QHash<QString, QHostAddress> m_resolved;
    double ResponseTimeStart = 0; // seconds since midnight, as precise as the arrival it is compared with
    bool m_serverAnswered = false;
};
