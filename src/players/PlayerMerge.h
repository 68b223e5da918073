// SPDX-License-Identifier: MIT
#pragma once

class ErrorLog;
struct PlayerRecord;
struct PlayerState;
struct Stats;

// Merges the scan in hand into the table of the last accepted scan, so that a player
// keeps his identity, join time, warnings and kick state from scan to scan and a cheap
// scan borrows what the last full one told. A row is matched by address, then by a
// name that is unique on both sides, then by a repeated name with the same neighbour.
class PlayerMerge
{
public:
    PlayerMerge(PlayerState &state, Stats &stats, ErrorLog &errors);

    // Replaces currentPlayers and currentCount by the merged scan, in reply order.
    void CopyPlayers();
    // Two rows of the scan with the same name, compared exactly.
    bool SameNames() const;

private:
    void mergeRows();

    PlayerState &m_state;
    Stats &m_stats;
    ErrorLog &m_errors;
};
