// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class QPlainTextEdit;
class QPushButton;

// frmEditFile: a plain editor for one list file of the working folder. Save writes the
// file and reloads its table at once, so the change is live at the next check.
class frmEditFile : public FormDialog
{
    Q_OBJECT
public:
    frmEditFile(Engine &engine, Prompts &prompts, QWidget *parent);

    // Load the form, call this, then show it modally: the form is empty until it has run.
    void Edit_File(const QString &fName, const QString &wTitle = QString());

private:
    void cmdSave_Click();
    void reloadTable();

    QPlainTextEdit *txtEdit;
    QPushButton *cmdSave, *cmdCancel;
    QString m_fName;
    QString m_lineEnd = QStringLiteral("\r\n");
};
