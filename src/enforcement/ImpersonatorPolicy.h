// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

struct PolicyContext;

namespace ImpersonatorPolicy {
// Two players under one name (any case) on different addresses: the one who had it
// later is warned while he joined under it less than 62.208 s ago, kicked ("stealing
// names") after that, and kicked at once if he changed to it on the server. A row
// without a slot is only ever warned.
qint32 kickImpersonators(PolicyContext &c);

// How long a player who joined under a taken name may stay, as a fraction of a day.
constexpr double graceTime = 0.00072;
} // namespace ImpersonatorPolicy
