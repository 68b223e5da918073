// SPDX-License-Identifier: MIT
#include "service/Journal.h"

#include "engine/Engine.h"
#include "players/PlayerRecord.h"
#include "service/JournalLine.h"
#include "service/ServiceView.h"
#include "service/SystemdNotifier.h"

namespace {

QString counted(qint64 n, const QString &one, const QString &many)
{
    return QString::number(n) + u' ' + (n == 1 ? one : many);
}

// " (slot 3, 203.0.113.66)": what the scan told of the player; a cheap scan tells neither.
QString whereAbouts(const QString &slot, const QString &ip)
{
    QStringList known;
    if (!slot.isEmpty() && slot != unknownField())
        known.append(QStringLiteral("slot ") + slot);
    if (!ip.isEmpty() && ip != unknownField())
        known.append(ip);
    return known.isEmpty() ? QString() : QStringLiteral(" (") + known.join(QStringLiteral(", ")) + u')';
}

} // namespace

Journal::Journal(Engine &engine, const ServiceView &view, SystemdNotifier &notifier, std::FILE *out)
    : m_engine(engine)
    , m_view(view)
    , m_notifier(notifier)
    , m_out(out)
{
    connect(&engine.kick(), &KickAction::kicked, this,
            [this](const QString &slot, const QString &name, const QString &ip, const QString &reason, bool again) {
                notice(QStringLiteral("Kicked %1%2%3: %4.")
                           .arg(name, again ? QStringLiteral(" again") : QString(), whereAbouts(slot, ip), reason));
            });
    connect(&engine.kick(), &KickAction::spared, this,
            [this](const QString &slot, const QString &name, const QString &ip, const QString &reason) {
                notice(QStringLiteral("Spared %1%2, an immune address: %3.").arg(name, whereAbouts(slot, ip), reason));
            });
    connect(&engine.ban(), &BanAction::banned, this,
            [this](const QString &player, const QString &address, const QString &name, const QString &ip,
                   const QString &reason) {
                const QString by = name.isEmpty() ? QStringLiteral("address")
                    : ip.isEmpty()                ? QStringLiteral("name")
                                                  : QStringLiteral("name and address");
                notice(QStringLiteral("Banned %1%2 by %3: %4.").arg(player, whereAbouts(QString(), address), by, reason));
            });
    connect(&engine.announcer(), &Announcer::announced, this,
            [this](const QString &words) { info(QStringLiteral("Announced: ") + words); });
    connect(&engine.queue(), &CommandQueue::refused, this,
            [this](const QString &Cmd) { warning(QStringLiteral("Not queued, the queue was sending: ") + Cmd); });
    connect(&engine.queue(), &CommandQueue::timedOut, this,
            [this](const QString &Cmd) { warning(QStringLiteral("No reply from the server in time after: ") + Cmd); });
    connect(&engine.link().gate(), &SenderGate::notice, this, [this](const QString &line) { warning(line); });
    connect(&engine.checkCycle(), &CheckCycle::ended, this, &Journal::checkEnded);
    connect(&engine.errors(), &ErrorLog::reported, this,
            [this](bool bFatal, const QString &AppMsg, int number, const QString &description) {
                // A fatal report's box follows on standard error, at the same priority.
                if (!bFatal)
                    JournalLine::write(m_out, JournalLine::Error,
                                       QStringLiteral("Error %1: %2 (%3); recorded in ErrLog.txt.")
                                           .arg(QString::number(number), description, AppMsg));
            });
    connect(&engine, &Engine::reloaded, this, [this](const QString &line, const QStringList &warnings) {
        info(line);
        for (const QString &w : warnings)
            warning(w);
        m_notifier.ready(statusText());
    });
}

void Journal::notice(const QString &text)
{
    if (!m_engine.unloaded())
        JournalLine::write(m_out, JournalLine::Notice, text);
}

void Journal::warning(const QString &text)
{
    if (!m_engine.unloaded())
        JournalLine::write(m_out, JournalLine::Warning, text);
}

void Journal::info(const QString &text)
{
    JournalLine::write(m_out, JournalLine::Info, text);
}

QString Journal::statusText() const
{
    const Stats &s = m_engine.stats;
    const QString reply = m_view.label(View::Label::lblResponseTime);
    return (s.map.isEmpty() ? QStringLiteral("no map yet") : s.map) + QStringLiteral(", ")
        + counted(s.players, QStringLiteral("player"), QStringLiteral("players")) + QStringLiteral(", ")
        + counted(s.pingkicks + s.tkkicks + s.bankicks, QStringLiteral("kick"), QStringLiteral("kicks"))
        + QStringLiteral(", ") + counted(s.banadds, QStringLiteral("ban"), QStringLiteral("bans"))
        + QStringLiteral(", reply ") + (reply.isEmpty() ? QStringLiteral("none yet") : reply);
}

void Journal::checkEnded(qint32 check, CheckCycle::End end)
{
    if (m_engine.unloaded())
        return;
    switch (end) {
    case CheckCycle::End::Done:
        if (!m_answering)
            info(QStringLiteral("Check %1: the server answers again.").arg(check));
        m_answering = true;
        if (m_engine.stats.map != m_map) {
            m_map = m_engine.stats.map;
            info(QStringLiteral("Map %1, %2.").arg(m_map, counted(m_engine.stats.players, QStringLiteral("player"),
                                                                   QStringLiteral("players"))));
        }
        m_notifier.status(statusText());
        return;
    case CheckCycle::End::NoGoodStatus:
        if (m_answering)
            warning(QStringLiteral("Check %1: no good status from the server; told again once it answers.").arg(check));
        m_answering = false;
        m_notifier.status(QStringLiteral("no good status from the server at check %1").arg(check));
        return;
    case CheckCycle::End::ForceKicked:
        m_notifier.status(QStringLiteral("check %1: the banned names kicked without a status").arg(check));
        return;
    case CheckCycle::End::Skipped:
        warning(QStringLiteral("Check skipped: the server still owes a reply."));
        m_notifier.status(QStringLiteral("check skipped: the server still owes a reply"));
        return;
    }
}

void Journal::started()
{
    const Settings &s = m_engine.settings;
    info(QStringLiteral("Started: watching %1:%2 from UDP port %3, a check every %4 s; lists and logs in %5.")
             .arg(s.Host, QString::number(s.Port), QString::number(m_engine.link().localPort()),
                  QString::number(s.CheckInt / 1000.0), s.FileLoc));
    m_notifier.ready(QStringLiteral("watching %1:%2, the first check in %3 s")
                         .arg(s.Host, QString::number(s.Port), QString::number(s.CheckInt / 1000.0)));
}

void Journal::reloadRequested()
{
    m_notifier.reloading();
}

void Journal::stopping()
{
    m_notifier.stopping();
    info(QStringLiteral("Stopping."));
}

void Journal::stopped()
{
    const Stats &s = m_engine.stats;
    info(QStringLiteral("Stopped after %1: %2, %3.")
             .arg(counted(s.checks, QStringLiteral("check"), QStringLiteral("checks")),
                  counted(s.pingkicks + s.tkkicks + s.bankicks, QStringLiteral("kick"), QStringLiteral("kicks")),
                  counted(s.banadds, QStringLiteral("ban"), QStringLiteral("bans"))));
}
