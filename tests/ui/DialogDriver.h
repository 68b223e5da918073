// SPDX-License-Identifier: MIT
#pragma once

#include "StderrCapture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QStringList>
#include <QTimer>

#include <functional>

// Opens a modal dialog through `open` (a menu entry, a key, a button) and runs `body` on
// it while it stands; a dialog the body left open is cancelled. False when no dialog of
// that kind came up.
template<typename D>
bool whileOpen(const std::function<void()> &open, const std::function<void(D &)> &body = {})
{
    bool reached = false;
    QTimer::singleShot(0, qApp, [&] {
        auto *dialog = qobject_cast<D *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        reached = true;
        // Focus moves only inside the active window, and the offscreen platform activates
        // no window by itself.
        QApplication::setActiveWindow(dialog);
        if (body)
            body(*dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
    QWidget *active = QApplication::activeWindow();
    open();
    QApplication::setActiveWindow(active); // as closing the dialog hands it back
    return reached;
}

// A control of a dialog by its name; a missing one ends the test.
template<typename T = QWidget>
T *control(QWidget &d, const QString &name)
{
    T *found = d.findChild<T *>(name);
    if (!found)
        qFatal("no control %s", qPrintable(name));
    return found;
}

inline void press(QWidget &d, const QString &name)
{
    control<QAbstractButton>(d, name)->click();
}

// The boxes shown while it lives (the offscreen platform writes them to stderr).
struct Boxes
{
    QStringList shown()
    {
        QStringList out;
        for (const QByteArray &line : err.text().split('\n'))
            if (line.startsWith("Quorvane: "))
                out.append(QString::fromLocal8Bit(line.mid(10)));
        return out;
    }
    StderrCapture err;
};
