// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>

// Statistics of the running program. None is stored; the settings load clears them.
struct Stats
{
    qint32 players = 0;
    qint32 totalplayers = 0;
    QString map;
    QString prevmap;
    qint32 totalmaps = 0;
    qint32 checks = 0;
    qint32 avgping = 0;
    qint32 pingkicks = 0;
    qint32 tkkicks = 0;
    qint32 bankicks = 0;
    qint32 banadds = 0;
    double starttime = 0; // time of day, fraction of a day
    QDate startdate;
};
