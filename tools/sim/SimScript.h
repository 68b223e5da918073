// SPDX-License-Identifier: MIT
#pragma once

#include "SimPlayer.h"

#include <QByteArray>
#include <QList>
#include <QString>

// What happens on the simulated server over time, read from a small text file.
//
// One event a line: <seconds> <verb> <arguments>. Seconds count from the start of the
// sim and may have a fraction (12.5). Events at the same second apply in file order;
// the file need not be sorted. Blank lines are skipped, and # outside quotes starts a
// comment up to the line end.
//
//   <t> map <mapname>
//   <t> join <name> [slot=N] [score=N] [ping=N|CNCT|ZMBI] [lastmsg=N]
//                   [ip=A.B.C.D] [port=N] [qport=N] [rate=N]
//   <t> leave <who>
//   <t> ping <who> N|CNCT|ZMBI
//   <t> name <who> <new name>
//   <t> score <who> N
//
// A join leaves out what SimPlayer's defaults give; without slot= it takes the first
// free slot (0-63). <who> is a slot number, or a player's current name (exact). A name
// with blanks goes in double quotes, where \" is a quote, \\ a backslash and \xHH any
// byte; unquoted, a number is a slot and anything else a name. Verbs and CNCT/ZMBI are
// case-insensitive.
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
