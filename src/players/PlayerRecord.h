// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>

#include <array>

// One player in one scan. Text fields hold "----" while no reply has carried them.
struct PlayerRecord
{
    QString num;
    QString ping;
    QString name;
    QString score;
    QString ip;
    QString port;
    QString qport;
    QString rate;
    QString lastmsg;
    qint32 warn = 0;
    qint32 spare1 = 0;
    double jointime = 0; // time of day, fraction of a day
    QDate joindate;
    qint32 spare2 = 0;
    QString status;
    double kicktime = 0; // time of day, 0 for never
    double nametime = 0;
    bool unique = true;
    bool matched = false;
    qint32 prevIndex = -1;
    qint32 scanIndex = -1;
};

inline const QString &unknownField()
{
    static const QString dashes = QStringLiteral("----");
    return dashes;
}

// 256 records numbered 1 to 256. Slot 0 exists only so that numbers index directly;
// an index outside 1..256 raises RuntimeError::OutOfRange.
class PlayerTable
{
public:
    static constexpr int Capacity = 256;

    PlayerRecord &operator[](qint32 number);
    const PlayerRecord &operator[](qint32 number) const;

private:
    std::array<PlayerRecord, Capacity + 1> m_records{};
};
