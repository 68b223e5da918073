// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

// The program's modal boxes: title "Quorvane", one OK button or Yes and No. On a
// platform where nobody can answer (offscreen, minimal) the text goes to stderr as
// one line and the default is taken: OK, or No for a question.
class Prompts
{
public:
    static void information(QWidget *parent, const QString &text);
    // True for Yes.
    static bool question(QWidget *parent, const QString &text);

    // Tests answer the next box in advance; it is then neither shown nor printed.
    static void setNextAnswer(QMessageBox::StandardButton button) { s_nextAnswer = button; }
    // The text of the last box, shown or answered in advance; tests clear it.
    static QString lastText() { return s_lastText; }
    static void clearLastText() { s_lastText.clear(); }

    // The text as it goes to stderr: "Quorvane: " and the text on one line.
    static QString unattendedLine(const QString &text);

private:
    static QMessageBox::StandardButton ask(QWidget *parent, const QString &text, QMessageBox::StandardButtons buttons,
                                           QMessageBox::StandardButton defaultButton);
    static bool nobodyToAsk();

    static QMessageBox::StandardButton s_nextAnswer;
    static QString s_lastText;
};
