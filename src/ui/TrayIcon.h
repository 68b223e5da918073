// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>

// sysTray: the program's icon in the system tray. It holds its tip, whether it stands
// in the tray, and the flashing during a check; where the platform has no tray it
// keeps all of that without showing anything.
class TrayIcon : public QObject
{
    Q_OBJECT
public:
    explicit TrayIcon(QObject *parent = nullptr);

    QString toolTip() const { return m_toolTip; }
    void setToolTip(const QString &tip);
    // How long each picture stands while flashing; 1000 ms unless changed.
    int flashInterval() const { return m_flash.interval(); }
    void setFlashInterval(int ms) { m_flash.setInterval(ms); }
    bool flashEnabled() const { return m_flash.isActive(); }
    void setFlashEnabled(bool on);
    bool isShown() const { return m_shown; }
    void setShown(bool shown);

    // Whether the flash picture is up at this moment.
    bool showsFlashIcon() const { return m_flashUp; }
    // The program's icon, also the window's; the flash picture; what the tray shows now.
    QIcon icon() const { return m_icon; }
    QIcon flashIcon() const { return m_flashIcon; }
    QIcon shownIcon() const { return m_tray.icon(); }

    // Whether a window hidden to the tray can be brought back: there is a tray to click.
    static bool trayAvailable();
    // For tests on a platform without a tray.
    static void setTrayAvailableForTesting(bool available);

Q_SIGNALS:
    // A single click on the icon. A click rather than a double-click: several tray hosts
    // never deliver double-clicks, and a click is what the operator tries first.
    void activated();

private:
    // Every size of one picture from the resource :/icons/, rendered from the same drawing
    // as the icons installed in the desktop's theme: "icon" or "flash".
    static QIcon picture(const QString &name);
    void toggleFlash();
    void showPicture(bool flash);

    QSystemTrayIcon m_tray;
    QTimer m_flash;
    QIcon m_icon;
    QIcon m_flashIcon;
    QString m_toolTip = QStringLiteral("Quorvane");
    bool m_shown = false;
    bool m_flashUp = false;
};
