// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

// Replies as the parser is handed them: from the echo's command word on, cleaned, with
// CR LF line ends. Written out here rather than built with the link's codec.
namespace ReplyText {

struct StatusRow
{
    QString num = QStringLiteral("0"), score = QStringLiteral("0"), ping = QStringLiteral("48"), name;
    QString lastmsg = QStringLiteral("0"), address = QStringLiteral("192.0.2.7:12203");
    QString qport = QStringLiteral("12345"), rate = QStringLiteral("25000");
};

// One row in the server's layout: 72 characters for a name of up to 16.
inline QString statusRow(const StatusRow &r)
{
    return r.num.rightJustified(3) + u' ' + r.score.rightJustified(5) + u' ' + r.ping.rightJustified(4) + u' '
        + r.name.leftJustified(16) + r.lastmsg.rightJustified(7) + u' ' + r.address.leftJustified(22)
        + r.qport.rightJustified(5) + u' ' + r.rate.rightJustified(5);
}

inline QString statusReply(const QString &map, const QStringList &rows)
{
    QString text = QStringLiteral("status\r\n===============\r\nmap: ") + map
        + QStringLiteral("\r\nnum score ping name            lastmsg address               qport rate\r\n"
                         "--- ----- ---- --------------- ------- --------------------- ----- -----\r\n");
    for (const QString &row : rows)
        text += row + QStringLiteral("\r\n");
    return text + QStringLiteral("\r\n");
}

inline QString getStatusReply(const QString &info, const QStringList &rows)
{
    QString text = QStringLiteral("getStatus\r\n==================\r\n\u00FF\u00FF\u00FF\u00FFstatusResponse\r\n")
        + info + QStringLiteral("\r\n");
    for (const QString &row : rows)
        text += row + QStringLiteral("\r\n");
    return text;
}

} // namespace ReplyText
