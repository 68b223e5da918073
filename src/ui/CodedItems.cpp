// SPDX-License-Identifier: MIT
#include "ui/CodedItems.h"

#include "core/Text.h"

QStringList CodedItems::texts() const
{
    QStringList out;
    for (const auto &item : items)
        out.append(item.first);
    return out;
}

qint32 CodedItems::valueOf(const QString &text) const
{
    const QString compared = trimmed ? Text::trimBlanks(text) : text;
    for (const auto &[itemText, value] : items)
        if (itemText == compared)
            return value;
    return fallbackValue;
}

QString CodedItems::textOf(qint32 value) const
{
    for (const auto &[itemText, itemValue] : items)
        if (itemValue == value)
            return itemText;
    return fallbackText;
}

const CodedItems &CodedItems::banType()
{
    static const CodedItems table{
        {{QStringLiteral("IP"), 1}, {QStringLiteral("Name"), 2}, {QStringLiteral("IP and Name"), 3}}, 0, QString(),
        true};
    return table;
}

const CodedItems &CodedItems::banFor()
{
    static const CodedItems table{{{QStringLiteral("TKing only"), 10},
                                   {QStringLiteral("Having bad word in name"), 1},
                                   {QStringLiteral("TKing & bad words"), 11},
                                   {QStringLiteral("Impersonating"), 1000},
                                   {QStringLiteral("Banish all kicked players"), 100}},
                                  10, QStringLiteral("TKing only"), false};
    return table;
}

const CodedItems &CodedItems::statusInterval()
{
    static const CodedItems table{{{QStringLiteral("single"), 1},
                                   {QStringLiteral("second"), 2},
                                   {QStringLiteral("third"), 3},
                                   {QStringLiteral("fourth"), 4},
                                   {QStringLiteral("fifth"), 5},
                                   {QStringLiteral("tenth"), 10}},
                                  2, QStringLiteral("second"), false};
    return table;
}

const CodedItems &CodedItems::announceEvery()
{
    static const CodedItems table{{{QStringLiteral("1 minute"), 1},
                                   {QStringLiteral("2 minutes"), 2},
                                   {QStringLiteral("3 minutes"), 3},
                                   {QStringLiteral("4 minutes"), 4},
                                   {QStringLiteral("5 minutes"), 5},
                                   {QStringLiteral("10 minutes"), 10}},
                                  2, QStringLiteral("2 minutes"), true};
    return table;
}
