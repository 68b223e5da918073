// SPDX-License-Identifier: MIT
#include "ui/TrayIcon.h"

#include <QDirIterator>

TrayIcon::TrayIcon(QObject *parent)
    : QObject(parent)
    , m_icon(picture(QStringLiteral("icon")))
    , m_flashIcon(picture(QStringLiteral("flash")))
{
    m_flash.setInterval(1000);
    connect(&m_flash, &QTimer::timeout, this, &TrayIcon::toggleFlash);
    connect(&m_tray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            Q_EMIT activated();
    });
    m_tray.setIcon(m_icon);
    m_tray.setToolTip(m_toolTip);
}

QIcon TrayIcon::picture(const QString &name)
{
    QIcon icon;
    QDirIterator files(QStringLiteral(":/icons"), {name + QStringLiteral("-*.png")});
    while (files.hasNext())
        icon.addFile(files.next());
    return icon;
}

void TrayIcon::setToolTip(const QString &tip)
{
    m_toolTip = tip;
    m_tray.setToolTip(tip);
}

void TrayIcon::setFlashEnabled(bool on)
{
    if (on == m_flash.isActive())
        return;
    if (on) {
        m_flash.start();
    } else {
        m_flash.stop();
        showPicture(false);
    }
}

void TrayIcon::setShown(bool shown)
{
    m_shown = shown;
    // Without a tray the state is kept all the same, so the window behaves alike.
    if (QSystemTrayIcon::isSystemTrayAvailable())
        m_tray.setVisible(shown);
}

void TrayIcon::toggleFlash()
{
    showPicture(!m_flashUp);
}

void TrayIcon::showPicture(bool flash)
{
    m_flashUp = flash;
    m_tray.setIcon(flash ? m_flashIcon : m_icon);
}

namespace {
bool &assumeTray()
{
    static bool assumed = false;
    return assumed;
}
} // namespace

bool TrayIcon::trayAvailable()
{
    return assumeTray() || QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::setTrayAvailableForTesting(bool available)
{
    assumeTray() = available;
}
