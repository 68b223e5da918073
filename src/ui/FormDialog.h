// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <functional>

class ErrorLog;
class Prompts;
class QComboBox;

// A dialog of fixed size with no minimise or maximise button, laid out in twips in the
// face the main window chooses. Its buttons are not default buttons: Enter and Escape do nothing
// special unless a dialog names a default and a cancel button of its own.
class FormDialog : public QDialog
{
    Q_OBJECT
public:
    FormDialog(ErrorLog &errors, Prompts &prompts, QWidget *parent, const QString &name, const QString &caption, int widthTwips,
               int heightTwips);

protected:
    // Call at the end of the constructor, when every control stands: chooses the face and
    // settles the buttons.
    void finishForm(QPushButton *defaultAndCancel = nullptr);
    // An editable combo box that keeps what the operator types: nothing is completed while
    // typing nor replaced by a like item when the box is left.
    static QComboBox *editableCombo(QWidget *parent, QStringView name, int left, int top, int width);
    // Shows the text on its item where it has one, so that the list and the arrow keys go on from there.
    static void showText(QComboBox *box, const QString &text);
    // Runs a handler so that a failure nobody catches is recorded and ends the program.
    void run(const QString &routine, const std::function<void()> &handler);
    void keyPressEvent(QKeyEvent *event) override;

    ErrorLog &m_errors;
    Prompts &m_prompts;

private:
    QPushButton *m_cancelButton = nullptr;
};
