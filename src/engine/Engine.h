// SPDX-License-Identifier: MIT
#pragma once

#include "core/ActivityLog.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/RunControl.h"
#include "core/Settings.h"
#include "core/SettingsStore.h"
#include "core/Stats.h"
#include "core/Ticker.h"
#include "core/Waits.h"
#include "enforcement/BanAction.h"
#include "enforcement/CheckCycle.h"
#include "enforcement/KickAction.h"
#include "enforcement/OperatorActions.h"
#include "enforcement/PolicyContext.h"
#include "link/CommandQueue.h"
#include "link/RconLink.h"
#include "messages/Announcer.h"
#include "messages/ListFiles.h"
#include "messages/Variables.h"
#include "players/PlayerGrid.h"
#include "players/PlayerMerge.h"
#include "players/PlayerState.h"
#include "players/ScoreReader.h"
#include "players/StatusCycle.h"
#include "players/StatusParser.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class CheckRoutine;
class Clock;
class View;

// What the engine is built with besides the clock and the view. The program leaves them
// as they are; a test hands in its own.
struct EngineParts
{
    // What a tick of timKickcheck runs instead of the check cycle.
    CheckRoutine *check = nullptr;
    // What the Status command runs instead of one status exchange.
    std::function<void()> statusCommand;
    // How a fatal error ends the process instead of at once.
    std::function<void()> terminate;
    // The folder taken for the program's own (FileLoc when none is stored).
    QString programDirectory;
};

// The engine: every part built from the clock, the view and the parts it is given, and
// the run control that drives them: how the program comes up, the run switch, the timers
// that drive the checks and the orderly stop. It is the one place that knows every part;
// a main builds it with a View of its own and hands the operator's actions to it.
//
// Everything runs on one thread; flags stand in for locks because Pause runs events
// inside whatever routine called it. Each flag sits with the one routine that sets it and
// is read elsewhere only: engineRunning here, checkRunning with the check routine,
// waitingForServer and queueDraining with the queue, serverAnswered with the link,
// logOpen with the log.
class Engine : public QObject, public RunControl
{
    Q_OBJECT
public:
    Engine(Clock &clock, View &view, EngineParts parts = {}, QObject *parent = nullptr);
    ~Engine() override;

    // The settings block and the statistics: module state, read by whoever needs a value.
    Settings settings;
    Stats stats;

    OutputPane &pane() { return m_pane; }
    ActivityLog &log() { return m_log; }
    ErrorLog &errors() { return m_errors; }
    SettingsStore &store() { return m_store; }
    ListFiles &lists() { return m_lists; }
    RconLink &link() { return m_link; }
    CommandQueue &queue() { return m_queue; }
    PlayerState &players() { return m_players; }
    StatusParser &parser() { return m_parser; }
    PlayerMerge &merge() { return m_merge; }
    PlayerGrid &grid() { return m_grid; }
    ScoreReader &scores() { return m_scores; }
    StatusCycle &statusCycle() { return m_statusCycle; }
    Variables &variables() { return m_variables; }
    Announcer &announcer() { return m_announcer; }
    BanAction &ban() { return m_ban; }
    KickAction &kick() { return m_kick; }
    PolicyContext &policies() { return m_policies; }
    CheckCycle &checkCycle() { return m_checkCycle; }
    OperatorActions &actions() { return m_actions; }

    // The check timer: one check a tick. The tolerances dialog sets its interval.
    Ticker &timKickcheck() { return m_timKickcheck; }
    // The progress bar's timer: one second a tick between two checks.
    const Ticker &timProgress() const { return m_timProgress; }

    // Start-up, before the window opens.
    void FirstRunCheck();
    void LoadSettings(const QString &strAppName);

    void Form_Load(const QString &commandLine);
    // The run switch: Start when the engine is stopped, else Stop.
    void cmdStart_Click() override;
    void timKickcheck_Timer();
    void timProgress_Timer();
    void SetCommandControls(int intEnable);
    // The orderly stop; finished() follows.
    void Form_Unload();
    void chkSettings_Click(bool ticked);
    // The Status command of the window.
    void mnuStatus_Click();
    // One check, by the check routine in use.
    void TkCheck();

    // Reads the six lists and the settings that can change while running again (SIGHUP),
    // keeping the player table and the statistics. One that comes during a check or a drain
    // of the queue, or before the window has loaded, waits until then; after the orderly
    // stop it does nothing. A list that cannot be read is the fatal error of the start.
    void requestReload();

    // Start has been pressed and Stop has not. Only the run switch sets it.
    bool engineRunning() const override { return m_engineRunning; }
    bool unloaded() const override { return m_unloaded; }
    // Waits with events running; ends at once when the window has unloaded.
    void Pause(double seconds) const override;

Q_SIGNALS:
    // The orderly stop is done; the window closes and the process ends.
    void finished();
    // A reload is done: what it read, as in the log, then what it did not apply.
    void reloaded(const QString &line, const QStringList &warnings);

private:
    void saveSettings(bool bAll);
    int progressMaximum() const;
    QueueCommand queueCommand();
    void setProgress(int value);
    void reload();
    // Puts back in `fresh` what a reload does not change; tells what it kept.
    QStringList keepWhileRunning(Settings &fresh) const;
    void applyReloaded(const Settings &before);

    Clock &m_clock;
    View &m_view;
    OutputPane m_pane;
    ErrorLog m_errors;
    ActivityLog m_log;
    SettingsStore m_store;
    ListFiles m_lists;
    RconLink m_link;
    CommandQueue m_queue;
    PlayerState m_players;
    StatusParser m_parser;
    PlayerMerge m_merge;
    PlayerGrid m_grid;
    ScoreReader m_scores;
    StatusCycle m_statusCycle;
    Variables m_variables;
    Announcer m_announcer;
    BanAction m_ban;
    KickAction m_kick;
    PolicyContext m_policies;
    CheckCycle m_checkCycle;
    OperatorActions m_actions;
    CheckRoutine &m_check;
    std::function<void()> m_statusCommand;

    Ticker m_timKickcheck;
    Ticker m_timProgress;
    qint32 intProgressCheck = 0;
    bool m_engineRunning = false;
    bool m_loaded = false;
    bool m_unloading = false;
    QTimer m_reloadRetry;
    bool m_unloaded = false;
    WaitCancel m_waits;
};
