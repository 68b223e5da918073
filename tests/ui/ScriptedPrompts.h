// SPDX-License-Identifier: MIT
#pragma once

#include "ui/Prompts.h"

// The program's boxes, where the test can answer the next one in advance: it is then
// neither shown nor printed. Keeps the text of the last box, shown or answered.
class ScriptedPrompts final : public Prompts
{
public:
    void setNextAnswer(QMessageBox::StandardButton button) { m_nextAnswer = button; }
    QString lastText() const { return m_lastText; }

protected:
    QMessageBox::StandardButton ask(QWidget *parent, const QString &text, QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton defaultButton) override
    {
        m_lastText = text;
        if (m_nextAnswer == QMessageBox::NoButton)
            return Prompts::ask(parent, text, buttons, defaultButton);
        const QMessageBox::StandardButton answer = m_nextAnswer;
        m_nextAnswer = QMessageBox::NoButton;
        return answer;
    }

private:
    QMessageBox::StandardButton m_nextAnswer = QMessageBox::NoButton;
    QString m_lastText;
};
