// SPDX-License-Identifier: MIT
#include "players/PlayerRecord.h"

#include "core/RuntimeError.h"

namespace {
[[noreturn]] void outOfRange()
{
    throw RuntimeError(RuntimeError::OutOfRange, QStringLiteral("Subscript out of range"));
}
} // namespace

PlayerRecord &PlayerTable::operator[](qint32 number)
{
    if (number < 1 || number > Capacity)
        outOfRange();
    return m_records[static_cast<size_t>(number)];
}

const PlayerRecord &PlayerTable::operator[](qint32 number) const
{
    if (number < 1 || number > Capacity)
        outOfRange();
    return m_records[static_cast<size_t>(number)];
}
