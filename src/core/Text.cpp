// SPDX-License-Identifier: MIT
#include "core/Text.h"

#include "core/RuntimeError.h"

#include <QDateTime>

#include <cmath>
#include <limits>

namespace Text {
namespace {

[[noreturn]] void invalidCall()
{
    throw RuntimeError(RuntimeError::InvalidCall, QStringLiteral("Invalid procedure call or argument"));
}

// The text without the blanks at its ends, as a view: no copy.
QStringView trimmedView(QStringView text)
{
    while (!text.isEmpty() && text.front() == u' ')
        text = text.sliced(1);
    while (!text.isEmpty() && text.back() == u' ')
        text.chop(1);
    return text;
}

template<typename Int>
Int toWhole(const QString &text)
{
    if (!isNumeric(text))
        throw RuntimeError(RuntimeError::TypeMismatch, QStringLiteral("Type mismatch"));
    const QStringView t = trimmedView(text);
    double value = 0;
    if (t.contains(u'.')) {
        value = std::nearbyint(t.toDouble()); // default rounding: halves to even
    } else {
        // Digits alone are read directly: the policies convert a column of every row at
        // every check. Exact up to 2^53, far beyond every range it is tested against.
        const bool negative = t.front() == u'-';
        for (const QChar c : t) {
            if (c >= u'0' && c <= u'9')
                value = value * 10 + (c.unicode() - u'0');
        }
        value = negative ? -value : value;
    }
    if (value < std::numeric_limits<Int>::min() || value > std::numeric_limits<Int>::max())
        throw RuntimeError(RuntimeError::Overflow, QStringLiteral("Overflow"));
    return static_cast<Int>(value);
}

} // namespace

QString mid(const QString &text, qsizetype start, qsizetype length)
{
    if (start < 1 || length < 0)
        invalidCall();
    if (start > text.size())
        return {};
    return text.mid(start - 1, length);
}

QString midToEnd(const QString &text, qsizetype start)
{
    if (start < 1)
        invalidCall();
    if (start > text.size())
        return {};
    return text.mid(start - 1);
}

QString left(const QString &text, qsizetype length)
{
    if (length < 0)
        invalidCall();
    return text.left(length);
}

QString right(const QString &text, qsizetype length)
{
    if (length < 0)
        invalidCall();
    return text.right(length);
}

qsizetype find(const QString &text, const QString &needle, qsizetype start)
{
    if (start < 1)
        invalidCall();
    if (start > text.size())
        return 0;
    const qsizetype hit = text.indexOf(needle, start - 1);
    return hit < 0 ? 0 : hit + 1;
}

QString trimBlanks(const QString &text)
{
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && text.at(from) == u' ')
        ++from;
    while (to > from && text.at(to - 1) == u' ')
        --to;
    return text.mid(from, to - from);
}

QString oneLine(const QString &text)
{
    QString line = text;
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    line.replace(u'\r', u' ');
    line.replace(u'\n', u' ');
    return line;
}

bool isBlank(const QString &text)
{
    return trimBlanks(text).isEmpty();
}

QString upper(const QString &text)
{
    QString out = text;
    for (QChar &c : out) {
        const char16_t u = c.unicode();
        if ((u >= u'a' && u <= u'z') || (u >= 0xE0 && u <= 0xFE && u != 0xF7))
            c = QChar(static_cast<char16_t>(u - 32));
        else if (u > 0xFF)
            c = c.toUpper();
    }
    return out;
}

bool isNumeric(const QString &text)
{
    const QStringView t = trimmedView(text);
    qsizetype i = 0;
    if (i < t.size() && (t.at(i) == u'+' || t.at(i) == u'-'))
        ++i;
    qsizetype digits = 0;
    bool point = false;
    for (; i < t.size(); ++i) {
        const QChar c = t.at(i);
        if (c >= u'0' && c <= u'9')
            ++digits;
        else if (c == u'.' && !point)
            point = true;
        else
            return false;
    }
    return digits > 0;
}

qint16 toInt16(const QString &text)
{
    return toWhole<qint16>(text);
}

qint32 toInt32(const QString &text)
{
    return toWhole<qint32>(text);
}

QList<Line> splitLines(const QString &text)
{
    QList<Line> lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != u'\n' && c != u'\r')
            continue;
        const bool crlf = c == u'\r' && i + 1 < text.size() && text.at(i + 1) == u'\n';
        lines.append({text.mid(start, i - start), crlf ? QStringLiteral("\r\n") : QString(c)});
        if (crlf)
            ++i;
        start = i + 1;
    }
    lines.append({text.mid(start), QString()});
    return lines;
}

QString fromWire(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes);
}

QByteArray toWire(const QString &text)
{
    return text.toLatin1();
}

QString dateText(const QDate &date)
{
    return date.toString(QStringLiteral("yyyy-MM-dd"));
}

QString timeText(const QTime &time)
{
    return time.toString(QStringLiteral("HH:mm:ss"));
}

QString dateTimeText(const QDateTime &dateTime)
{
    return dateText(dateTime.date()) + u' ' + timeText(dateTime.time());
}

QString timeOfDayText(double fraction)
{
    const double whole = fraction - std::floor(fraction);
    const int ms = static_cast<int>(std::llround(whole * 86400000.0)) % 86400000;
    return timeText(QTime::fromMSecsSinceStartOfDay(ms));
}

} // namespace Text
