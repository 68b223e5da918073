// SPDX-License-Identifier: MIT
#include "ui/Entries.h"

#include "core/RuntimeError.h"
#include "core/Text.h"

namespace Entries {

std::optional<qint32> whole(const QString &text, qint32 min, qint32 max)
{
    qint32 value = 0;
    try {
        value = Text::toInt32(text);
    } catch (const RuntimeError &) {
        return std::nullopt;
    }
    if (value < min || value > max)
        return std::nullopt;
    return value;
}

std::optional<qint32> secondsAsMs(const QString &text)
{
    const std::optional<qint32> seconds = whole(text, int32Min, int32Max);
    if (!seconds)
        return std::nullopt;
    const qint64 ms = qint64(*seconds) * 1000;
    if (ms < int32Min || ms > int32Max)
        return std::nullopt;
    return static_cast<qint32>(ms);
}

QString mustBe(const QString &what, qint32 min, qint32 max)
{
    return what + QStringLiteral(" must be a number from ") + QString::number(min) + QStringLiteral(" to ")
           + QString::number(max) + u'.';
}

} // namespace Entries
