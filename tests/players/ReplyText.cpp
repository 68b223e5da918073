// SPDX-License-Identifier: MIT
#include "ReplyText.h"

#include "link/RconCodec.h"

namespace ReplyText {

QString statusRow(const StatusRow &r)
{
    return r.num.rightJustified(3) + u' ' + r.score.rightJustified(5) + u' ' + r.ping.rightJustified(4) + u' '
        + r.name.leftJustified(16) + r.lastmsg.rightJustified(7) + u' ' + r.address.leftJustified(22)
        + r.qport.rightJustified(5) + u' ' + r.rate.rightJustified(5);
}

StatusRow numberedRow(int k)
{
    StatusRow r;
    r.num = QString::number(k);
    r.name = QStringLiteral("Player") + QString::number(k);
    r.address = QStringLiteral("10.0.%1.%2:%3").arg(k / 256).arg(k % 256).arg(27000 + k);
    return r;
}

QString rawStatus(const QString &map, const QStringList &rows)
{
    QString raw = RconCodec::replyHeader() + QStringLiteral("map: ") + map + u'\n'
        + QStringLiteral("num score ping name            lastmsg address               qport rate\n")
        + QStringLiteral("--- ----- ---- --------------- ------- --------------------- ----- -----\n");
    for (const QString &row : rows)
        raw += row + u'\n';
    return raw + u'\n';
}

QString rawGetStatus(const QString &info, const QStringList &rows)
{
    QString raw = QString::fromLatin1("\xFF\xFF\xFF\xFFstatusResponse\n") + info + u'\n';
    for (const QString &row : rows)
        raw += row + u'\n';
    return raw;
}

QString paneText(const QString &cmd, const QString &raw)
{
    return QStringLiteral("\r\n") + RconCodec::echo(QStringLiteral("12:00:00"), cmd) + RconCodec::CleanReply(raw);
}

QString replyText(const QString &cmd, const QString &raw)
{
    const QString pane = paneText(cmd, raw);
    return pane.mid(pane.lastIndexOf(cmd));
}

} // namespace ReplyText
