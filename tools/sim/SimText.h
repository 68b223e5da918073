// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// Byte-string helpers shared by the server, the script reader and the recorder. All
// text here is raw wire bytes (Latin-1), never decoded.
namespace SimText {

// Printable ASCII as is, a backslash as \\, every other byte as \xHH: one readable
// line that still tells every byte.
QByteArray escape(const QByteArray &bytes);

// The reverse of escape(), also taking \" for a quote. False on a broken escape.
bool unescape(const QByteArray &text, QByteArray *out);

// Case folding of A-Z only, as the server's own compare does: bytes 0x80-0xFF stay.
QByteArray asciiLower(const QByteArray &bytes);
bool equalsIgnoringCase(const QByteArray &a, const QByteArray &b);

// The name as a client sees it once the colour codes ^0 to ^7 are out.
QByteArray withoutColours(const QByteArray &name);

// A number written right-aligned in `width`, never cut, like printf's %Ni.
QByteArray rightAligned(qint64 number, int width);

} // namespace SimText
