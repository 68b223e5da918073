// SPDX-License-Identifier: MIT
#pragma once

#include "core/View.h"

#include <QList>

struct PlayerState;
struct Settings;
struct Stats;

// The grid of players and the four labels of the stats panel, rebuilt whole from
// currentPlayers at every refresh. Apart from avgping it changes no state.
class PlayerGrid
{
public:
    // What one refresh shows: the grid and the ping figures behind the labels.
    struct Picture
    {
        GridView grid;
        qint32 low = 999;
        qint32 high = 0;
        qint32 sum = 0;
        qint32 counted = 0;
        qint32 count999 = 0;
        qint32 avgping = 0;
    };

    PlayerGrid(const PlayerState &state, Stats &stats, const Settings &settings, View &view);

    void RefreshGrid();

    // The refresh without a view.
    static Picture picture(const PlayerState &state, const Settings &settings);
    static QList<qint32> baseWidths();

private:
    const PlayerState &m_state;
    Stats &m_stats;
    const Settings &m_settings;
    View &m_view;
};
