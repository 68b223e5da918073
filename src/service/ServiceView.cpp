// SPDX-License-Identifier: MIT
#include "service/ServiceView.h"

#include "core/Settings.h"
#include "core/Text.h"
#include "service/JournalLine.h"

int ServiceView::windowState() const
{
    return m_settings ? m_settings->WinState : 0;
}

void ServiceView::messageBox(const QString &text)
{
    JournalLine::write(stderr, JournalLine::Error, QStringLiteral("Quorvane: ") + Text::oneLine(text));
}

bool ServiceView::question(const QString &text)
{
    messageBox(text);
    return false;
}
