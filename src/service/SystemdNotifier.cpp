// SPDX-License-Identifier: MIT
#include "service/SystemdNotifier.h"

#include "core/Text.h"

#ifdef QUORVANE_HAVE_SYSTEMD
#include <systemd/sd-daemon.h>
#endif

SystemdNotifier::SystemdNotifier(QObject *parent)
    : QObject(parent)
{
#ifdef QUORVANE_HAVE_SYSTEMD
    uint64_t microseconds = 0;
    if (sd_watchdog_enabled(0, &microseconds) > 0 && microseconds > 0) {
        connect(&m_watchdog, &QTimer::timeout, this, [this] { notify("WATCHDOG=1"); });
        m_watchdog.start(static_cast<int>(qBound<uint64_t>(1, microseconds / 2000, 3600000)));
    }
#endif
}

void SystemdNotifier::ready(const QString &status)
{
    notify("READY=1\nSTATUS=" + Text::oneLine(status).toUtf8());
}

void SystemdNotifier::reloading()
{
    notify("RELOADING=1");
}

void SystemdNotifier::stopping()
{
    notify("STOPPING=1");
}

void SystemdNotifier::status(const QString &status)
{
    notify("STATUS=" + Text::oneLine(status).toUtf8());
}

void SystemdNotifier::notify([[maybe_unused]] const QByteArray &state)
{
#ifdef QUORVANE_HAVE_SYSTEMD
    sd_notify(0, state.constData());
#endif
}
