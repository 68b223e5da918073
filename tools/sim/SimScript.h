// SPDX-License-Identifier: MIT
#pragma once

#include "SimPlayer.h"

#include <QByteArray>
#include <QList>
#include <QString>

// What happens on the simulated server over time, read from a small text file whose
// lines are described in SimServer.h (and at the top of demo.script).
class SimScript
{
public:
    struct Event
    {
        enum class Kind { Map, Join, Leave, Ping, Name, Score };

        double time = 0;
        Kind kind = Kind::Map;
        int line = 0;            // in the file, for warnings when the event can't apply
        int slot = -1;           // the player it acts on, or -1 to go by `who`
        QByteArray who;          // the player's name when `slot` is -1
        QByteArray text;         // map: the map name; name: the new name
        int number = 0;          // score, or ping when `state` is Active
        SimPlayer::State state = SimPlayer::State::Active;
        SimPlayer player;        // join: the whole newcomer
    };

    // Replaces the events with those in `text`. On a fault keeps the old ones, returns
    // false and tells the line and what is wrong in *error.
    bool parse(const QByteArray &text, QString *error = nullptr);
    bool load(const QString &path, QString *error = nullptr);

    // By time; in file order within one time.
    const QList<Event> &events() const { return m_events; }

private:
    QList<Event> m_events;
};
