// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

// Replies as the pane holds them: a line end, the echo of the command, then the raw
// server text through CleanReply.
namespace ReplyText {

struct StatusRow
{
    QString num = QStringLiteral("0");
    QString score = QStringLiteral("0");
    QString ping = QStringLiteral("48");
    QString name;
    QString lastmsg = QStringLiteral("0");
    QString address = QStringLiteral("192.0.2.7:12203");
    QString qport = QStringLiteral("12345");
    QString rate = QStringLiteral("25000");
};

// One row in the server's layout, before cleaning; 72 characters for short names.
QString statusRow(const StatusRow &row);
// A row for player k: slot k, name "Player<k>", address 10.0.<k/256>.<k%256>:<27000+k>.
StatusRow numberedRow(int k);
// The raw text of a status reply: map line, head, dashes, rows, empty line.
QString rawStatus(const QString &map, const QStringList &rows);
// The raw text of a getStatus reply: its own head, the info string, "ping "name"" rows.
QString rawGetStatus(const QString &info, const QStringList &rows);
// What the pane holds after the echo of cmd and the cleaned reply.
QString paneText(const QString &cmd, const QString &raw);
// The pane text cut at the last echo of cmd, as the parser is handed it.
QString replyText(const QString &cmd, const QString &raw);

} // namespace ReplyText
