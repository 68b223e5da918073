// SPDX-License-Identifier: MIT
#include "ui/TrayIcon.h"

#include <QPainter>
#include <QPixmap>

TrayIcon::TrayIcon(QObject *parent)
    : QObject(parent)
    , m_icon(drawIcon(QColor(0, 0, 160), Qt::yellow))
    , m_flashIcon(drawIcon(Qt::yellow, Qt::black))
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

QIcon TrayIcon::drawIcon(const QColor &fill, const QColor &letter)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawEllipse(QRectF(0.5, 0.5, 15, 15));
    QFont font = p.font();
    font.setPixelSize(12);
    font.setBold(true);
    p.setFont(font);
    p.setPen(letter);
    p.drawText(QRect(0, 0, 16, 16), Qt::AlignCenter, QStringLiteral("Q"));
    p.end();
    return QIcon(pixmap);
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
