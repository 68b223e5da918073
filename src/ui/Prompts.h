// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

// The program's modal boxes: title "Quorvane", one OK button or Yes and No. On a
// platform where nobody can answer (offscreen, minimal) the text goes to stderr as
// one line and the default is taken: OK, or No for a question. The window and the
// dialogs are given one; tests give one that answers in advance.
class Prompts
{
public:
    virtual ~Prompts() = default;

    void information(QWidget *parent, const QString &text);
    // True for Yes.
    bool question(QWidget *parent, const QString &text);

    // The text as it goes to stderr: "Quorvane: " and the text on one line.
    static QString unattendedLine(const QString &text);

protected:
    // Shows the box and answers what was pressed.
    virtual QMessageBox::StandardButton ask(QWidget *parent, const QString &text, QMessageBox::StandardButtons buttons,
                                            QMessageBox::StandardButton defaultButton);

private:
    static bool nobodyToAsk();
};
