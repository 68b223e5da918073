// SPDX-License-Identifier: MIT
#include "ui/EditFileDialog.h"

#include "core/ErrorLog.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "messages/ListFiles.h"
#include "ui/ListFileText.h"
#include "ui/Prompts.h"
#include "ui/Twips.h"

#include <QPlainTextEdit>
#include <QPushButton>

using Twips::place;

frmEditFile::frmEditFile(const Settings &settings, ListFiles &lists, ErrorLog &errors, Prompts &prompts,
                         QWidget *parent)
    : FormDialog(errors, prompts, parent, QStringLiteral("frmEditFile"), QStringLiteral("QVN - "), 6240, 4920)
    , m_settings(settings)
    , m_lists(lists)
{
    txtEdit = place<QPlainTextEdit>(this, u"txtEdit", 60, 60, 6120, 4260);
    txtEdit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtEdit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtEdit->setTabChangesFocus(true); // a tab in a name would never match
    cmdSave = place<QPushButton>(this, u"cmdSave", u"Save", 3420, 4440, 1320, 375);
    cmdCancel = place<QPushButton>(this, u"cmdCancel", u"Cancel", 4860, 4440, 1320, 375);
    finishForm();
    setTabOrder(txtEdit, cmdSave);
    setTabOrder(cmdSave, cmdCancel);
    txtEdit->setFocus();
    connect(cmdSave, &QPushButton::clicked, this,
            [this] { run(QStringLiteral("cmdSave_Click"), [this] { cmdSave_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmEditFile::Edit_File(const QString &fName, const QString &wTitle)
{
    m_fName = fName;
    m_errors.catching(QStringLiteral("Error editing ") + fName, [&] {
        m_lineEnd = ListFileText::load(m_settings.FileLoc + fName, *txtEdit);
    });
    setWindowTitle(QStringLiteral("QVN - ") + wTitle);
}

void frmEditFile::cmdSave_Click()
{
    QString reason;
    const bool saved = m_errors.catching(
        QStringLiteral("Error saving changes to ") + m_fName,
        [&] {
            try {
                ListFileText::save(m_settings.FileLoc + m_fName, *txtEdit, m_lineEnd);
            } catch (const RuntimeError &e) {
                reason = e.description();
                throw;
            }
        },
        false);
    if (!saved) {
        // The old list stands whole; the operator keeps the text and can try again or cancel.
        m_prompts.information(this, QStringLiteral("Error saving changes to ") + m_fName + QStringLiteral(": ") + reason
                                       + QStringLiteral(". The list on disk is unchanged."));
        return;
    }
    reloadTable();
    accept();
}

void frmEditFile::reloadTable()
{
    ListFiles &lists = m_lists;
    const QList<std::pair<QString, void (ListFiles::*)()>> loaders{
        {ListFiles::bannedFile, &ListFiles::LoadBannedNames},  {ListFiles::servmsgFile, &ListFiles::LoadServerMessages},
        {ListFiles::badnamesFile, &ListFiles::LoadBadNames},   {ListFiles::bannedIPFile, &ListFiles::LoadBannedIPs},
        {ListFiles::immuneIPFile, &ListFiles::LoadImmuneIPs}};
    for (const auto &[name, load] : loaders) {
        if (name == m_fName) {
            (lists.*load)();
            return;
        }
    }
    m_prompts.information(this, QStringLiteral("File has been saved, but Quorvane will not show changes until restarted."));
}
