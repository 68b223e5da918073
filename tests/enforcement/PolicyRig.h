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
#include "enforcement/PolicyContext.h"
#include "messages/ListFiles.h"
#include "messages/Variables.h"
#include "players/PlayerState.h"

// The kick and ban actions and the policies on a table and lists of the test's own,
// with no engine, socket or window: the queue records what it is given, the log and
// the lists are real files in a private folder.
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
    QStringList queued; // the commands, in order
    QStringList flags;  // bShowT bDoNow bRconCmd intPause of each, as "TFT0"
    bool refuse = false;
    QueueCommand queue = [this](const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause) {
        queued.append(Cmd);
        flags.append(QString::fromLatin1(bShowT ? "T" : "F") + QString::fromLatin1(bDoNow ? "T" : "F")
                     + QString::fromLatin1(bRconCmd ? "T" : "F") + QString::number(intPause));
        return !refuse;
    };
    KickAction kick{players, settings, stats, lists, variables, log, clock, ban, queue};
    OutputPane pane{view};
    PolicyContext c{players, settings, stats, lists, kick, log, pane, clock, queue};

    PolicyRig()
    {
        settings.FileLoc = env.workDir();
        settings.SaveLog = true;
        errors.setTerminate([] { throw FatalExit{QStringLiteral("fatal")}; });
        lists.LoadAll();
        log.OpenLog();
    }

    void writeList(const QString &file, const QByteArray &bytes)
    {
        TestEnv::writeFile(env.workDir() + file, bytes);
        lists.LoadAll();
    }

    // A player on the next row, as a full status shows him.
    PlayerRecord &add(const QString &name, const QString &ip, const QString &num = QString())
    {
        PlayerRecord &r = players.currentPlayers[++players.currentCount];
        r = PlayerRecord{};
        r.name = name;
        r.ip = ip;
        r.num = num.isNull() ? QString::number(players.currentCount) : num;
        r.ping = r.score = r.qport = r.rate = QStringLiteral("0");
        r.status = QStringLiteral("Ok");
        r.jointime = r.nametime = clock.timeOfDay();
        return r;
    }

    // The records of the log after its head block, without their line ends.
    QStringList logLines() const
    {
        QStringList records = QString::fromLatin1(TestEnv::readFile(env.workDir() + QStringLiteral("servlog.txt")))
                                  .split(QStringLiteral("\r\n\r\n"));
        records.removeFirst();
        records.removeLast();
        return records;
    }
    QByteArray file(const QString &name) const { return TestEnv::readFile(env.workDir() + name); }
};
