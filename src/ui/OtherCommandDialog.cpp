// SPDX-License-Identifier: MIT
#include "ui/OtherCommandDialog.h"

#include "enforcement/OperatorActions.h"
#include "ui/Twips.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using Twips::place;

frmOther::frmOther(OperatorActions &actions, ErrorLog &errors, Prompts &prompts, QWidget *parent)
    : FormDialog(errors, prompts, parent, QStringLiteral("frmOther"), QStringLiteral("Other Command"), 5400, 1500)
    , m_actions(actions)
{
    auto *hint = place<QLabel>(this, u"lblHint",
                               u"Enter any valid console text. NOTE: you do not need to type \"rcon password\".", 120,
                               120, 5160, 435);
    hint->setWordWrap(true);
    txtCommand = place<QLineEdit>(this, u"txtCommand", 120, 600, 5160, 285);
    cmdSend = place<QPushButton>(this, u"cmdSend", u"Send", 2880, 1020, 1095, 315);
    cmdCancel = place<QPushButton>(this, u"cmdCancel", u"Cancel", 4185, 1020, 1095, 315);
    finishForm();
    txtCommand->installEventFilter(this);
    connect(cmdSend, &QPushButton::clicked, this, [this] { run(QStringLiteral("cmdSend_Click"), [this] { cmdSend_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    // Form_Load: no checks while the operator types.
    run(QStringLiteral("Form_Load"), [this] { wasRunning = m_actions.otherCommandOpened(); });
}

void frmOther::cmdSend_Click()
{
    m_actions.cmdSend_Click(txtCommand->text());
    accept();
}

bool frmOther::eventFilter(QObject *watched, QEvent *event)
{
    // Enter sends as it is let go, like the button.
    if (watched == txtCommand && event->type() == QEvent::KeyRelease) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !static_cast<QKeyEvent *>(event)->isAutoRepeat()) {
            run(QStringLiteral("cmdSend_Click"), [this] { cmdSend_Click(); });
            return true;
        }
    }
    return FormDialog::eventFilter(watched, event);
}

void frmOther::done(int result)
{
    if (!m_unloaded) {
        m_unloaded = true;
        FormDialog::done(result);
        run(QStringLiteral("Form_Unload"), [this] { m_actions.otherCommandClosed(wasRunning); });
        return;
    }
    FormDialog::done(result);
}
