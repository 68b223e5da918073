// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

// The items of a combo box that shows a coded setting: each item stands for a number,
// text that matches no item stores a fixed fallback, and a number with no item shows a
// fixed text.
struct CodedItems
{
    QList<std::pair<QString, qint32>> items;
    qint32 fallbackValue = 0;
    QString fallbackText;
    bool trimmed = false; // the text is compared without leading and trailing blanks

    QStringList texts() const;
    qint32 valueOf(const QString &text) const;
    QString textOf(qint32 value) const;

    static const CodedItems &banType();
    static const CodedItems &banFor();
    static const CodedItems &statusInterval();
    static const CodedItems &announceEvery();
};
