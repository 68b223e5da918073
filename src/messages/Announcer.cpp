// SPDX-License-Identifier: MIT
#include "messages/Announcer.h"

#include "core/ActivityLog.h"
#include "core/Clock.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/RunControl.h"
#include "core/Settings.h"
#include "core/Text.h"
#include "link/CommandQueue.h"
#include "messages/ListFiles.h"
#include "messages/Variables.h"

#include <QRandomGenerator>

#include <cmath>

Announcer::Announcer(Clock &clock, const Settings &settings, ListFiles &lists, const Variables &variables,
                     CommandQueue &queue, OutputPane &pane, ActivityLog &log, ErrorLog &errors, const RunControl &run)
    : timAnnounce(clock)
    , m_clock(clock)
    , m_settings(settings)
    , m_lists(lists)
    , m_variables(variables)
    , m_queue(queue)
    , m_pane(pane)
    , m_log(log)
    , m_run(run)
{
    connect(&timAnnounce, &Ticker::tick, this, [this, &errors] {
        errors.guarded(QStringLiteral("timAnnounce_Timer"), [this] { timAnnounce_Timer(); });
    });
}

void Announcer::Announce_Timer_Control(const QString &strMode)
{
    announceTicks = 0;
    if (strMode == u"ON") {
        timAnnounce.setInterval(60000);
        timAnnounce.start();
    } else {
        timAnnounce.stop();
    }
}

qint32 Announcer::chooseMessage()
{
    ListFiles &lists = m_lists;
    if (m_settings.MsgRandom) {
        // Seeded anew from the clock at every pick; repeats are allowed.
        QRandomGenerator generator(static_cast<quint32>(m_clock.now().toMSecsSinceEpoch()));
        return static_cast<qint32>(std::floor(generator.generateDouble() * (lists.serverMessageTop() + 1)));
    }
    const qint32 index = lists.nextMessage;
    if (++lists.nextMessage > lists.serverMessageTop())
        lists.nextMessage = 0;
    return index;
}

void Announcer::timAnnounce_Timer()
{
    const Settings &s = m_settings;
    if (++announceTicks < s.lngAnnounce)
        return;
    announceTicks = 0;
    if (!m_run.engineRunning())
        return; // the due tick is lost; the next chance is a full interval away
    const QString tag = Text::trimBlanks(s.Voice);
    const QString head = tag.isEmpty() ? QString() : tag + QStringLiteral(": ");
    const QString message = m_lists.serverMessages().at(chooseMessage());
    const QString words = head + m_variables.ExpandVariables(message, -1);
    if (m_queue.AddSrvCmd(QStringLiteral("say ") + words, true, true, true, 0)) {
        Q_EMIT announced(words);
        return;
    }
    // Refused while the queue drains: dropped, not retried.
    m_pane.append(QStringLiteral("Error sending timed announcement.\r\n"));
    if (s.SaveLog)
        m_log.WriteLog(QStringLiteral("Error sending timed announcement."), false);
}
