// SPDX-License-Identifier: MIT
#include "messages/Announcer.h"

#include "core/Clock.h"
#include "core/Engine.h"
#include "core/Text.h"
#include "link/CommandQueue.h"

#include <QRandomGenerator>

#include <cmath>

Announcer::Announcer(Engine &engine)
    : timAnnounce(engine.clock())
    , m_engine(engine)
{
    connect(&engine, &Engine::announcementsToArm, this,
            [this](bool on) { Announce_Timer_Control(on ? QStringLiteral("ON") : QStringLiteral("OFF")); });
    connect(&timAnnounce, &Ticker::tick, this,
            [this] { m_engine.errors().guarded(QStringLiteral("timAnnounce_Timer"), [this] { timAnnounce_Timer(); }); });
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
    ListFiles &lists = m_engine.lists();
    if (m_engine.settings.MsgRandom) {
        // Seeded anew from the clock at every pick; repeats are allowed.
        QRandomGenerator generator(static_cast<quint32>(m_engine.clock().now().toMSecsSinceEpoch()));
        return static_cast<qint32>(std::floor(generator.generateDouble() * (lists.serverMessageTop() + 1)));
    }
    const qint32 index = lists.nextMessage;
    if (++lists.nextMessage > lists.serverMessageTop())
        lists.nextMessage = 0;
    return index;
}

void Announcer::timAnnounce_Timer()
{
    const Settings &s = m_engine.settings;
    if (++announceTicks < s.lngAnnounce)
        return;
    announceTicks = 0;
    if (!m_engine.engineRunning())
        return; // the due tick is lost; the next chance is a full interval away
    const QString tag = Text::trimBlanks(s.Voice);
    const QString head = tag.isEmpty() ? QStringLiteral("say ") : QStringLiteral("say ") + tag + QStringLiteral(": ");
    const QString message = m_engine.lists().serverMessages().at(chooseMessage());
    if (m_engine.queue().AddSrvCmd(head + m_engine.ExpandVariables(message, -1), true, true, true, 0))
        return;
    // Refused while the queue drains: dropped, not retried.
    m_engine.pane().append(QStringLiteral("Error sending timed announcement.\r\n"));
    if (s.SaveLog)
        m_engine.log().WriteLog(QStringLiteral("Error sending timed announcement."), false);
}
