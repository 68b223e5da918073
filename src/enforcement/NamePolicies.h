// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

struct PolicyContext;

// The policies that hold the players against the operator's lists. Every matching
// entry is one hit and one call of kickPlayer, in the order of a plain walk over the
// table; the index beside each table only saves the comparisons.
namespace NamePolicies {
// A banned address (exact) or a banned name (whole, any case), both trimmed.
qint32 kickBannedPlayers(PolicyContext &c);
// A bad word anywhere in the name, any case; every occurrence counts, overlapping too.
qint32 kickBadNamePlayers(PolicyContext &c);
} // namespace NamePolicies
