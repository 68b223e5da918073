// SPDX-License-Identifier: MIT
#include "SimText.h"

namespace SimText {

namespace {
int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}
} // namespace

QByteArray escape(const QByteArray &bytes)
{
    static const char digits[] = "0123456789ABCDEF";
    QByteArray out;
    out.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (c == '\\') {
            out += "\\\\";
        } else if (b >= 0x20 && b < 0x7F) {
            out += c;
        } else {
            out += "\\x";
            out += digits[b >> 4];
            out += digits[b & 0xF];
        }
    }
    return out;
}

bool unescape(const QByteArray &text, QByteArray *out)
{
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            result += text[i];
            continue;
        }
        if (++i >= text.size())
            return false;
        const char c = text[i];
        if (c == '\\' || c == '"') {
            result += c;
        } else if (c == 'x' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 && hexValue(text[i + 2]) >= 0) {
            result += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            return false;
        }
    }
    *out = result;
    return true;
}

QByteArray asciiLower(const QByteArray &bytes)
{
    QByteArray out = bytes;
    for (char &c : out) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

QByteArray withoutColours(const QByteArray &name)
{
    QByteArray out;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (name[i] == '^' && i + 1 < name.size() && name[i + 1] >= '0' && name[i + 1] <= '7')
            ++i;
        else
            out += name[i];
    }
    return out;
}

bool equalsIgnoringCase(const QByteArray &a, const QByteArray &b)
{
    return a.size() == b.size() && asciiLower(a) == asciiLower(b);
}

QByteArray rightAligned(qint64 number, int width)
{
    return QByteArray::number(number).rightJustified(width, ' ');
}

} // namespace SimText
