// SPDX-License-Identifier: MIT
#pragma once

#include "FakeClock.h"
#include "HeadlessView.h"
#include "TestEnv.h"
#include "core/ActivityLog.h"
#include "core/ErrorLog.h"
#include "core/OutputPane.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "enforcement/BanAction.h"
#include "enforcement/KickAction.h"
#include "messages/ListFiles.h"
#include "messages/Variables.h"
#include "players/PlayerState.h"

// The kick and ban actions and the policies without engine, socket or window: the queue
// records the commands (with bShowT bDoNow bRconCmd intPause as "|FFT2" when not "TFT0");
// the log and the lists are real files in a private folder. The clock stands at noon.
struct PolicyRig
{
    TestEnv env;
    FakeClock clock;
    HeadlessView view;
    Settings settings;
    Stats stats;
    PlayerState players;
    ErrorLog errors{clock, view, [this] { return settings.FileLoc; }};
    ListFiles lists{settings, errors};
    Variables variables{players, stats, settings, lists, clock};
    ActivityLog log{clock, errors, settings, stats};
    BanAction ban{players, settings, stats, lists, log, clock};
    QStringList queued;
    bool refuse = false;
    QueueCommand queue = [this](const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause) {
        const QString flags = QStringLiteral("%1%2%3%4").arg(QChar(bShowT ? u'T' : u'F'), QChar(bDoNow ? u'T' : u'F'),
                                                              QChar(bRconCmd ? u'T' : u'F')).arg(intPause);
        queued.append(flags == u"TFT0" ? Cmd : Cmd + u'|' + flags);
        return !refuse;
    };
    KickAction kick{players, settings, stats, lists, variables, log, clock, ban, queue};
    OutputPane pane{view};
    PolicyContext c{players, settings, stats, lists, kick, log, pane, clock, queue};

    PolicyRig()
    {
        settings.FileLoc = env.workDir();
        settings.SaveLog = true;
        errors.setTerminate([] { throw FatalExit{}; });
        writeList(QStringLiteral("immuneIP.txt"), "192.0.2.50\r\n");
        log.OpenLog();
    }
    void writeList(const QString &file, const QByteArray &bytes)
    {
        TestEnv::writeFile(env.workDir() + file, bytes);
        lists.LoadAll();
    }
    // A player on the next row, as a full status shows him; his slot is the row's number.
    PlayerRecord &add(const QString &name, const QString &ip = QStringLiteral("192.0.2.1"))
    {
        PlayerRecord &r = players.currentPlayers[++players.currentCount];
        r = PlayerRecord{};
        r.num = QString::number(players.currentCount);
        r.name = name;
        r.ip = ip;
        r.status = QStringLiteral("Ok");
        r.jointime = r.nametime = clock.timeOfDay();
        return r;
    }
    // The log's records after its head block.
    QStringList logLines() const
    {
        const QStringList records = QString::fromLatin1(file(QStringLiteral("servlog.txt"))).split(QStringLiteral("\r\n\r\n"));
        return records.mid(1, records.size() - 2);
    }
    QByteArray file(const QString &name) const { return TestEnv::readFile(env.workDir() + name); }
};
