// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The reasons a kick is given; compared by value, shown in the grid's status column.
namespace KickReasons {
inline const QString highPing = QStringLiteral("high ping");
inline const QString tking = QStringLiteral("for TKing");
inline const QString bannedName = QStringLiteral("banned name");
inline const QString bannedIP = QStringLiteral("banned IP");
inline const QString badWord = QStringLiteral("bad word in name");
inline const QString stealingNames = QStringLiteral("stealing names");
inline const QString qport = QStringLiteral("QPort");
inline const QString rate = QStringLiteral("Rate");
// The operator's Kick and Kick and Ban, and the ban of Kick and Ban or of a typed clientkick.
inline const QString adminKick = QStringLiteral("[reason unspecified - admin initiated kick]");
inline const QString adminBan = QStringLiteral("[admin initiated kick]");
} // namespace KickReasons
