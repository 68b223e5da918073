// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QTime>

// Text helpers with 1-based positions. A cut that starts below 1 or has a negative
// length is an invalid request and raises RuntimeError::InvalidCall; asking for more
// than the text holds gives what is there.
namespace Text {

QString mid(const QString &text, qsizetype start, qsizetype length);
QString midToEnd(const QString &text, qsizetype start);
QString left(const QString &text, qsizetype length);
QString right(const QString &text, qsizetype length);
// Position of the first `needle` at or behind `start`, 0 when there is none.
qsizetype find(const QString &text, const QString &needle, qsizetype start = 1);
// Blanks (character 32) cut off both ends; tabs stay.
QString trimBlanks(const QString &text);
bool isBlank(const QString &text);
// Every line end (CR LF, LF, a lone CR) turned into one blank: a box's text as one line.
QString oneLine(const QString &text);
// Upper case that stays inside Latin-1, so that a file or a name keeps one byte a
// character: the few letters whose capitals lie outside it (ß, ÿ, µ) stay as they are.
QString upper(const QString &text);

// A decimal number with an optional sign, blanks around it allowed.
bool isNumeric(const QString &text);
// Numeric text to a whole number, halves to even. Raise TypeMismatch for text that
// is no number and Overflow outside the range.
qint16 toInt16(const QString &text);
qint32 toInt32(const QString &text);

// A text cut into lines at CR LF, at LF and at a lone CR. Each line keeps its own end; the
// last line has none, and is empty when the text ends in a line end.
struct Line
{
    QString text;
    QString end;
};
QList<Line> splitLines(const QString &text);

// One byte a character, both ways.
QString fromWire(const QByteArray &bytes);
QByteArray toWire(const QString &text);

// The fixed forms in which dates and times are shown and written.
QString dateText(const QDate &date);
QString timeText(const QTime &time);
QString dateTimeText(const QDateTime &dateTime);
// A time of day held as a fraction of a day.
QString timeOfDayText(double fraction);

} // namespace Text
