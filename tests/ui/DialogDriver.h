// SPDX-License-Identifier: MIT
#pragma once

#include "StderrCapture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QKeySequence>
#include <QStringList>
#include <QTest>
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

// What a control shows (the current text of a combo box).
inline QString text(QWidget *box)
{
    const QVariant combo = box->property("currentText");
    return combo.isValid() ? combo.toString() : box->property("text").toString();
}

// Keys as the operator presses them, each to the control that has the focus at the time: a
// name in brackets is a key ("[Tab]", "[Ctrl+End]", "[Return]"), the rest is typed a
// character at a time.
inline void keys(const QString &script)
{
    for (qsizetype i = 0; i < script.size(); ++i) {
        QWidget *focus = QApplication::focusWidget();
        if (!focus)
            qFatal("no control has the focus");
        if (script.at(i) == u'[') {
            const qsizetype close = script.indexOf(u']', i);
            QTest::keySequence(focus, QKeySequence::fromString(script.mid(i + 1, close - i - 1)));
            i = close;
        } else {
            const QChar c = script.at(i);
            QTest::sendKeyEvent(QTest::Click, focus, Qt::Key(c.toUpper().unicode()), QString(c), Qt::NoModifier);
        }
    }
}

// Types into a box as the operator does: it takes the focus, and the keys go over what it shows.
inline void type(QWidget *box, const QString &script)
{
    box->setFocus();
    if (!box->hasFocus())
        qFatal("%s takes no focus", qPrintable(box->objectName()));
    keys(QStringLiteral("[Ctrl+A]") + script);
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
