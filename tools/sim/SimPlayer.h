// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// One client slot on the simulated server. Text is kept as the raw bytes that go on
// the wire, so colour codes and Latin-1 bytes come back exactly as they were set.
struct SimPlayer
{
    // A connecting or zombie client shows CNCT / ZMBI in place of its ping.
    enum class State { Active, Connecting, Zombie };

    int slot = -1; // -1 when adding: the first free slot
    QByteArray name;
    int score = 0;
    int ping = 50;
    State state = State::Active;
    int lastmsg = 0;
    QByteArray ip = QByteArrayLiteral("127.0.0.1");
    quint16 port = 27960;
    int qport = 0;
    int rate = 25000;

    bool operator==(const SimPlayer &) const = default;
};
