// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

struct PolicyContext;

// The policies that look at how a player behaves in the game. Each answers its hit count.
namespace ScorePolicies {
// A score below TKLimit, the mark of a team killer: "for TKing".
qint32 kickTkPlayers(PolicyContext &c);
// Places in the cycle's order, behind Warn and KickTeleFrag; they act on nobody.
void warnPlayers(PolicyContext &c);
void kickTeleFragPlayers(PolicyContext &c);
} // namespace ScorePolicies
