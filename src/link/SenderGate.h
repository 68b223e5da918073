// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>

class Clock;

// Who is heard on the socket: the server, at the address and port the last datagram went
// to. A datagram from anyone else is only counted here. The operator hears of them in one
// line, at most once a minute by the engine's clock, that says how many came and from
// where; never while an exchange is under way (`busy`), so that the line cannot stand
// between an echo and its reply in the pane.
class SenderGate : public QObject
{
    Q_OBJECT
public:
    static constexpr int NoticeSeconds = 60;
    static constexpr int NamedSenders = 3; // the rest are counted together

    SenderGate(Clock &clock, std::function<bool()> busy, QObject *parent = nullptr);

    void serverIs(const QHostAddress &address, quint16 port);
    bool fromServer(const QHostAddress &sender, quint16 port) const;
    // One datagram from a stranger, dropped.
    void dropped(const QHostAddress &sender, quint16 port);
    // Dropped and not told of yet.
    qint64 untold() const { return m_untold; }
    // Tells what is untold at once, minute or not: the program is closing.
    void tellNow();

Q_SIGNALS:
    void notice(const QString &line);

private:
    struct Stranger
    {
        QHostAddress address;
        quint16 port = 0;
        qint64 count = 0;
    };
    void noticeIfDue();
    void tell(const QDateTime &now);
    void retryIn(double seconds);
    QString noticeLine() const;

    Clock &m_clock;
    std::function<bool()> m_busy;
    QHostAddress m_server;
    quint16 m_serverPort = 0;
    QList<Stranger> m_strangers;
    qint64 m_untold = 0;
    QDateTime m_lastNotice;
    QTimer m_retry;
};
