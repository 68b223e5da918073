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

inline void press(QWidget &d, const QString &name) { control<QAbstractButton>(d, name)->click(); }

// What a control shows (the current text of a combo box), and typing into a box or a combo box.
inline QString text(QWidget *box)
{
    const QVariant combo = box->property("currentText");
    return combo.isValid() ? combo.toString() : box->property("text").toString();
}
inline void type(QWidget *box, const QString &typed)
{
    box->setProperty(box->property("currentText").isValid() ? "currentText" : "text", typed);
}

// The named controls' Enabled states, as 1 and 0.
inline QString enabled(QWidget &d, const QString &names)
{
    QString out;
    for (const QString &name : names.split(u' ', Qt::SkipEmptyParts))
        out += control(d, name)->isEnabled() ? u'1' : u'0';
    return out;
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
