// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

// frmAnnounce: the server messages the announcer says, and its switch, interval and order.
class frmAnnounce : public FormDialog
{
    Q_OBJECT
public:
    frmAnnounce(Engine &engine, Prompts &prompts, QWidget *parent);

private:
    void Form_Load();
    void Load_Srv_Msg();
    void Save_Srv_Msg();
    void chkAnnounce_Click();
    void cmdGameCodes_Click();
    void cmdOkay_Click();
    QString path() const;

    QLabel *Label2, *lblAnnounce;
    QPlainTextEdit *txtAnnounce;
    QCheckBox *chkAnnounce;
    QComboBox *cboAnnounce;
    QGroupBox *fraSequence;
    QRadioButton *optRandom, *optSequential;
    QPushButton *cmdGameCodes, *cmdOkay, *cmdCancel;
    QString m_lineEnd = QStringLiteral("\r\n");
};
