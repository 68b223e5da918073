// SPDX-License-Identifier: MIT
#include "PolicyStack.h"

PolicyStack::PolicyStack(PlayerState &players, Settings &settings, Stats &stats, Clock &clock, ErrorLog &errors,
                         OutputPane &pane)
    : lists(settings, errors)
    , variables(players, stats, settings, lists, clock)
    , log(clock, errors, settings, stats)
    , ban(players, settings, stats, lists, log, clock)
    , queue([this](const QString &Cmd, bool bShowT, bool bDoNow, bool bRconCmd, qint32 intPause) {
        const QString flags = QStringLiteral("%1%2%3%4").arg(QChar(bShowT ? u'T' : u'F'), QChar(bDoNow ? u'T' : u'F'),
                                                              QChar(bRconCmd ? u'T' : u'F')).arg(intPause);
        queued.append(flags == u"TFT0" ? Cmd : Cmd + u'|' + flags);
        return !refuse;
    })
    , kick(players, settings, stats, lists, variables, log, clock, ban, queue)
    , context{players, settings, stats, lists, kick, log, pane, clock, queue}
{
}
