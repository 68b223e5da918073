// SPDX-License-Identifier: MIT
#pragma once

#include "enforcement/CheckCycle.h"

#include <QObject>
#include <QString>

#include <cstdio>

class Engine;
class ServiceView;
class SystemdNotifier;

// What the service tells the operator reading its journal: start and stop, every kick and
// ban with the player, his address and the reason, announcements, time-outs and refusals,
// datagrams from strangers, reloads and errors, one line each with its priority. A check
// that goes well shows only in systemd's status line; one that gets no good status is told
// once until the server answers again. Nothing here carries the password.
class Journal : public QObject
{
    Q_OBJECT
public:
    Journal(Engine &engine, const ServiceView &view, SystemdNotifier &notifier, std::FILE *out = stdout);

    // The engine has loaded and started: READY, and the line that says what it watches.
    void started();
    void reloadRequested();
    void stopping();
    void stopped();

    // "obj/obj_team2, 14 players, 3 kicks, 2 bans, reply 45 ms".
    QString statusText() const;

private:
    void notice(const QString &text);
    void warning(const QString &text);
    void info(const QString &text);
    void checkEnded(qint32 check, CheckCycle::End end);

    Engine &m_engine;
    const ServiceView &m_view;
    SystemdNotifier &m_notifier;
    std::FILE *m_out;
    QString m_map;
    bool m_answering = true;
};
