// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The settings block: every setting under the name of its key. Routines read a value at
// the moment they need it; dialogs change it in memory and it is live at once.
struct Settings
{
    bool Warn = false;
    QString WarnTxt;
    bool KickTK = false;
    qint32 TKLimit = -3;
    qint32 CheckInt = 20000;
    bool Ban = false;
    qint32 BanType = 3;
    qint32 BanFor = 10;
    qint32 BanDuration = 0;
    bool NameCheck = false;
    QString Host = QStringLiteral("000.000.000.000");
    QString Pwd;
    qint32 Port = 12203;
    QString Persona = QStringLiteral("Clinical");
    QString Voice = QStringLiteral("[Quorvane]");
    qint32 intAnnouce = 0;
    qint32 lngAnnounce = 0;
    qint32 BanTime = 0;
    QString FileLoc;
    bool SaveSettings = true;
    bool SaveLog = false;
    bool LogBrief = false;
    bool ForceKick = false;
    bool KickBanned = true;
    bool KickTeleFrag = false;
    bool KickPing = true;
    qint32 MaxPing = 750;
    qint32 PingPasses = 3;
    bool TellPlayers = true;
    qint32 LocalPort = 1247;
    double CommandDelay = 1.0;
    bool QPort = false;
    qint32 QPortMin = 0;
    qint32 QPortMax = 0;
    bool Rate = false;
    qint32 RateMin = 0;
    qint32 RateMax = 0;
    bool SkipMap = true;
    qint32 WinWidth = 9240;
    qint32 WinHeight = 7860;
    bool MsgRandom = true;
    bool SysTray = true;
    bool KickImpersonators = true;
    qint32 StatusInterval = 2;
    qint32 TellPause = 0;
    qint32 WinState = 0;
    bool ServerOnly = true; // take datagrams from the server's address and port only

    // Whether a verbose line goes to the log: SaveLog on and LogBrief off.
    bool logVerbose() const { return SaveLog && !LogBrief; }
};
