// SPDX-License-Identifier: MIT
#include "engine/Engine.h"

#include "core/Clock.h"
#include "core/RuntimeError.h"
#include "core/Text.h"
#include "core/View.h"
#include "core/Waits.h"

Engine::Engine(Clock &clock, View &view, EngineParts parts, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
    , m_view(view)
    , m_pane(view)
    , m_errors(clock, view, [this] { return settings.FileLoc; }, std::move(parts.terminate),
               [this](const QString &line) { m_pane.append(QStringLiteral("\r\n") + line + QStringLiteral("\r\n")); })
    , m_log(clock, m_errors, settings, stats)
    , m_store(settings, stats, clock, std::make_unique<IniSettingsBackend>(), std::move(parts.programDirectory))
    , m_lists(settings, m_errors)
    , m_link(clock, view, settings, m_pane, m_log, m_errors, *this,
             [this] { return m_check.checkRunning() || m_queue.queueDraining(); })
    , m_queue(m_link, view, settings, m_pane, m_log, m_errors, *this)
    , m_parser(m_players, stats, clock, m_errors)
    , m_merge(m_players, stats, m_errors)
    , m_grid(m_players, stats, settings, view)
    , m_scores(m_pane, m_parser, m_merge, m_errors)
    , m_statusCycle(m_queue, m_link, m_scores, m_grid, m_players, stats, settings, m_pane, m_log, view, *this)
    , m_variables(m_players, stats, settings, m_lists, clock)
    , m_announcer(clock, settings, m_lists, m_variables, m_queue, m_pane, m_log, m_errors, *this)
    , m_ban(m_players, settings, stats, m_lists, m_log, clock)
    , m_kick(m_players, settings, stats, m_lists, m_variables, m_log, clock, m_ban, queueCommand())
    , m_policies{m_players, settings, stats, m_lists, m_kick, m_log, m_pane, clock, queueCommand()}
    , m_checkCycle(settings, stats, m_lists, m_queue, m_link, m_statusCycle, m_policies, m_grid, m_log, clock)
    , m_actions(view, m_players, m_kick, m_ban, m_grid, m_queue, settings, m_errors, *this)
    , m_check(parts.check ? *parts.check : m_checkCycle)
    , m_statusCommand(std::move(parts.statusCommand))
    , m_timKickcheck(clock)
    , m_timProgress(clock)
{
    connect(&m_timKickcheck, &Ticker::tick, this,
            [this] { m_errors.guarded(QStringLiteral("timKickcheck_Timer"), [this] { timKickcheck_Timer(); }); });
    connect(&m_timProgress, &Ticker::tick, this,
            [this] { m_errors.guarded(QStringLiteral("timProgress_Timer"), [this] { timProgress_Timer(); }); });
    m_reloadRetry.setSingleShot(true);
    connect(&m_reloadRetry, &QTimer::timeout, this, &Engine::requestReload);
}

Engine::~Engine() = default;

QueueCommand Engine::queueCommand()
{
    return [this](const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause) {
        return m_queue.AddSrvCmd(Cmd, bShowT, bDoNow, bRconCmd, intPause);
    };
}

void Engine::Pause(double seconds) const
{
    ::Pause(m_clock, seconds, &m_waits);
}

void Engine::LoadSettings(const QString &strAppName)
{
    m_store.readSettings(strAppName);
    m_store.ResetStats();
    m_lists.LoadAll();
}

void Engine::saveSettings(bool bAll)
{
    // A store that cannot be written is no reason to stop keeping order: recorded, and the
    // operator told, while the block in memory goes on as it is.
    try {
        m_store.StoreSettings(bAll);
    } catch (const RuntimeError &error) {
        m_errors.ReportError(false, QStringLiteral("Error saving settings"));
        m_view.messageBox(QStringLiteral("The settings could not be saved: ") + error.description()
                          + QStringLiteral(". The settings stored before stay as they were."));
    }
}

void Engine::FirstRunCheck()
{
    if (m_store.readRunBefore() != 0)
        return;
    const QString previous = m_store.readText(SettingsStore::previousApp, QStringLiteral("FileLoc"), QString());
    if (previous.isEmpty())
        return;
    if (!m_view.question(QStringLiteral("Would you like to copy your settings for the previous version of Quorvane?")))
        return;
    LoadSettings(SettingsStore::previousApp);
    const QString oldFileLoc = settings.FileLoc;
    settings.FileLoc = m_store.programDirectory();
    saveSettings(true);
    // The lists of the old folder follow into the new one.
    if (oldFileLoc.compare(settings.FileLoc, Qt::CaseInsensitive) != 0)
        m_lists.CopyListsToNewFolder();
}

void Engine::Form_Load(const QString &commandLine)
{
    m_errors.catching(QStringLiteral("Error initializing application"), [&] {
        const QString strCmdLine = Text::trimBlanks(commandLine).toLower();
        m_view.applyWindowLayout();
        m_view.setFieldText(View::Field::txtHost, settings.Host);
        m_view.setFieldText(View::Field::txtPwd, settings.Pwd);
        m_view.setFieldText(View::Field::txtPort, QString::number(settings.Port));
        m_view.setFieldText(View::Field::txtServerName, settings.Voice);
        stats.prevmap.clear();
        settings.WinState = m_view.windowState();
        if (settings.LocalPort < 0 || settings.LocalPort > 65535)
            throw RuntimeError(RuntimeError::Overflow, QStringLiteral("Overflow"));
        m_link.bind(static_cast<quint16>(settings.LocalPort));
        m_queue.reset(); // waitingForServer False, srvqueueTop -1
        m_engineRunning = false;
        m_view.setSettingsTicked(settings.SaveSettings);
        m_view.setTrayTicked(settings.SysTray);
        m_view.setTrayShown(settings.SysTray);
        if (settings.CheckInt < 5000)
            settings.CheckInt = 5000;
        m_timKickcheck.setInterval(settings.CheckInt);
        m_timKickcheck.stop();
        m_timProgress.setInterval(1000);
        m_timProgress.stop();
        m_link.forgetAnswer();
        m_announcer.Announce_Timer_Control(settings.intAnnouce == 1 ? QStringLiteral("ON") : QStringLiteral("OFF"));
        m_log.resetLogOpen();
        if (settings.SaveLog) {
            m_log.OpenLog();
            m_log.WriteLog(QStringLiteral("Application started successfully\r\n...check interval ")
                           + QString::number(settings.CheckInt) + QStringLiteral("\r\n...announce interval ")
                           + QString::number(settings.lngAnnounce) + QStringLiteral("\r\n...command line '")
                           + strCmdLine + u'\'');
        }
        if (strCmdLine == u"-a" || strCmdLine == u"/a") {
            m_pane.append(QStringLiteral("Automatic Startup\r\n"));
            cmdStart_Click();
            if (settings.SaveLog)
                m_log.WriteLog(QStringLiteral("Automatically starting TK check"));
        }
        m_loaded = true;
    });
}

void Engine::cmdStart_Click()
{
    if (!m_engineRunning) {
        m_timKickcheck.start();
        setProgress(0);
        m_timProgress.start();
        m_view.setStartCaption(QStringLiteral("Stop"));
        m_engineRunning = true;
        if (settings.SaveLog)
            m_log.WriteLog(QStringLiteral("Quorvane started"), true);
        m_view.setEnabled(View::Control::mnuOptions, false);
        saveSettings(settings.SaveSettings);
        mnuStatus_Click();
    } else {
        m_timKickcheck.stop();
        m_timProgress.stop();
        intProgressCheck = 0;
        setProgress(0);
        m_view.setStartCaption(QStringLiteral("Start"));
        m_engineRunning = false;
        if (settings.SaveLog)
            m_log.WriteLog(QStringLiteral("Quorvane stopped"), true);
        m_view.setEnabled(View::Control::mnuOptions, true);
    }
}

void Engine::mnuStatus_Click()
{
    if (m_statusCommand)
        m_statusCommand();
    else
        m_statusCycle.sendStatus(QStringLiteral("status"));
}

void Engine::TkCheck()
{
    m_check.TkCheck();
}

void Engine::timKickcheck_Timer()
{
    m_pane.append(QStringLiteral("\r\nRunning a TK check.....\r\n"));
    m_timProgress.stop();
    setProgress(progressMaximum());
    if (!m_check.checkRunning()) {
        SetCommandControls(0);
        TkCheck();
        SetCommandControls(1);
    }
    intProgressCheck = 0;
    setProgress(0);
    if (m_engineRunning && !m_unloaded)
        m_timProgress.start();
}

void Engine::timProgress_Timer()
{
    ++intProgressCheck;
    setProgress(intProgressCheck);
}

int Engine::progressMaximum() const
{
    // The bar counts the seconds of one check interval.
    return qRound(static_cast<float>(m_timKickcheck.interval()) / 1000.0f);
}

void Engine::setProgress(int value)
{
    m_view.setProgress(0, progressMaximum(), value);
}

void Engine::SetCommandControls(int intEnable)
{
    const bool on = intEnable == 1;
    for (View::Control control :
         {View::Control::cmdStatus, View::Control::cmdServerInfo, View::Control::cmdOther, View::Control::cmdKick,
          View::Control::cmdKickBan, View::Control::cmdSay, View::Control::txtSay, View::Control::mnuStatus,
          View::Control::mnuServerInfo, View::Control::mnuOther}) {
        m_view.setEnabled(control, on);
    }
    m_view.setTrayFlashing(!on);
}

void Engine::chkSettings_Click(bool ticked)
{
    settings.SaveSettings = ticked;
}

void Engine::Form_Unload()
{
    if (m_unloading)
        return;
    m_unloading = true;
    if (m_engineRunning) {
        cmdStart_Click();
        Pause(1.0);
    }
    if (!m_link.isClosed())
        m_link.close();
    settings.WinState = m_view.windowState();
    saveSettings(settings.SaveSettings);
    m_link.gate().tellNow();
    if (m_log.logOpen()) {
        m_log.WriteLog(QStringLiteral("Shutting down and closing log."));
        m_log.CloseLog();
    }
    // From here on a cycle still unwinding inside a Pause sends, logs and waits nothing.
    m_unloaded = true;
    m_waits.cancel();
    Q_EMIT finished();
}

void Engine::requestReload()
{
    if (m_unloading)
        return;
    // Never under a running cycle: the policies walk the lists, the queue sends what they queued.
    if (!m_loaded || m_check.checkRunning() || m_queue.queueDraining()) {
        m_reloadRetry.start(m_clock.timerMsFor(0.25));
        return;
    }
    m_reloadRetry.stop();
    m_errors.guarded(QStringLiteral("Reload"), [this] { reload(); });
}

void Engine::reload()
{
    Settings fresh = settings;
    const bool settingsRead = m_store.rereadSettings(SettingsStore::ownApp, fresh);
    m_lists.LoadAll();
    const ListFiles &l = m_lists;
    QString line = QStringLiteral("Reloaded the lists (%1 %2, %3 %4, %5 %6, %7 %8, %9 %10, %11 %12 entries); ")
                       .arg(ListFiles::servmsgFile).arg(l.serverMessageTop() + 1)
                       .arg(ListFiles::highpingFile).arg(l.highPingMessageTop() + 1)
                       .arg(ListFiles::bannedFile).arg(l.bannedNameTop() + 1)
                       .arg(ListFiles::bannedIPFile).arg(l.bannedIPTop() + 1)
                       .arg(ListFiles::badnamesFile).arg(l.badNameTop() + 1)
                       .arg(ListFiles::immuneIPFile).arg(l.immuneIPTop() + 1);
    QStringList warnings;
    if (settingsRead) {
        const Settings before = settings;
        warnings = keepWhileRunning(fresh);
        const QStringList changed = SettingsStore::changedKeys(before, fresh);
        settings = fresh;
        applyReloaded(before);
        line += changed.isEmpty() ? QStringLiteral("no setting changed.")
                                  : QStringLiteral("settings changed: ") + changed.join(QStringLiteral(", ")) + u'.';
    } else {
        line += QStringLiteral("settings kept.");
        warnings.append(QStringLiteral("The settings file ") + IniSettingsBackend::filePath(SettingsStore::ownApp)
                        + QStringLiteral(" cannot be read: the settings stay as they were."));
    }
    // The line goes to the log while it is on: before a reload that turns it off, after one
    // that turns it on.
    if (settings.SaveLog)
        m_log.followSaveLog();
    m_log.WriteLog(line, true);
    for (const QString &warning : warnings)
        m_log.WriteLog(warning);
    m_log.followSaveLog();
    m_pane.append(QStringLiteral("\r\n") + line + QStringLiteral("\r\n"));
    for (const QString &warning : warnings)
        m_pane.append(warning + QStringLiteral("\r\n"));
    Q_EMIT reloaded(line, warnings);
}

QStringList Engine::keepWhileRunning(Settings &fresh) const
{
    QStringList warnings;
    // The window's own size and state are the window's.
    fresh.WinWidth = settings.WinWidth;
    fresh.WinHeight = settings.WinHeight;
    fresh.WinState = settings.WinState;
    fresh.SysTray = settings.SysTray;
    if (fresh.CheckInt < 5000)
        fresh.CheckInt = 5000;
    // Lists and logs stay where they are; the orderly stop stores the folder in use.
    if (fresh.FileLoc != settings.FileLoc) {
        warnings.append(QStringLiteral("FileLoc is not reloaded: the program stays in ") + settings.FileLoc
                        + QStringLiteral(" and stores that at the stop; stop it to change the folder."));
        fresh.FileLoc = settings.FileLoc;
    }
    // Taken into the settings, so that the stop stores it, but the socket stays bound.
    if (fresh.LocalPort != settings.LocalPort)
        warnings.append(QStringLiteral("LocalPort %1 takes effect at the next start; until then the program listens on %2.")
                            .arg(fresh.LocalPort)
                            .arg(m_link.localPort()));
    return warnings;
}

void Engine::applyReloaded(const Settings &before)
{
    m_view.setFieldText(View::Field::txtHost, settings.Host);
    m_view.setFieldText(View::Field::txtPwd, settings.Pwd);
    m_view.setFieldText(View::Field::txtPort, QString::number(settings.Port));
    m_view.setFieldText(View::Field::txtServerName, settings.Voice);
    if (settings.SaveSettings != before.SaveSettings)
        m_view.setSettingsTicked(settings.SaveSettings);
    if (settings.CheckInt != before.CheckInt)
        m_timKickcheck.setInterval(settings.CheckInt);
    if (settings.intAnnouce != before.intAnnouce || settings.lngAnnounce != before.lngAnnounce)
        m_announcer.Announce_Timer_Control(settings.intAnnouce == 1 ? QStringLiteral("ON") : QStringLiteral("OFF"));
}
