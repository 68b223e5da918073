// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class QLabel;
class QPushButton;

// frmAbout: the program's name and version, a way to the system's information program
// and the link to the game's web site.
class frmAbout : public FormDialog
{
    Q_OBJECT
public:
    frmAbout(ErrorLog &errors, Prompts &prompts, QWidget *parent);

    static const QString siteAddress;
    // Programs that show what the system is, tried in this order.
    static const QStringList sysInfoPrograms;

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void Form_Load();
    void StartSysInfo();
    void lblDescription_Click();

    QLabel *Picture1, *lblTitle, *Label1, *lblVersion, *lblDescription, *lblDisclaimer, *Label2;
    QPushButton *cmdOK, *cmdSysInfo;
};
