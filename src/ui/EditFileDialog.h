// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class ListFiles;
class QPlainTextEdit;
class QPushButton;
struct Settings;

// frmEditFile: a plain editor for one list file of the working folder. Save writes the
// file and reloads its table at once, so the change is live at the next check.
class frmEditFile : public FormDialog
{
    Q_OBJECT
public:
    // `lists`: the table that a save reloads; `settings`: the folder, FileLoc.
    frmEditFile(const Settings &settings, ListFiles &lists, ErrorLog &errors, Prompts &prompts, QWidget *parent);

    // Load the form, call this, then show it modally: the form is empty until it has run.
    void Edit_File(const QString &fName, const QString &wTitle = QString());

private:
    void cmdSave_Click();
    void reloadTable();

    QPlainTextEdit *txtEdit;
    QPushButton *cmdSave, *cmdCancel;
    const Settings &m_settings;
    ListFiles &m_lists;
    QString m_fName;
    QString m_lineEnd = QStringLiteral("\r\n");
};
