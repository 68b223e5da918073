// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <limits>
#include <optional>

// Numbers typed into the dialogs' boxes, converted as the rest of the program converts
// them (blanks around allowed, halves rounded to even).
namespace Entries {

constexpr qint32 int16Min = std::numeric_limits<qint16>::min();
constexpr qint32 int16Max = std::numeric_limits<qint16>::max();
constexpr qint32 int32Min = std::numeric_limits<qint32>::min();
constexpr qint32 int32Max = std::numeric_limits<qint32>::max();
constexpr qint32 portMax = std::numeric_limits<quint16>::max();

// Nothing for text that is no number or that falls outside min to max.
std::optional<qint32> whole(const QString &text, qint32 min, qint32 max);
// Whole seconds as milliseconds; nothing for text that is no number or beyond 32 bits then.
std::optional<qint32> secondsAsMs(const QString &text);
// The word for a refused entry: "<what> must be a number from <min> to <max>."
QString mustBe(const QString &what, qint32 min, qint32 max);

} // namespace Entries
