// SPDX-License-Identifier: MIT
#include "ui/AnnounceDialog.h"

#include "core/ErrorLog.h"
#include "core/RunControl.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "messages/Announcer.h"
#include "messages/ListFiles.h"
#include "ui/CodedItems.h"
#include "ui/GameCodesDialog.h"
#include "ui/ListFileText.h"
#include "ui/Prompts.h"
#include "ui/Twips.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

using Twips::place;

frmAnnounce::frmAnnounce(Settings &settings, ListFiles &lists, Announcer &announcer, const RunControl &runSwitch,
                         ErrorLog &errors, Prompts &prompts, QWidget *parent)
    : FormDialog(errors, prompts, parent, QStringLiteral("frmAnnounce"), QStringLiteral("QVN - Announcement"), 6600, 5280)
    , m_settings(settings)
    , m_lists(lists)
    , m_announcer(announcer)
    , m_run(runSwitch)
{
    Label2 = place<QLabel>(this, u"Label2", u"Server Messages", 120, 120, 3000, 300);
    txtAnnounce = place<QPlainTextEdit>(this, u"txtAnnounce", 120, 420, 6360, 2760);
    txtAnnounce->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtAnnounce->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtAnnounce->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtAnnounce->setTabChangesFocus(true);
    chkAnnounce = place<QCheckBox>(this, u"chkAnnounce", u"Enable", 120, 3345, 1200, 300);
    lblAnnounce = place<QLabel>(this, u"lblAnnounce", u"Announce Every", 1380, 3360, 1620, 300);
    cboAnnounce = editableCombo(this, u"cboAnnounce", 3000, 3345, 1560);
    fraSequence = place<QGroupBox>(this, u"fraSequence", 4740, 3270, 1740, 1170);
    fraSequence->setTitle(QStringLiteral("Sequence"));
    optRandom = place<QRadioButton>(fraSequence, u"optRandom", u"Random", 180, 330, 1440, 300);
    optSequential = place<QRadioButton>(fraSequence, u"optSequential", u"Sequential", 180, 690, 1440, 300);
    cmdGameCodes = place<QPushButton>(this, u"cmdGameCodes", u"Variables", 120, 3945, 1440, 375);
    Twips::line(this, u"Line1", 120, 4560, 6480);
    cmdOkay = place<QPushButton>(this, u"cmdOkay", u"Save", 3600, 4740, 1320, 375);
    cmdCancel = place<QPushButton>(this, u"cmdCancel", u"Cancel", 5160, 4740, 1320, 375);
    finishForm();
    setTabOrder(chkAnnounce, txtAnnounce);
    setTabOrder(txtAnnounce, cboAnnounce);
    chkAnnounce->setFocus();

    connect(chkAnnounce, &QCheckBox::toggled, this, &frmAnnounce::chkAnnounce_Click);
    connect(cmdGameCodes, &QPushButton::clicked, this, &frmAnnounce::cmdGameCodes_Click);
    connect(cmdOkay, &QPushButton::clicked, this,
            [this] { run(QStringLiteral("cmdOkay_Click"), [this] { cmdOkay_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Form_Load();
}

QString frmAnnounce::path() const
{
    return m_settings.FileLoc + ListFiles::servmsgFile;
}

void frmAnnounce::Form_Load()
{
    const Settings &s = m_settings;
    cboAnnounce->addItems(CodedItems::announceEvery().texts());
    chkAnnounce->setChecked(s.intAnnouce == 1);
    optRandom->setChecked(s.MsgRandom);
    optSequential->setChecked(!s.MsgRandom);
    showText(cboAnnounce, CodedItems::announceEvery().textOf(s.lngAnnounce));
    Load_Srv_Msg();
    chkAnnounce_Click();
}

void frmAnnounce::Load_Srv_Msg()
{
    m_errors.catching(QStringLiteral("Error loading announcements (Load_Srv_Msg)"), [&] {
        m_lineEnd = ListFileText::load(path(), *txtAnnounce);
    });
}

void frmAnnounce::Save_Srv_Msg()
{
    m_errors.catching(QStringLiteral("Error saving server announcements (Save_Srv_Msg)"), [&] {
        if (!QFile::exists(path()))
            throw RuntimeError(RuntimeError::FileError, QStringLiteral("File not found"));
        ListFileText::save(path(), *txtAnnounce, m_lineEnd);
    });
}

void frmAnnounce::chkAnnounce_Click()
{
    const bool on = chkAnnounce->isChecked();
    for (QWidget *w : {static_cast<QWidget *>(cboAnnounce), static_cast<QWidget *>(fraSequence),
                       static_cast<QWidget *>(optRandom), static_cast<QWidget *>(optSequential),
                       static_cast<QWidget *>(lblAnnounce)})
        w->setEnabled(on);
}

void frmAnnounce::cmdGameCodes_Click()
{
    frmGameCodes codes(m_errors, m_prompts, this);
    codes.exec();
}

void frmAnnounce::cmdOkay_Click()
{
    Settings &s = m_settings;
    s.intAnnouce = chkAnnounce->isChecked() ? 1 : 0;
    s.MsgRandom = optRandom->isChecked();
    Save_Srv_Msg();
    m_lists.LoadServerMessages(); // the sequence starts again at the first message
    s.lngAnnounce = CodedItems::announceEvery().valueOf(cboAnnounce->currentText());
    Announcer &announcer = m_announcer;
    // Only a switch touches the timer: a running one keeps its count under the new interval.
    if (s.intAnnouce == 1 && !announcer.timAnnounce.isActive())
        announcer.Announce_Timer_Control(QStringLiteral("ON"));
    else if (s.intAnnouce == 0 && announcer.timAnnounce.isActive())
        announcer.Announce_Timer_Control(QStringLiteral("OFF"));
    if (s.intAnnouce == 1 && !m_run.engineRunning())
        m_prompts.information(this, QStringLiteral("Announcements will be sent as soon as you click Start on the main screen."));
    accept();
}
