// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class OperatorActions;
class QLineEdit;
class QPushButton;

// frmOther: any console command, typed bare; the link adds rcon and the password. The
// engine stops while the dialog is open and starts again when it closes.
class frmOther : public FormDialog
{
    Q_OBJECT
public:
    frmOther(OperatorActions &actions, ErrorLog &errors, Prompts &prompts, QWidget *parent);

    void cmdSend_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void done(int result) override;

private:
    OperatorActions &m_actions;
    QLineEdit *txtCommand;
    QPushButton *cmdSend;
    QPushButton *cmdCancel;
    bool wasRunning = false;
    bool m_unloaded = false;
};
