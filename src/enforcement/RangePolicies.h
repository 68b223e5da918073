// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

struct PolicyContext;

// A client's qport and rate held inside the operator's range, both bounds included.
// A field that is no number (a player not yet seen by a full status) is passed over.
namespace RangePolicies {
qint32 kickQPortPlayers(PolicyContext &c);
qint32 kickRatePlayers(PolicyContext &c);
} // namespace RangePolicies
