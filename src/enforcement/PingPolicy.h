// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

struct PolicyContext;

namespace PingPolicy {
// A ping above MaxPing for PingPasses checks in a row: "high ping". The count lives in
// the row's warn field; one reading at or below the limit clears it. The first check on
// a new map is skipped when SkipMap is on, and says so in the pane.
qint32 kickSlowPlayers(PolicyContext &c);
} // namespace PingPolicy
