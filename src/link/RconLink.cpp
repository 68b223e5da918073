// SPDX-License-Identifier: MIT
#include "link/RconLink.h"

#include "core/ActivityLog.h"
#include "core/Clock.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/RunControl.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "core/Text.h"
#include "core/View.h"
#include "link/RconCodec.h"

#include <QHostInfo>
#include <QUdpSocket>

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace {

const QString sendWords = QStringLiteral("Error sending via UDP (UDPClient_SendMessage)");
const QString readWords = QStringLiteral("Error reading UDP (UDPClient_DataArrival)");

[[noreturn]] void sendFailed(const QString &why)
{
    throw RuntimeError(RuntimeError::SendFailed, why, QStringLiteral("UDPClient"));
}

} // namespace

RconLink::RconLink(Clock &clock, View &view, const Settings &settings, OutputPane &pane, ActivityLog &log,
                   ErrorLog &errors, const RunControl &run, std::function<bool()> busy)
    : m_clock(clock)
    , m_view(view)
    , m_settings(settings)
    , m_pane(pane)
    , m_log(log)
    , m_errors(errors)
    , m_run(run)
    , m_socket(new QUdpSocket(this))
    , m_gate(clock, std::move(busy))
{
    connect(m_socket, &QUdpSocket::readyRead, this, &RconLink::readPending);
    connect(&m_gate, &SenderGate::notice, this, [this](const QString &line) {
        if (m_run.unloaded())
            return;
        m_pane.append(QStringLiteral("\r\n") + line + QStringLiteral("\r\n"));
        if (m_settings.SaveLog)
            m_log.WriteLog(line);
    });
}

RconLink::~RconLink() = default;

void RconLink::bind(quint16 localPort)
{
    if (!m_socket->bind(QHostAddress::AnyIPv4, localPort, QAbstractSocket::DontShareAddress)) {
        const int systemError = errno;
        throw RuntimeError(RuntimeError::SocketError + static_cast<int>(m_socket->error()), m_socket->errorString(),
                           QStringLiteral("UDPClient"), systemError);
    }
}

bool RconLink::isClosed() const
{
    return m_socket->state() == QAbstractSocket::UnconnectedState;
}

quint16 RconLink::localPort() const
{
    return m_socket->localPort();
}

void RconLink::close()
{
    m_socket->close();
}

QHostAddress RconLink::resolve(const QString &host)
{
    QHostAddress address;
    if (address.setAddress(host))
        return address;
    const auto known = m_resolved.constFind(host);
    if (known != m_resolved.constEnd())
        return *known;
    const QHostInfo info = QHostInfo::fromName(host);
    for (const QHostAddress &candidate : info.addresses()) {
        if (candidate.protocol() == QAbstractSocket::IPv4Protocol) {
            m_resolved.insert(host, candidate);
            return candidate;
        }
    }
    return {};
}

void RconLink::sendStep(int step, Outgoing &out)
{
    switch (step) {
    case 1: {
        // The destination is read afresh from the window at every send.
        out.host = Text::trimBlanks(m_view.fieldText(View::Field::txtHost));
        const qint32 port = Text::toInt32(m_view.fieldText(View::Field::txtPort));
        out.port = (port > 0 && port <= 65535) ? static_cast<quint16>(port) : 0;
        out.password = Text::trimBlanks(m_view.fieldText(View::Field::txtPwd));
        break;
    }
    case 2:
        out.datagram = RconCodec::frame(out.Cmd, out.password, out.bRconCmd);
        break;
    case 3:
        out.echo = RconCodec::echo(Text::timeText(m_clock.timeNow()), out.Cmd);
        break;
    case 4: {
        const QHostAddress to = resolve(out.host);
        if (to.isNull() || to == QHostAddress(QHostAddress::AnyIPv4))
            sendFailed(QStringLiteral("No address for host ") + out.host);
        if (out.port == 0)
            sendFailed(QStringLiteral("Invalid port"));
        if (m_socket->writeDatagram(Text::toWire(out.datagram), to, out.port) < 0)
            sendFailed(m_socket->errorString());
        m_gate.serverIs(to, out.port);
        break;
    }
    case 5:
        ResponseTimeStart = m_clock.secondsSinceMidnight();
        break;
    case 6:
        if (out.bShowText)
            m_pane.append(QStringLiteral("\r\n") + out.echo);
        break;
    case 7:
        if (m_settings.SaveLog)
            m_log.WriteLog(m_settings.LogBrief ? out.Cmd : out.echo, false);
        break;
    }
}

void RconLink::UDPClient_SendMessage(const QString &Cmd, bool bShowText, bool bRconCmd)
{
    if (m_run.unloaded())
        return; // socket and log are closed: a cycle still unwinding sends nothing
    Outgoing out;
    out.Cmd = Cmd;
    out.bShowText = bShowText;
    out.bRconCmd = bRconCmd;
    int step = 1;
    while (step <= lastSendStep) {
        try {
            for (; step <= lastSendStep; ++step)
                sendStep(step, out);
        } catch (const FatalExit &) {
            throw;
        } catch (const RuntimeError &error) {
            // A datagram the network refused is recorded, and the routine goes on.
            const bool fatal = error.number() != RuntimeError::SendFailed;
            m_errors.ReportError(fatal, sendWords);
            ++step;
        } catch (...) {
            m_errors.ReportError(true, sendWords);
            ++step;
        }
    }
}

void RconLink::readPending()
{
    // A batch at a time: under a flood that never lets up the timers still get their turn,
    // and what is left raises readyRead again.
    for (int n = 0; n < 256 && m_socket->hasPendingDatagrams(); ++n)
        UDPClient_DataArrival(m_socket->pendingDatagramSize());
}

void RconLink::UDPClient_DataArrival(qint64 intBytes)
{
    m_errors.catching(readWords, [&] {
        QHostAddress sender;
        quint16 senderPort = 0;
        m_datagram.resize(std::max<qint64>(intBytes, 0));
        const qint64 got = m_socket->readDatagram(m_datagram.data(), m_datagram.size(), &sender, &senderPort);
        if (m_run.unloaded())
            return;
        // Only the server is heard: anyone else's datagram is counted and goes no further.
        if (m_settings.ServerOnly && !m_gate.fromServer(sender, senderPort)) {
            m_gate.dropped(sender, senderPort);
            return;
        }
        const QByteArray bytes = m_datagram.first(std::max<qint64>(got, 0));
        const QString text = RconCodec::arrivalText(bytes);
        m_serverAnswered = intBytes >= 2;
        if (m_serverAnswered) {
            double elapsed = m_clock.secondsSinceMidnight() - ResponseTimeStart;
            if (elapsed < 0)
                elapsed += 86400; // the send was before midnight
            m_view.setLabel(View::Label::lblResponseTime,
                              QString::number(std::llround(elapsed * 1000)) + QStringLiteral(" ms"));
        }
        m_pane.appendReply(text);
        if (m_settings.logVerbose())
            m_log.WriteLog(text, false);
        m_pane.cursorToEnd();
        Q_EMIT replyArrived();
    });
}
