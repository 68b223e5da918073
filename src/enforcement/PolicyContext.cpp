// SPDX-License-Identifier: MIT
#include "enforcement/PolicyContext.h"

#include "core/ActivityLog.h"
#include "core/Settings.h"

void PolicyContext::logVerbose(const QString &text) const
{
    if (settings.logVerbose())
        log.WriteLog(text);
}

void PolicyContext::logCount(const char *head, qint64 hits) const
{
    logVerbose(QString::fromLatin1(head) + QString::number(hits) + QStringLiteral(" players kicked."));
}
