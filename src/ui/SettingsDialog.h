// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class ActivityLog;
class QCheckBox;
class QComboBox;
class QFileSystemModel;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTreeView;
struct Settings;

// frmSettings: the program's housekeeping: the activity log, the working folder and three
// values of the server link.
class frmSettings : public FormDialog
{
    Q_OBJECT
public:
    // `log`: opened or closed at once as Save log says.
    frmSettings(Settings &settings, ActivityLog &log, ErrorLog &errors, Prompts &prompts, QWidget *parent);

private:
    void Form_Load();
    void chkLog_Click();
    void cmdOK_Click();
    // The folder dirDir stands on or has highlighted, with its separator.
    QString chosenDirectory() const;
    void pointAt(const QString &folder);
    bool entriesFit();

    QGroupBox *Frame1, *Frame2;
    QCheckBox *chkLog, *chkServerOnly;
    QRadioButton *optBrief, *optVerbose;
    QLabel *Label1, *Label2, *Label3;
    QLineEdit *txtLocalPort, *txtCommandDelay;
    QTreeView *dirDir;
    QComboBox *drvDrive;
    QPushButton *cmdOK, *cmdCancel;
    QFileSystemModel *m_folders;
    Settings &m_settings;
    ActivityLog &m_log;
};
