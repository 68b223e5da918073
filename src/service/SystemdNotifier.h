// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

// Tells systemd how the service stands (sd_notify): ready, reloading, stopping, a status
// line, and the watchdog's keep-alive from a timer of the event loop at half the interval
// systemd asks for, so that a loop that hangs gets the process restarted. Built without
// libsystemd, or run outside a unit with Type=notify, it tells nothing.
class SystemdNotifier : public QObject
{
    Q_OBJECT
public:
    explicit SystemdNotifier(QObject *parent = nullptr);

    void ready(const QString &status);
    void reloading();
    void stopping();
    void status(const QString &status);

private:
    void notify(const QByteArray &state);

    QTimer m_watchdog;
};
