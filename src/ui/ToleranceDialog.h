// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

class ListFiles;
class QCheckBox;
class Ticker;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
struct Settings;

// frmTolerance: the enforcement policies. Okay writes them to the settings in memory,
// where the policies read them at their next run; it also edits four of the lists.
class frmTolerance : public FormDialog
{
    Q_OBJECT
public:
    // `lists`: four of them are edited from here. `timKickcheck`: takes CheckInt at once.
    frmTolerance(Settings &settings, ListFiles &lists, Ticker &timKickcheck, ErrorLog &errors, Prompts &prompts,
                 QWidget *parent);

    static const QString forceKickHelp;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildPatrol();
    void buildPolice();
    void buildPrison();
    void buildNanny();
    void connectControls();

    void Form_Load();
    void chkBan_Click();
    void chkWarn_Click();
    void chkEnableTK_Click();
    void chkKick_Click();
    void chkKickPing_Click();
    void chkQPort_Click();
    void chkRate_Click();
    void txtScanInt_Validate();
    void cmdOkay_Click();
    void cmdForceKickHelp_Click();
    void editList(const QString &fName, const QString &wTitle);
    bool entriesFit();

    QGroupBox *fraPatrol, *fraPolice, *fraPrison, *fraNanny;
    QLabel *Label1, *lblBanCheck1, *lblBanCheck2;
    QLineEdit *txtScanInt;
    QComboBox *cboStatusInterval;

    QCheckBox *chkBan, *chkEnableTK, *chkKickPing, *chkSkipMap, *chkImpersonate, *chkKickTelefrag, *chkQPort,
        *chkRate;
    QLabel *lblBanish, *lblBanishFor, *lblDuration, *Label2, *lblScoreTolerance, *lblPing, *lblPasses;
    QLabel *lblQPortMin, *lblQPortMax, *lblRateMin, *lblRateMax;
    QComboBox *cboBanType, *cboBanFor, *cboPasses;
    QLineEdit *txtBanDuration, *txtKickScore, *txtMaxPing, *txtQPortMin, *txtQPortMax, *txtRateMin, *txtRateMax;

    QCheckBox *chkKick, *chkForceKick, *chkTellPlayers;
    QPushButton *cmdForceKickHelp;
    QLabel *lblTellPause1, *lblTellPause2;
    QLineEdit *txtTellPause;
    QPushButton *cmdEditBan, *cmdEditIP, *cmdEditImmune;

    QCheckBox *chkNameKick, *chkWarn;
    QPushButton *cmdEditBadWords;
    QComboBox *cboWarning;

    QPushButton *cmdOkay, *cmdCancel;

    Settings &m_settings;
    ListFiles &m_lists;
    Ticker &m_timKickcheck;
};
