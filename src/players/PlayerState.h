// SPDX-License-Identifier: MIT
#pragma once

#include "players/PlayerRecord.h"

// The player tables: the merged table of the last accepted scan and the scan in hand.
struct PlayerState
{
    PlayerTable currentPlayers;
    qint32 currentCount = 0;
    PlayerTable scanPlayers;
    qint32 scanCount = 0;
};
