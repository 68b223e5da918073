// SPDX-License-Identifier: MIT
#include "link/SenderGate.h"

#include "core/Clock.h"

#include <algorithm>

SenderGate::SenderGate(Clock &clock, std::function<bool()> busy, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
    , m_busy(std::move(busy))
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &SenderGate::noticeIfDue);
    // A clock moved by hand may have made the notice due.
    connect(&clock, &Clock::jumped, this, [this] {
        if (m_retry.isActive())
            noticeIfDue();
    });
}

void SenderGate::serverIs(const QHostAddress &address, quint16 port)
{
    m_server = address;
    m_serverPort = port;
}

bool SenderGate::fromServer(const QHostAddress &sender, quint16 port) const
{
    return port == m_serverPort && !m_server.isNull()
        && sender.isEqual(m_server, QHostAddress::ConvertV4MappedToIPv4);
}

void SenderGate::dropped(const QHostAddress &sender, quint16 port)
{
    ++m_untold;
    auto known = std::find_if(m_strangers.begin(), m_strangers.end(),
                              [&](const Stranger &s) { return s.port == port && s.address == sender; });
    if (known != m_strangers.end())
        ++known->count;
    else if (m_strangers.size() < NamedSenders)
        m_strangers.append({sender, port, 1});
    // While a notice waits for its moment, a datagram costs nothing more than the count.
    if (!m_retry.isActive())
        noticeIfDue();
}

void SenderGate::noticeIfDue()
{
    if (m_untold == 0)
        return;
    const QDateTime now = m_clock.now();
    const double since = m_lastNotice.isValid() ? m_lastNotice.msecsTo(now) / 1000.0 : NoticeSeconds;
    if (since >= 0 && since < NoticeSeconds) { // a clock set back counts as due
        retryIn(NoticeSeconds - since);
        return;
    }
    if (m_busy && m_busy()) {
        retryIn(1);
        return;
    }
    tell(now);
}

void SenderGate::tellNow()
{
    if (m_untold > 0)
        tell(m_clock.now());
}

void SenderGate::tell(const QDateTime &now)
{
    m_retry.stop();
    const QString line = noticeLine();
    m_untold = 0;
    m_strangers.clear();
    m_lastNotice = now;
    Q_EMIT notice(line);
}

void SenderGate::retryIn(double seconds)
{
    m_retry.start(m_clock.timerMsFor(seconds));
}

QString SenderGate::noticeLine() const
{
    QString line = QStringLiteral("Ignored %1 %2 not from the server:")
                       .arg(m_untold)
                       .arg(m_untold == 1 ? QStringLiteral("datagram") : QStringLiteral("datagrams"));
    qint64 named = 0;
    for (const Stranger &s : m_strangers) {
        const QString address = s.address.protocol() == QAbstractSocket::IPv6Protocol
            ? u'[' + s.address.toString() + u']'
            : s.address.toString();
        line += QStringLiteral(" %1 from %2:%3,").arg(s.count).arg(address).arg(s.port);
        named += s.count;
    }
    if (named < m_untold)
        line += QStringLiteral(" %1 from others,").arg(m_untold - named);
    line.chop(1);
    return line + u'.';
}
