// SPDX-License-Identifier: MIT
#include "ui/ToleranceDialog.h"

#include "core/Settings.h"
#include "core/Text.h"
#include "core/Ticker.h"
#include "ui/CodedItems.h"
#include "ui/EditFileDialog.h"
#include "ui/Entries.h"
#include "ui/Prompts.h"
#include "ui/Twips.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cmath>

using Twips::place;

namespace {

QLineEdit *textBox(QWidget *parent, QStringView name, int left, int top, int width)
{
    return place<QLineEdit>(parent, name, left, top, width, 330);
}

void enable(bool enabled, std::initializer_list<QWidget *> controls)
{
    for (QWidget *w : controls)
        w->setEnabled(enabled);
}

} // namespace

const QString frmTolerance::forceKickHelp = QStringLiteral(
    "Use 'Force Kick' when the status command does not return all the player's names on the server. Rather than "
    "check the player list for banned names, force kick sends a kick command to the server whether the player is in "
    "the server's list or not.");

frmTolerance::frmTolerance(Settings &settings, ListFiles &lists, Ticker &timKickcheck, ErrorLog &errors,
                           Prompts &prompts, QWidget *parent)
    : FormDialog(errors, prompts, parent, QStringLiteral("frmTolerance"), QStringLiteral("QVN - Tolerances"), 9600, 7950)
    , m_settings(settings)
    , m_lists(lists)
    , m_timKickcheck(timKickcheck)
{
    buildPatrol();
    buildPolice();
    buildPrison();
    buildNanny();
    cmdOkay = place<QPushButton>(this, u"cmdOkay", u"Okay", 6600, 7440, 1320, 375);
    cmdCancel = place<QPushButton>(this, u"cmdCancel", u"Cancel", 8100, 7440, 1320, 375);
    finishForm();
    setTabOrder(cmdOkay, txtScanInt);
    cmdOkay->setFocus();
    connectControls();
    txtScanInt->installEventFilter(this);
    Form_Load();
}

void frmTolerance::buildPatrol()
{
    fraPatrol = place<QGroupBox>(this, u"fraPatrol", 120, 120, 4560, 1170);
    fraPatrol->setTitle(QStringLiteral("Patrol"));
    Label1 = place<QLabel>(fraPatrol, u"Label1", u"Time Between Scans", 180, 330, 2160, 300);
    txtScanInt = textBox(fraPatrol, u"txtScanInt", 2400, 315, 720);
    lblBanCheck1 = place<QLabel>(fraPatrol, u"lblBanCheck1", u"Ban check every", 180, 735, 1560, 300);
    cboStatusInterval = editableCombo(fraPatrol, u"cboStatusInterval", 1800, 720, 1320);
    lblBanCheck2 = place<QLabel>(fraPatrol, u"lblBanCheck2", u"scan", 3240, 735, 900, 300);
}

void frmTolerance::buildPolice()
{
    fraPolice = place<QGroupBox>(this, u"fraPolice", 120, 1410, 4560, 6405);
    fraPolice->setTitle(QStringLiteral("Police"));
    QWidget *f = fraPolice;
    chkBan = place<QCheckBox>(f, u"chkBan", u"Ban Kicked Players", 180, 300, 3000, 300);
    lblBanish = place<QLabel>(f, u"lblBanish", u"Banish the.....", 420, 690, 1500, 300);
    cboBanType = editableCombo(f, u"cboBanType", 1980, 675, 2400);
    lblBanishFor = place<QLabel>(f, u"lblBanishFor", u"Banish for.....", 420, 1080, 1500, 300);
    cboBanFor = editableCombo(f, u"cboBanFor", 1980, 1065, 2400);
    lblDuration = place<QLabel>(f, u"lblDuration", u"How many days?", 420, 1470, 1560, 300);
    txtBanDuration = textBox(f, u"txtBanDuration", 1980, 1455, 720);
    Label2 = place<QLabel>(f, u"Label2", u"( 0 = forever)", 2820, 1470, 1500, 300);
    chkEnableTK = place<QCheckBox>(f, u"chkEnableTK", u"Enable TK Monitoring", 180, 1860, 3000, 300);
    lblScoreTolerance = place<QLabel>(f, u"lblScoreTolerance", u"Score Tolerance", 420, 2250, 1560, 300);
    txtKickScore = textBox(f, u"txtKickScore", 1980, 2235, 720);
    chkKickPing = place<QCheckBox>(f, u"chkKickPing", u"Kick High Pings", 180, 2640, 3000, 300);
    lblPing = place<QLabel>(f, u"lblPing", u"Max Ping", 420, 3030, 1140, 300);
    txtMaxPing = textBox(f, u"txtMaxPing", 1980, 3015, 720);
    lblPasses = place<QLabel>(f, u"lblPasses", u"Passes", 2820, 3030, 780, 300);
    cboPasses = editableCombo(f, u"cboPasses", 3600, 3015, 780);
    chkSkipMap = place<QCheckBox>(f, u"chkSkipMap", u"Skip first check on new map", 420, 3405, 3960, 300);
    chkImpersonate = place<QCheckBox>(f, u"chkImpersonate", u"Kick Impersonators", 180, 3795, 3000, 300);
    chkKickTelefrag = place<QCheckBox>(f, u"chkKickTelefrag", u"Kick on Telefrag", 180, 4185, 3000, 300);
    chkQPort = place<QCheckBox>(f, u"chkQPort", u"Permitted QPort Range", 180, 4575, 3300, 300);
    lblQPortMin = place<QLabel>(f, u"lblQPortMin", u"min.", 420, 4980, 600, 300);
    txtQPortMin = textBox(f, u"txtQPortMin", 1020, 4965, 1080);
    lblQPortMax = place<QLabel>(f, u"lblQPortMax", u"max.", 2460, 4980, 600, 300);
    txtQPortMax = textBox(f, u"txtQPortMax", 3060, 4965, 1080);
    chkRate = place<QCheckBox>(f, u"chkRate", u"Permitted Rate Range", 180, 5370, 3300, 300);
    lblRateMin = place<QLabel>(f, u"lblRateMin", u"min.", 420, 5775, 600, 300);
    txtRateMin = textBox(f, u"txtRateMin", 1020, 5760, 1080);
    lblRateMax = place<QLabel>(f, u"lblRateMax", u"max.", 2460, 5775, 600, 300);
    txtRateMax = textBox(f, u"txtRateMax", 3060, 5760, 1080);
}

void frmTolerance::buildPrison()
{
    fraPrison = place<QGroupBox>(this, u"fraPrison", 4860, 120, 4620, 3030);
    fraPrison->setTitle(QStringLiteral("Prison"));
    QWidget *f = fraPrison;
    chkKick = place<QCheckBox>(f, u"chkKick", u"Kick Banned Players", 180, 300, 3300, 300);
    chkForceKick = place<QCheckBox>(f, u"chkForceKick", u"Force Kick (Name Only)", 420, 690, 3060, 300);
    cmdForceKickHelp = place<QPushButton>(f, u"cmdForceKickHelp", u"?", 3600, 675, 420, 330);
    QFont bold = cmdForceKickHelp->font();
    bold.setBold(true);
    cmdForceKickHelp->setFont(bold);
    chkTellPlayers = place<QCheckBox>(f, u"chkTellPlayers", u"Inform players when kick occurs", 420, 1080, 4080, 300);
    lblTellPause1 = place<QLabel>(f, u"lblTellPause1", u"(wait", 660, 1470, 600, 300);
    txtTellPause = textBox(f, u"txtTellPause", 1260, 1455, 600);
    lblTellPause2 = place<QLabel>(f, u"lblTellPause2", u"seconds before kicking)", 1920, 1470, 2580, 300);
    cmdEditBan = place<QPushButton>(f, u"cmdEditBan", u"Edit Banned Names", 180, 1950, 2100, 375);
    cmdEditIP = place<QPushButton>(f, u"cmdEditIP", u"Edit Banned IPs", 2400, 1950, 2040, 375);
    cmdEditImmune = place<QPushButton>(f, u"cmdEditImmune", u"Edit Immune IPs", 180, 2445, 2100, 375);
}

void frmTolerance::buildNanny()
{
    fraNanny = place<QGroupBox>(this, u"fraNanny", 4860, 3270, 4620, 2130);
    fraNanny->setTitle(QStringLiteral("Nanny"));
    QWidget *f = fraNanny;
    chkNameKick = place<QCheckBox>(f, u"chkNameKick", u"Kick Players with Bad Names", 180, 300, 4080, 300);
    cmdEditBadWords = place<QPushButton>(f, u"cmdEditBadWords", u"Edit List of Bad Words", 420, 690, 2700, 375);
    chkWarn = place<QCheckBox>(f, u"chkWarn", u"Warn if Score is Negative", 180, 1170, 4080, 300);
    cboWarning = editableCombo(f, u"cboWarning", 420, 1560, 4020);
}

void frmTolerance::connectControls()
{
    const auto rule = [this](QCheckBox *box, void (frmTolerance::*handler)()) {
        connect(box, &QCheckBox::toggled, this, handler);
    };
    rule(chkBan, &frmTolerance::chkBan_Click);
    rule(chkWarn, &frmTolerance::chkWarn_Click);
    rule(chkEnableTK, &frmTolerance::chkEnableTK_Click);
    rule(chkKick, &frmTolerance::chkKick_Click);
    rule(chkKickPing, &frmTolerance::chkKickPing_Click);
    rule(chkQPort, &frmTolerance::chkQPort_Click);
    rule(chkRate, &frmTolerance::chkRate_Click);
    connect(cmdOkay, &QPushButton::clicked, this,
            [this] { run(QStringLiteral("cmdOkay_Click"), [this] { cmdOkay_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdForceKickHelp, &QPushButton::clicked, this, &frmTolerance::cmdForceKickHelp_Click);
    const auto edit = [this](QPushButton *button, const QString &fName, const QString &wTitle) {
        connect(button, &QPushButton::clicked, this, [this, fName, wTitle] { editList(fName, wTitle); });
    };
    edit(cmdEditBan, QStringLiteral("banned.txt"), QStringLiteral("Editing Banned Names"));
    edit(cmdEditIP, QStringLiteral("bannedIP.txt"), QStringLiteral("Editing Banned IPs"));
    edit(cmdEditImmune, QStringLiteral("immuneIP.txt"), QStringLiteral("Editing Immune IPs"));
    edit(cmdEditBadWords, QStringLiteral("badnames.txt"), QStringLiteral("Editing Bad Names"));
}

void frmTolerance::Form_Load()
{
    Settings &s = m_settings;
    cboWarning->addItems({QStringLiteral("I am watching you %name%."), QStringLiteral("Cut the TKing crap, %name%."),
                          QStringLiteral("Check your fire, %name%. You have a negative score.")});
    cboBanType->addItems(CodedItems::banType().texts());
    cboBanFor->addItems(CodedItems::banFor().texts());
    cboStatusInterval->addItems(CodedItems::statusInterval().texts());
    cboPasses->addItems({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4"),
                         QStringLiteral("5"), QStringLiteral("6")});

    chkWarn->setChecked(s.Warn);
    chkBan->setChecked(s.Ban);
    chkNameKick->setChecked(s.NameCheck);
    chkForceKick->setChecked(s.ForceKick);
    chkKick->setChecked(s.KickBanned);
    chkKickPing->setChecked(s.KickPing);
    chkTellPlayers->setChecked(s.TellPlayers);
    chkQPort->setChecked(s.QPort);
    chkRate->setChecked(s.Rate);
    chkSkipMap->setChecked(s.SkipMap);
    chkImpersonate->setChecked(s.KickImpersonators);
    // chkEnableTK and chkKickTelefrag open unchecked whatever the settings say.
    txtKickScore->setText(QString::number(s.TKLimit));
    txtBanDuration->setText(QString::number(s.BanDuration));
    txtMaxPing->setText(QString::number(s.MaxPing));
    txtQPortMin->setText(QString::number(s.QPortMin));
    txtQPortMax->setText(QString::number(s.QPortMax));
    txtRateMin->setText(QString::number(s.RateMin));
    txtRateMax->setText(QString::number(s.RateMax));
    txtTellPause->setText(QString::number(s.TellPause));
    showText(cboWarning, s.WarnTxt);

    showText(cboBanType, CodedItems::banType().textOf(s.BanType));
    showText(cboBanFor, CodedItems::banFor().textOf(s.BanFor));
    showText(cboStatusInterval, CodedItems::statusInterval().textOf(s.StatusInterval));

    if (s.PingPasses < 1 || s.PingPasses > 6)
        s.PingPasses = 2; // repaired at once; Cancel does not undo it
    showText(cboPasses, QString::number(s.PingPasses));

    // Whole seconds, written out in full also for a stored interval far out of range.
    txtScanInt->setText(QString::number(static_cast<qint64>(std::nearbyint(s.CheckInt / 1000.0))));

    enable(false, {chkWarn, chkEnableTK, chkKickTelefrag});

    chkBan_Click();
    chkWarn_Click();
    chkEnableTK_Click();
    chkKick_Click();
    chkKickPing_Click();
    chkQPort_Click();
    chkRate_Click();
}

void frmTolerance::chkBan_Click()
{
    enable(chkBan->isChecked(), {cboBanType, lblBanish, lblBanishFor, cboBanFor});
    // The ban duration is shown, never edited.
    enable(false, {lblDuration, txtBanDuration});
}

void frmTolerance::chkWarn_Click()
{
    enable(chkWarn->isChecked(), {cboWarning});
}

void frmTolerance::chkEnableTK_Click()
{
    enable(chkEnableTK->isChecked(), {txtKickScore, lblScoreTolerance});
}

void frmTolerance::chkKick_Click()
{
    enable(chkKick->isChecked(), {chkForceKick, chkTellPlayers, txtTellPause, lblTellPause1, lblTellPause2});
}

void frmTolerance::chkKickPing_Click()
{
    enable(chkKickPing->isChecked(), {txtMaxPing, lblPing, cboPasses, lblPasses, chkSkipMap});
}

void frmTolerance::chkQPort_Click()
{
    enable(chkQPort->isChecked(), {lblQPortMin, lblQPortMax, txtQPortMin, txtQPortMax});
}

void frmTolerance::chkRate_Click()
{
    enable(chkRate->isChecked(), {lblRateMin, lblRateMax, txtRateMin, txtRateMax});
}

bool frmTolerance::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtScanInt && event->type() == QEvent::FocusOut) {
        // Only a move to another control validates, not a switch to another window.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            txtScanInt_Validate();
    }
    return FormDialog::eventFilter(watched, event);
}

void frmTolerance::txtScanInt_Validate()
{
    const std::optional<qint32> ms = Entries::secondsAsMs(txtScanInt->text());
    if (ms && *ms >= 5000 && *ms <= 60000)
        return;
    m_prompts.information(this, QStringLiteral("The range for scanning is 5 to 60 seconds."));
    txtScanInt->setText(QStringLiteral("5"));
}

void frmTolerance::cmdForceKickHelp_Click()
{
    m_prompts.information(this, forceKickHelp);
}

void frmTolerance::editList(const QString &fName, const QString &wTitle)
{
    frmEditFile editor(m_settings, m_lists, m_errors, m_prompts, this);
    editor.Edit_File(fName, wTitle);
    editor.exec();
}

// Every number is checked before anything is stored, so that a refused entry leaves the
// settings as they were and the operator can put it right.
bool frmTolerance::entriesFit()
{
    struct Entry
    {
        QWidget *box;
        QString text;
        QString what;
        qint32 min, max;
    };
    using namespace Entries;
    const QList<Entry> entries{
        {txtKickScore, txtKickScore->text(), QStringLiteral("Score Tolerance"), int32Min, int32Max},
        {txtBanDuration, txtBanDuration->text(), QStringLiteral("The ban duration"), int32Min, int32Max},
        {txtMaxPing, txtMaxPing->text(), QStringLiteral("Max Ping"), int16Min, int16Max},
        {cboPasses, cboPasses->currentText(), QStringLiteral("Passes"), int16Min, int16Max},
        {txtQPortMin, txtQPortMin->text(), QStringLiteral("The lowest QPort"), int32Min, int32Max},
        {txtQPortMax, txtQPortMax->text(), QStringLiteral("The highest QPort"), int32Min, int32Max},
        {txtRateMin, txtRateMin->text(), QStringLiteral("The lowest Rate"), int32Min, int32Max},
        {txtRateMax, txtRateMax->text(), QStringLiteral("The highest Rate"), int32Min, int32Max},
    };
    for (const Entry &e : entries) {
        if (whole(e.text, e.min, e.max))
            continue;
        m_prompts.information(this, mustBe(e.what, e.min, e.max));
        e.box->setFocus();
        return false;
    }
    // Text that is no number, or a negative one, waits 0 seconds; only a number too large is refused.
    const QString pause = txtTellPause->text();
    if (Text::isNumeric(pause) && !Text::trimBlanks(pause).startsWith(u'-') && !whole(pause, int16Min, int16Max)) {
        m_prompts.information(this, mustBe(QStringLiteral("The wait before kicking"), 0, int16Max));
        txtTellPause->setFocus();
        return false;
    }
    return true;
}

void frmTolerance::cmdOkay_Click()
{
    if (!entriesFit())
        return;
    using Entries::whole;
    Settings &s = m_settings;
    const auto number = [](const QLineEdit *box) { return *whole(box->text(), Entries::int32Min, Entries::int32Max); };
    s.Warn = chkWarn->isChecked();
    s.WarnTxt = cboWarning->currentText();
    s.TKLimit = number(txtKickScore);
    s.Ban = chkBan->isChecked();
    s.BanDuration = number(txtBanDuration);
    s.NameCheck = chkNameKick->isChecked();
    s.ForceKick = chkForceKick->isChecked();
    s.KickBanned = chkKick->isChecked();
    s.KickPing = chkKickPing->isChecked();
    s.KickTeleFrag = chkKickTelefrag->isChecked();
    s.MaxPing = number(txtMaxPing);
    s.PingPasses = *whole(cboPasses->currentText(), Entries::int16Min, Entries::int16Max);
    s.KickTK = chkEnableTK->isChecked();
    s.TellPlayers = chkTellPlayers->isChecked();
    s.QPort = chkQPort->isChecked();
    s.QPortMin = number(txtQPortMin);
    s.QPortMax = number(txtQPortMax);
    s.Rate = chkRate->isChecked();
    s.RateMin = number(txtRateMin);
    s.RateMax = number(txtRateMax);
    s.SkipMap = chkSkipMap->isChecked();
    s.KickImpersonators = chkImpersonate->isChecked();
    const std::optional<qint32> pause = whole(txtTellPause->text(), Entries::int16Min, Entries::int16Max);
    s.TellPause = pause ? qMax(0, *pause) : 0;
    s.BanType = CodedItems::banType().valueOf(cboBanType->currentText());
    s.BanFor = CodedItems::banFor().valueOf(cboBanFor->currentText());
    s.StatusInterval = CodedItems::statusInterval().valueOf(cboStatusInterval->currentText());
    const std::optional<qint32> checkInt = Entries::secondsAsMs(Text::trimBlanks(txtScanInt->text()));
    if (checkInt && *checkInt >= 5000 && *checkInt <= 60000) {
        s.CheckInt = *checkInt;
    } else {
        m_prompts.information(this, QStringLiteral("The timer's range is 5 to 60 seconds. Resetting to 30 seconds."));
        s.CheckInt = 30000;
    }
    m_timKickcheck.setInterval(s.CheckInt);
    accept();
}
