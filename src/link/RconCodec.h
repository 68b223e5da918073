// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// The framing of remote console datagrams, apart from the socket. Text is one byte a
// character (Latin-1) both ways.
namespace RconCodec {

// FF FF FF FF 02: before every datagram sent.
QString packetHeader();
// FF FF FF FF 01 "print" 0A: taken out of received text.
QString replyHeader();

// The datagram's text: the header, then "rcon " + password + " " + command, or the bare
// command for a connectionless query.
QString frame(const QString &Cmd, const QString &password, bool bRconCmd);

// The echo of a command in the pane: time ">" Cmd, a ruler of "=" as long, CR LF after each.
QString echo(const QString &time, const QString &Cmd);

// Colour codes ^0 to ^7 out, reply heads out, every line feed to CR LF; one pass each.
QString CleanReply(const QString &text);

// What one datagram adds to the pane: its cleaned text, or the no-connection line for a
// datagram of fewer than 2 bytes.
QString arrivalText(const QByteArray &datagram);

} // namespace RconCodec
