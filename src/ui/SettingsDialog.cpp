// SPDX-License-Identifier: MIT
#include "ui/SettingsDialog.h"

#include "core/ActivityLog.h"
#include "core/Settings.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "ui/Entries.h"
#include "ui/Prompts.h"
#include "ui/Twips.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileSystemModel>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

#include <cmath>

using Twips::place;

frmSettings::frmSettings(Settings &settings, ActivityLog &log, ErrorLog &errors, Prompts &prompts, QWidget *parent)
    : FormDialog(errors, prompts, parent, QStringLiteral("frmSettings"), QStringLiteral("Settings"), 8160, 4200)
    , m_settings(settings)
    , m_log(log)
{
    Frame1 = place<QGroupBox>(this, u"Frame1", 120, 120, 3840, 1470);
    Frame1->setTitle(QStringLiteral("Logging"));
    chkLog = place<QCheckBox>(Frame1, u"chkLog", u"Record Activity in a Log file", 180, 315, 3540, 300);
    optBrief = place<QRadioButton>(Frame1, u"optBrief", u"Brief", 420, 705, 1800, 300);
    optVerbose = place<QRadioButton>(Frame1, u"optVerbose", u"Verbose", 420, 1065, 1800, 300);
    Frame2 = place<QGroupBox>(this, u"Frame2", 120, 1710, 3840, 1650);
    Frame2->setTitle(QStringLiteral("Communications"));
    Label2 = place<QLabel>(Frame2, u"Label2", u"Local port (base)", 180, 345, 2040, 300);
    txtLocalPort = place<QLineEdit>(Frame2, u"txtLocalPort", 2280, 330, 1380, 330);
    Label3 = place<QLabel>(Frame2, u"Label3", u"Command Delay", 180, 795, 2040, 300);
    txtCommandDelay = place<QLineEdit>(Frame2, u"txtCommandDelay", 2280, 780, 1380, 330);
    chkServerOnly = place<QCheckBox>(Frame2, u"chkServerOnly", u"Take replies from the server only", 180, 1230, 3540, 300);

    Label1 = place<QLabel>(this, u"Label1", u"Quorvane Working Directory", 4200, 120, 3840, 300);
    dirDir = place<QTreeView>(this, u"dirDir", 4200, 420, 3840, 2700);
    m_folders = new QFileSystemModel(this);
    m_folders->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    m_folders->setRootPath(QDir::rootPath());
    dirDir->setModel(m_folders);
    for (int column = 1; column < m_folders->columnCount(); ++column)
        dirDir->hideColumn(column);
    dirDir->setHeaderHidden(true);
    drvDrive = place<QComboBox>(this, u"drvDrive", 4200, 3240, 3840, 330);
    drvDrive->addItem(QDir::rootPath());

    cmdOK = place<QPushButton>(this, u"cmdOK", u"OK", 5160, 3720, 1320, 375);
    cmdCancel = place<QPushButton>(this, u"cmdCancel", u"Cancel", 6720, 3720, 1320, 375);
    finishForm();
    setTabOrder(dirDir, cmdOK);
    dirDir->setFocus();

    connect(chkLog, &QCheckBox::clicked, this, &frmSettings::chkLog_Click);
    // The level changes at the click, without waiting for OK; Cancel keeps it.
    connect(optBrief, &QRadioButton::clicked, this, [this] { m_settings.LogBrief = true; });
    connect(optVerbose, &QRadioButton::clicked, this, [this] { m_settings.LogBrief = false; });
    connect(cmdOK, &QPushButton::clicked, this, [this] { run(QStringLiteral("cmdOK_Click"), [this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Form_Load();
}

void frmSettings::Form_Load()
{
    const Settings &s = m_settings;
    chkLog->setChecked(s.SaveLog);
    drvDrive->setEnabled(false);
    chkLog_Click();
    txtLocalPort->setText(QString::number(s.LocalPort));
    txtCommandDelay->setText(SettingsStore::doubleText(s.CommandDelay));
    chkServerOnly->setChecked(s.ServerOnly);
    pointAt(s.FileLoc);
}

void frmSettings::pointAt(const QString &folder)
{
    // A folder that has gone away shows the nearest one above it that is still there.
    QDir dir(folder);
    while (!dir.exists() && !dir.isRoot() && dir.cdUp()) {
    }
    const QModelIndex index = m_folders->index(dir.exists() ? dir.absolutePath() : QDir::rootPath());
    dirDir->setCurrentIndex(index);
    dirDir->scrollTo(index);
}

void frmSettings::chkLog_Click()
{
    const bool on = chkLog->isChecked();
    optBrief->setEnabled(on);
    optVerbose->setEnabled(on);
    optBrief->setChecked(m_settings.LogBrief);
    optVerbose->setChecked(!m_settings.LogBrief);
}

QString frmSettings::chosenDirectory() const
{
    QString path = m_folders->filePath(dirDir->currentIndex());
    if (!path.endsWith(u'/'))
        path += u'/';
    return path;
}

// The port takes every port the socket can bind and the negative numbers of 16 bits, and the
// delay must be a finite number; anything beyond is refused before a setting is applied.
bool frmSettings::entriesFit()
{
    const QString port = txtLocalPort->text();
    if (Text::isNumeric(port) && !Entries::whole(port, Entries::int16Min, Entries::portMax)) {
        m_prompts.information(this, Entries::mustBe(QStringLiteral("The local port"), Entries::int16Min,
                                                   Entries::portMax));
        txtLocalPort->setFocus();
        return false;
    }
    const QString delay = txtCommandDelay->text();
    if (Text::isNumeric(delay) && !std::isfinite(Text::trimBlanks(delay).toDouble())) {
        m_prompts.information(this, QStringLiteral("The command delay is too large."));
        txtCommandDelay->setFocus();
        return false;
    }
    return true;
}

void frmSettings::cmdOK_Click()
{
    if (!entriesFit())
        return;
    Settings &s = m_settings;
    s.SaveLog = chkLog->isChecked();
    s.LogBrief = optBrief->isChecked();
    const QString chosen = chosenDirectory();
    if (chosen != s.FileLoc) {
        if (m_prompts.question(this, QStringLiteral("Are you sure you want to change the directory to ") + chosen
                                        + u'?'))
            s.FileLoc = chosen;
        else
            m_prompts.information(this, QStringLiteral("The directory (") + s.FileLoc
                                           + QStringLiteral(") was not changed."));
    }
    m_log.followSaveLog();
    if (Text::isNumeric(txtLocalPort->text()))
        s.LocalPort = *Entries::whole(txtLocalPort->text(), Entries::int16Min, Entries::portMax);
    if (Text::isNumeric(txtCommandDelay->text()))
        s.CommandDelay = Text::trimBlanks(txtCommandDelay->text()).toDouble();
    s.ServerOnly = chkServerOnly->isChecked();
    accept();
}
