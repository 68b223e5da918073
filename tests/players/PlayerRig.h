// SPDX-License-Identifier: MIT
#pragma once

#include "FakeClock.h"
#include "HeadlessView.h"

#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "players/PlayerGrid.h"
#include "players/PlayerMerge.h"
#include "players/PlayerState.h"
#include "players/StatusCycle.h"
#include "players/StatusParser.h"

#include <QTemporaryDir>

#include <functional>

// The player subsystem wired up on a fake clock and a headless view. A fatal report
// throws FatalExit instead of ending the test.
struct PlayerRig
{
    PlayerRig()
    {
        // the box holds the AppMsg between the blank line and "[number]: "
        errors.setTerminate([this] {
            const QString box = view.boxes.value(view.boxes.size() - 1).section(QStringLiteral("\r\n\r\n"), 1);
            throw FatalExit{box.left(box.lastIndexOf(u'['))};
        });
    }

    // The AppMsg of the fatal report that `step` ends in, empty when it ends normally.
    QString fatalOf(const std::function<void()> &step)
    {
        try {
            step();
        } catch (const FatalExit &fatal) {
            return fatal.AppMsg;
        }
        return {};
    }

    QTemporaryDir dir;
    FakeClock clock{QDateTime(QDate(2026, 11, 22), QTime(12, 0, 0))};
    HeadlessView view;
    ErrorLog errors{clock, view, [this] { return dir.path() + u'/'; }};
    PlayerState state;
    Stats stats;
    Settings settings;
    OutputPane pane{view};
    StatusParser parser{state, stats, clock, errors};
    PlayerMerge merge{state, stats, errors};
    PlayerGrid grid{state, stats, settings, view};
    StatusCycle cycle{pane, parser, merge, errors};
};
