// SPDX-License-Identifier: MIT
#include "link/RconCodec.h"

namespace RconCodec {

QString packetHeader()
{
    return QString::fromLatin1("\xFF\xFF\xFF\xFF\x02", 5);
}

QString replyHeader()
{
    return QString::fromLatin1("\xFF\xFF\xFF\xFF\x01print\n", 11);
}

QString frame(const QString &Cmd, const QString &password, bool bRconCmd)
{
    const QString packet = bRconCmd ? QStringLiteral("rcon ") + password + u' ' + Cmd : Cmd;
    return packetHeader() + packet;
}

QString echo(const QString &time, const QString &Cmd)
{
    const QString first = time + u'>' + Cmd;
    return first + QStringLiteral("\r\n") + QString(first.size(), u'=') + QStringLiteral("\r\n");
}

QString CleanReply(const QString &text)
{
    QString clean = text;
    for (char digit = '0'; digit <= '7'; ++digit)
        clean.remove(QString(u'^') + QLatin1Char(digit));
    clean.remove(replyHeader());
    clean.replace(u'\n', QStringLiteral("\r\n"));
    return clean;
}

QString arrivalText(const QByteArray &datagram)
{
    return datagram.size() >= 2 ? CleanReply(QString::fromLatin1(datagram)) : QStringLiteral("\r\n(no connection)");
}

} // namespace RconCodec
