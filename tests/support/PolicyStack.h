// SPDX-License-Identifier: MIT
#pragma once

#include "core/ActivityLog.h"
#include "enforcement/BanAction.h"
#include "enforcement/KickAction.h"
#include "enforcement/PolicyContext.h"
#include "messages/ListFiles.h"
#include "messages/Variables.h"

#include <QStringList>

class OutputPane;

// The lists, the kick and ban actions and the policies' context over a player table,
// settings and clock of the caller's own: no engine, socket or window. The queue records
// each command, with bShowT bDoNow bRconCmd intPause behind it as "|FFT2" unless they
// are the usual "TFT0", and answers !refuse.
struct PolicyStack
{
    PolicyStack(PlayerState &players, Settings &settings, Stats &stats, Clock &clock, ErrorLog &errors, OutputPane &pane);

    ListFiles lists;
    Variables variables;
    ActivityLog log;
    BanAction ban;
    QStringList queued;
    bool refuse = false;
    QueueCommand queue;
    KickAction kick;
    PolicyContext context;
};
