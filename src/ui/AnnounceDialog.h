// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class Announcer;
class ListFiles;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class RunControl;
struct Settings;

// frmAnnounce: the server messages the announcer says, and its switch, interval and order.
class frmAnnounce : public FormDialog
{
    Q_OBJECT
public:
    // `runSwitch`: whether the engine runs, for the word on when announcements begin.
    frmAnnounce(Settings &settings, ListFiles &lists, Announcer &announcer, const RunControl &runSwitch, ErrorLog &errors,
                Prompts &prompts, QWidget *parent);

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
    Settings &m_settings;
    ListFiles &m_lists;
    Announcer &m_announcer;
    const RunControl &m_run;
    QString m_lineEnd = QStringLiteral("\r\n");
};
